// Feeds arbitrary text to the event script reader: a refused text keeps the script read before
// and says why; an accepted one keeps every step within the limits the player relies on.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/WTErrors.h"
#include "view/WCEventScript.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::PluginViewManager;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    WCEventScript script;
    if (script.ReadFromYAML("events: [{event: frame, name: keep}]") != eNoErr)
        std::abort();
    const int err = script.ReadFromYAML(text);
    if (err != eNoErr) {
        if (err > 0 || script.GetLastError().empty() || script.GetSteps().size() != 1 ||
            script.GetSteps()[0].m_frameName != "keep")
            std::abort();
        return 0;
    }
    if (script.GetSteps().size() > WCEventScript::kMaxSteps || !script.GetLastError().empty())
        std::abort();
    for (const WCEventScriptStep &step : script.GetSteps()) {
        const WCEventMessage &m = step.m_message;
        const std::string &name = step.m_frameName;
        if (step.m_waitMs > WCEventScript::kMaxWaitMs ||
            m.m_wheelAmount > WCEventScript::kMaxWheelAmount ||
            m.m_wheelAmount < -WCEventScript::kMaxWheelAmount ||
            name.size() > WCEventScript::kMaxNameLength ||
            (step.m_kind == WCEventScriptStep::eStepFrame &&
             (name.empty() || name[0] == '.' || name.find('/') != std::string::npos)))
            std::abort();
    }
    return 0;
}
