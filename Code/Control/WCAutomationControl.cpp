#include "Code/Control/WCAutomationControl.h"

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/WCGUIControl.h"

MIREL_NAMESPACE_BEGIN

WCAutomationControl::WCAutomationControl(cALGORITHM *alg, const WCGUIControl &source,
                                         const char *name) {
    m_pAlg = alg;
    m_Name = name;
    m_Flags = source.GetControlFlags();
    for (std::size_t i = 0; i < source.GetNumRegistrations(); ++i) {
        WCParamRegistrationData copy = source.GetRegistration(i).Clone();
        // A host control draws nothing: the GUI control keeps the pictures and windows.
        copy.RemoveDrawAttributes();
        (void)Register(std::move(copy), false);
    }
    m_LeadParamIndex = source.GetLeadParamIndex();
}

int WCAutomationControl::CallHost(int op, void *data) {
    if (m_pAlg == nullptr || GetRefCon1() == 0 || m_pAlg->GetAutoCallBack() == nullptr)
        return eNoErr;
    return m_pAlg->GetAutoCallBack()(op, m_pAlg->GetAutoRefcon(),
                                     reinterpret_cast<void *>(GetRefCon2()), data, nullptr);
}

int WCAutomationControl::NotifySetControlValue(double state) {
    (void)CallHost(eAutoSetValue, &state);
    return eNoErr;
}

int WCAutomationControl::Touch() {
    if (m_Touched)
        return eNoErr;
    m_Touched = true;
    return CallHost(eAutoTouch, nullptr);
}

int WCAutomationControl::Release() {
    if (!m_Touched)
        return eNoErr;
    m_Touched = false;
    return CallHost(eAutoRelease, nullptr);
}

MIREL_NAMESPACE_END
