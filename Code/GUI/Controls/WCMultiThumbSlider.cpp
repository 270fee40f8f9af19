#include "Code/GUI/Controls/WCMultiThumbSlider.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

WCGUIControl *WCMultiThumbSlider::Clone() const {
    auto *copy = new WCMultiThumbSlider(m_pOwner);
    CopyTo(*copy);
    copy->m_ThumbMovementArea = m_ThumbMovementArea;
    copy->m_HasThumbSize = m_HasThumbSize;
    copy->m_ThumbSize = m_ThumbSize;
    return copy;
}

WTErr WCMultiThumbSlider::ReadFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *) {
    if (element == nullptr)
        return eMemNullPointer;
    WURect<short> area;
    bool hasSize = false;
    WCPoint2D<short> size;
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        if (child->GetName() == "ThumbMovementArea") {
            if (const WTErr err = GUIXML::ReadRect(*child, area); err != eNoErr)
                return err;
        } else if (child->GetName() == "ThumbSize") {
            short width = 0, height = 0;
            if (!child->GetAttrib("width", width) || !child->GetAttrib("height", height))
                return eNotANumber;
            if (width <= 0 || height <= 0)
                return eOutOfRangeNumber;
            hasSize = true;
            size = WCPoint2D<short>(width, height);
        }
    }
    m_ThumbMovementArea = area;
    m_MovementRect = area;
    m_HasThumbSize = hasSize;
    m_ThumbSize = size;
    return eNoErr;
}

void WCMultiThumbSlider::WriteToXMLWithAlgSelf(XML::CXMLElement *element) const {
    if (element == nullptr)
        return;
    if (!m_ThumbMovementArea.IsReset())
        element->push_back(GUIXML::WriteRect("ThumbMovementArea", m_ThumbMovementArea));
    if (m_HasThumbSize) {
        auto *size = new XML::CXMLElement("ThumbSize");
        size->AddAttrib("width", m_ThumbSize.x);
        size->AddAttrib("height", m_ThumbSize.y);
        element->push_back(size);
    }
}

// ---- geometry ----------------------------------------------------------------------------------

bool WCMultiThumbSlider::IsVertical() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr && (lead->GetRegisterFlag(eRegMouseDrawHorizontal) ||
                               lead->GetRegisterFlag(eRegMouseVertical));
}

void WCMultiThumbSlider::Move(int dx, int dy) {
    WCGUIControl::Move(dx, dy);
    if (!m_ThumbMovementArea.IsReset())
        m_ThumbMovementArea.Offset(static_cast<short>(dx), static_cast<short>(dy));
    m_MovementRect = m_ThumbMovementArea;
}

WURect<short> WCMultiThumbSlider::Area() const {
    return m_ThumbMovementArea.IsEmpty() ? m_DrawableRect : m_ThumbMovementArea;
}

WCPoint2D<short> WCMultiThumbSlider::ThumbSize() const {
    if (const WCBaseImage *thumb = m_Foreground.GetCurrentImage();
        thumb != nullptr && thumb->GetDefaultWidth() > 0 && thumb->GetDefaultHeight() > 0)
        return thumb->GetDefaultImageSize();
    if (m_HasThumbSize)
        return m_ThumbSize;
    const WURect<short> area = Area();
    return IsVertical() ? WCPoint2D<short>(area.Width(), kDefaultThumbLength)
                        : WCPoint2D<short>(kDefaultThumbLength, area.Height());
}

void WCMultiThumbSlider::Travel(int &start, int &length) const {
    const WURect<short> area = Area();
    const WCPoint2D<short> thumb = ThumbSize();
    const int along = IsVertical() ? thumb.y : thumb.x;
    start = (IsVertical() ? area.top : area.left) + along / 2;
    length = std::max(0, (IsVertical() ? area.Height() : area.Width()) - along);
}

WURect<short> WCMultiThumbSlider::GetThumbRect(std::size_t index) const {
    if (index >= m_Registrations.size())
        return WURect<short>();
    int start = 0, length = 0;
    Travel(start, length);
    const double state = m_Registrations[index].GetValue();
    const double fraction = std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) / 1000.0 : 0.0;
    const WURect<short> area = Area();
    const WCPoint2D<short> size = ThumbSize();
    WURect<short> rect;
    if (IsVertical()) {
        const int centre = start + static_cast<int>(std::trunc((1.0 - fraction) * length));
        rect.SetTopLeftWidthHeight(static_cast<short>(centre - size.y / 2),
                                   static_cast<short>((area.left + area.right - size.x) / 2),
                                   size.x, size.y);
    } else {
        const int centre = start + static_cast<int>(std::trunc(fraction * length));
        rect.SetTopLeftWidthHeight(static_cast<short>((area.top + area.bottom - size.y) / 2),
                                   static_cast<short>(centre - size.x / 2), size.x, size.y);
    }
    return rect;
}

int WCMultiThumbSlider::NearestThumb(const WCPoint2D<short> &point) const {
    int nearest = -1;
    int best = 0;
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        const WURect<short> thumb = GetThumbRect(i);
        const int centre =
            IsVertical() ? (thumb.top + thumb.bottom) / 2 : (thumb.left + thumb.right) / 2;
        const int distance = std::abs(Along(point) - centre);
        if (nearest < 0 || distance <= best) {
            nearest = static_cast<int>(i);
            best = distance;
        }
    }
    return nearest;
}

double WCMultiThumbSlider::PositionToState(int position) const {
    int start = 0, length = 0;
    Travel(start, length);
    if (length <= 0)
        return 0.0;
    const double fraction = std::clamp((position - start) / double(length), 0.0, 1.0);
    return (IsVertical() ? 1.0 - fraction : fraction) * 1000.0;
}

// ---- input -------------------------------------------------------------------------------------

WCMultiThumbSlider::BUFFER_HEADER *
WCMultiThumbSlider::MouseDownSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const WCPoint2D<short> at = event.GetMouseLocation();
    m_TakenThumb = NearestThumb(at);
    if (m_TakenThumb >= 0) {
        const WURect<short> thumb = GetThumbRect(static_cast<std::size_t>(m_TakenThumb));
        m_HoldOffset = Along(at) - (IsVertical() ? (thumb.top + thumb.bottom) / 2
                                                 : (thumb.left + thumb.right) / 2);
    }
    return chain;
}

WCMultiThumbSlider::BUFFER_HEADER *WCMultiThumbSlider::MouseDragSelf(WCEventData &event, double,
                                                                     double, bool &) {
    if (m_TakenThumb < 0 || static_cast<std::size_t>(m_TakenThumb) >= m_Registrations.size())
        return nullptr;
    WCParamRegistrationData &data = m_Registrations[static_cast<std::size_t>(m_TakenThumb)];
    bool modifiers[eNumModifiers];
    ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
    const double state = PositionToState(Along(event.GetMouseLocation()) - m_HoldOffset);
    const unsigned int type = IsVertical() ? eRegMouseDrawHorizontal : eRegMouseDrawVertical;
    BUFFER_HEADER *chain = data.SetParamValue(state, type, modifiers);
    SetNeedToRedrawControl();
    return chain;
}

WCMultiThumbSlider::BUFFER_HEADER *WCMultiThumbSlider::MouseUpSelf(WCEventData &) {
    m_TakenThumb = -1;
    m_HoldOffset = 0;
    return nullptr;
}

// ---- drawing -----------------------------------------------------------------------------------

int WCMultiThumbSlider::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    if (const WCBaseImage *back = m_Background.GetCurrentImage();
        back != nullptr && back->GetResID() >= 0) {
        const WURect<short> &bound = back->GetBoundRect();
        const WCPoint2D<short> at =
            bound.IsReset() ? WCPoint2D<short>(0, 0)
                            : WCPoint2D<short>(static_cast<short>(bound.left - m_DrawableRect.left),
                                               static_cast<short>(bound.top - m_DrawableRect.top));
        writer.Remark("MultiThumbSlider background");
        writer.DrawPNGAtPosition(back->GetResID(), at);
    }
    return err;
}

int WCMultiThumbSlider::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    const WCBaseImage *picture = m_Foreground.GetCurrentImage();
    const bool hasPicture = picture != nullptr && picture->GetResID() >= 0;
    const WCRGBAColor color = m_HasColor ? m_Color : WCRGBAColor(255, 255, 255, 255);
    for (std::size_t i = 0; i < m_Registrations.size(); ++i) {
        WURect<short> thumb = GetThumbRect(i);
        thumb.Offset(static_cast<short>(-m_DrawableRect.left),
                     static_cast<short>(-m_DrawableRect.top));
        writer.Remark("Thumb");
        if (hasPicture)
            writer.DrawPNGAtPosition(picture->GetResID(), thumb.TopLeft());
        else
            writer.DrawSolidRect(color, thumb);
    }
    return err;
}

MIREL_NAMESPACE_END
