#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A parameter offered to the host's automation without a place in the picture: it holds the
// registration the automation order names and is never drawn. "DiscreteStep" is the step of the
// value the host's automation moves by (0, the default, for a continuous value). [main-thread]
class CControlForAutomation_X : public WCGUIControl {
public:
    explicit CControlForAutomation_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CControlForAutomation_X *Clone() const override;
    bool IsDrawable() const override { return false; }
    int GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &) override { return eNoErr; }
    double GetDiscreteStep() const noexcept { return m_DiscreteStep; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;

private:
    double m_DiscreteStep = 0.0;
};

MIREL_NAMESPACE_END
