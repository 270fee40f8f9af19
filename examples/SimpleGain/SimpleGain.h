#pragma once

// The smallest plug-in: the class that README.md shows under "Writing a plug-in", with the five
// hooks every plug-in implements and the one that tells the memory needs of its process side.
// The build compiles it (library SimpleGain), and tests/examples/ReadmeSnippet_test.cpp checks
// that the README shows the class as it stands here and walks its life cycle. Its process side
// reads one coefficient word, the gain as a fraction, from the real-world value of parameter 0
// (in dB) once a "ParamXML" declares one. examples/GainFilter/ is the full example: a module in a
// bundle, with its C entry points.
// [main-thread] except UpdateAlg, which any thread may call under the process lock.

#include <cstdint>

#include "Code/Algorithm/cALGORITHM.h"

// The example writes the library's names plainly, as README.md does.
using namespace MIREL_NAMESPACE_NAME;

// README: begin
class SimpleGain : public cALGORITHM {
public:
    SimpleGain(MirelComponentInfo const &info, WTResContainerType *&container)
        : cALGORITHM(info, container) {}

protected:
    void InitProcessCodeSelf() override;                       // memory needs of the process side
    BUFFER_HEADER *InitAlgSelf() override;                     // the first coefficients
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t id) override; // one parameter changed
    BUFFER_HEADER *UpdateAlgSelf() override;                   // all coefficients again
    BUFFER_HEADER *ResetAudioBuffersSelf() override;           // clear the audio history
    int DoIdleSelf(short level) override;                      // main-thread idle tick
};
// README: end
