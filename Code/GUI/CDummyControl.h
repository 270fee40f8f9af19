#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// A control without a picture that holds a place in the automation order: a GUI XML entry with
// only an "AutomationType" names an automatable control that no GUI control shows. It draws
// nothing and is never hit. [main-thread]
class CDummyControl : public WCGUIControl {
public:
    explicit CDummyControl(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {
        SetMinMax(0, 0);
    }
    CDummyControl *Clone() const override {
        auto *copy = new CDummyControl(m_pOwner);
        CopyTo(*copy);
        copy->m_AutomationType = m_AutomationType;
        return copy;
    }
    bool IsDrawable() const override { return false; }
    // Only the name and the automation kind: a dummy has nothing else to keep.
    XML::CXMLElement *WriteToXMLWithAlg(XML::CXMLElement *element) const override;
    void SetAutomationType(const char *type) { m_AutomationType = type; }
    const WCFixedString<63> &GetAutomationType() const noexcept { return m_AutomationType; }

private:
    WCFixedString<63> m_AutomationType;
};

MIREL_NAMESPACE_END
