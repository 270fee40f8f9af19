#pragma once

#include <cstdint>

#include "Code/Algorithm/cALGORITHM.h"

namespace mirel_test {

// A plug-in with nothing of its own: the five operations build no buffers and do no work, so
// whatever a test observes is the base class's doing.
class WCSilentAlgorithm : public MIREL_NAMESPACE_NAME::cALGORITHM {
public:
    using BUFFER_HEADER = MIREL_NAMESPACE_NAME::BUFFER_HEADER;
    using cALGORITHM::cALGORITHM;

protected:
    BUFFER_HEADER *UpdateParamSelf(std::uint64_t) override { return nullptr; }
    BUFFER_HEADER *UpdateAlgSelf() override { return nullptr; }
    BUFFER_HEADER *InitAlgSelf() override { return nullptr; }
    int DoIdleSelf(short) override { return 0; }
    BUFFER_HEADER *ResetAudioBuffersSelf() override { return nullptr; }
};

} // namespace mirel_test
