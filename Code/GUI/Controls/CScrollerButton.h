#pragma once

#include "Code/GUI/Controls/CIncDec.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

// The arrow of a scroll bar: a step button whose press and repeats move the registrations of the
// scroll gestures ("ScrollX", "ScrollY"), the parameter a scroll bar shows; with
// "IncDecTypeZoom" it moves those of the zoom gestures ("ZoomX", "ZoomY") instead. It reads the
// step button's children besides its own. [main-thread]
class CScrollerButton : public CIncDec {
public:
    explicit CScrollerButton(WIControlOwner *owner = nullptr) : CIncDec(owner) {}

    CScrollerButton *Clone() const override;
    bool IsZoom() const noexcept { return m_Zoom; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    BUFFER_HEADER *Step() override;

private:
    bool m_Zoom = false;
};

MIREL_NAMESPACE_END
