#pragma once

#include "Code/Algorithm/MirelComponentInfo.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;

// What a shell holds for one running plug-in: the component's identity and a tail that the
// shell fills after the module's factory has built the algorithm. The frame's selector calls and
// named requests all take it. The algorithm pointer is not owned: the shell deletes the
// algorithm after Dispose, then drops the instance.
// [main-thread] for filling; the selector calls say their own threads.
class PluginInstance : public MirelComponentInfo {
public:
    PluginInstance() noexcept;
    explicit PluginInstance(MirelComponentInfo const &info) noexcept;

    cALGORITHM *m_pAlg;
    // The plug-in's file name, answered by the selector 'sPFN'.
    WCFixedString<1023> m_PluginFileName;
    // The native handle of the plug-in module, used to open its resource container.
    void *m_NativeResourceRef;
};

MIREL_NAMESPACE_END
