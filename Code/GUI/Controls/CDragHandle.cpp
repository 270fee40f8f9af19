#include "Code/GUI/Controls/CDragHandle.h"

#include <algorithm>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

CDragHandle *CDragHandle::Clone() const {
    auto *copy = new CDragHandle(m_pOwner);
    CopyHandleTo(*copy);
    return copy;
}

void CDragHandle::CopyHandleTo(CDragHandle &other) const {
    CopyTo(other);
    other.m_Pushed.Assign(m_Pushed);
    other.m_Released.Assign(m_Released);
}

WTErr CDragHandle::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) {
    if (cls == nullptr)
        return eMemNullPointer;
    WURect<short> movement = m_MovementRect;
    for (const XML::CXMLElement *child : cls->GetSubElements())
        if (child->GetName() == "MovementRect")
            if (const WTErr err = GUIXML::ReadRect(*child, movement); err != eNoErr)
                return err;
    if (const WTErr err = CToggle_X::ReadFromXMLWithAlgSelf(cls, alg); err != eNoErr)
        return err;
    m_MovementRect = movement;
    return eNoErr;
}

void CDragHandle::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    CToggle_X::WriteToXMLWithAlgSelf(cls);
    if (!m_MovementRect.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("MovementRect", m_MovementRect));
}

WCGUIControl::BUFFER_HEADER *CDragHandle::ClickSelf(WCEventData &event, WURect<double> &limits,
                                                    bool &keepGoing) {
    return m_Registrations.empty() ? nullptr : CToggle_X::MouseDown(event, limits, keepGoing);
}

WCGUIControl::BUFFER_HEADER *CDragHandle::MouseDown(WCEventData &event, WURect<double> &limits,
                                                    bool &keepGoing) {
    if (IsDisabled())
        return nullptr;
    m_Dragging = CanMove();
    m_DragFrom = event.GetMouseLocation();
    return ClickSelf(event, limits, keepGoing);
}

double CDragHandle::ConvertMouseDeltaFromPixelsToState(double delta, double &accumulator,
                                                       std::size_t paramIndex, double range) const {
    if (m_Registrations.empty())
        return delta;
    return CToggle_X::ConvertMouseDeltaFromPixelsToState(delta, accumulator, paramIndex, range);
}

WCGUIControl::BUFFER_HEADER *CDragHandle::MouseDrag(WCEventData &event, double dx, double dy,
                                                    bool &keepGoing) {
    if (!m_Dragging)
        return nullptr;
    const WCPoint2D<short> to = event.GetMouseLocation();
    int moveX = to.x - m_DragFrom.x, moveY = to.y - m_DragFrom.y;
    if (!m_MovementRect.IsReset()) {
        // Kept inside the movement rect; a handle larger than the rect does not move that way.
        moveX = std::clamp(moveX, std::min(0, m_MovementRect.left - m_DrawableRect.left),
                           std::max(0, m_MovementRect.right - m_DrawableRect.right));
        moveY = std::clamp(moveY, std::min(0, m_MovementRect.top - m_DrawableRect.top),
                           std::max(0, m_MovementRect.bottom - m_DrawableRect.bottom));
    }
    if (moveX != 0 || moveY != 0) {
        // The old place needs painting over as much as the new one.
        if (m_pOwner != nullptr)
            m_pOwner->SetNeedToRedrawGUI();
        Move(moveX, moveY);
        SetNeedToRedrawControl();
    }
    m_DragFrom = WCPoint2D<short>(static_cast<short>(m_DragFrom.x + moveX),
                                  static_cast<short>(m_DragFrom.y + moveY));
    return m_Registrations.empty() ? nullptr : CToggle_X::MouseDrag(event, dx, dy, keepGoing);
}

WCGUIControl::BUFFER_HEADER *CDragHandle::MouseUp(WCEventData &event) {
    m_Dragging = false;
    return CToggle_X::MouseUp(event);
}

MIREL_NAMESPACE_END
