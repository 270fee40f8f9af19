#include "view/linux/WUEventScriptPlayer.h"

#include "core/WTErrors.h"
#include "core/WUAssert.h"
#include "view/PluginViewManager.h"
#include "view/linux/WUHeadlessView.h"

MIREL_NAMESPACE_BEGIN
namespace PluginViewManager {

int PlayEventScript(WSPluginView *view, const WCEventScript &script,
                    const WTFrameMarkCallback &onFrame, std::uint64_t settleMs) {
    MIREL_ASSERT_RETURN(view != nullptr, eMemNullPointer);
    for (const WCEventScriptStep &step : script.GetSteps()) {
        int err = eNoErr;
        switch (step.m_kind) {
        case WCEventScriptStep::eStepMessage: {
            WCEventMessage message = step.m_message;
            // Systems report the wheel where it happened on the desktop.
            if (message.m_kind == eMsgMouseWheel)
                err = PVMLocalToGlobal(view, step.m_message.m_position, message.m_position);
            if (err == eNoErr)
                err = PostEvent(view, message);
            if (err >= eNoErr && settleMs > 0)
                err = AdvanceTime(settleMs);
            break;
        }
        case WCEventScriptStep::eStepWait: err = AdvanceTime(step.m_waitMs); break;
        case WCEventScriptStep::eStepMenuChoice:
            err = SetNextMenuChoice(view, step.m_menuItem.c_str());
            break;
        case WCEventScriptStep::eStepText:
            err = CommitTextBox(step.m_text.c_str());
            if (err >= eNoErr && settleMs > 0)
                err = AdvanceTime(settleMs);
            break;
        case WCEventScriptStep::eStepFrame:
            err = onFrame ? onFrame(step.m_frameName) : eNoErr;
            break;
        }
        if (err < eNoErr)
            return err;
    }
    return eNoErr;
}

} // namespace PluginViewManager
MIREL_NAMESPACE_END
