#include "Code/GUI/Controls/CScroller.h"

#include <algorithm>

#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The thumb's share of the track, and the scale's share a page moves.
constexpr int kThumbShare = 4;
constexpr double kPageStates = 1000.0 / kThumbShare;
constexpr int kMinThumbPixels = 8;

const WCRGBAColor kTrackColor(25, 25, 30, 255);
const WCRGBAColor kThumbColor(170, 175, 185, 255);

} // namespace

CScroller *CScroller::Clone() const {
    auto *copy = new CScroller(m_pOwner);
    CopyTo(*copy);
    copy->m_OtherChildren = m_OtherChildren;
    return copy;
}

WTErr CScroller::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    GUIXML::KeepChildren(*cls, m_OtherChildren);
    return eNoErr;
}

void CScroller::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

bool CScroller::IsVertical() const {
    return std::any_of(m_Registrations.begin(), m_Registrations.end(), [](const auto &data) {
        return data.IsRegisteredToType(eRegScrollY, nullptr);
    });
}

int CScroller::TrackLength() const {
    return IsVertical() ? m_DrawableRect.Height() : m_DrawableRect.Width();
}

int CScroller::ThumbLength() const {
    return std::min(TrackLength(), std::max(kMinThumbPixels, TrackLength() / kThumbShare));
}

double CScroller::ThumbStartToState(int start) const {
    const int travel = TrackLength() - ThumbLength();
    if (travel <= 0)
        return 0.0;
    return std::clamp(start * 1000.0 / travel, 0.0, 1000.0);
}

WURect<short> CScroller::GetThumbRect() const {
    const double value =
        m_Registrations.empty() ? 0.0 : std::clamp(GetLeadRegistration()->GetValue(), 0.0, 1000.0);
    const auto start = static_cast<short>(value * 0.001 * (TrackLength() - ThumbLength()));
    const auto length = static_cast<short>(ThumbLength());
    const WURect<short> &r = m_DrawableRect;
    return IsVertical() ? WURect<short>(static_cast<short>(r.top + start), r.left,
                                        static_cast<short>(r.top + start + length), r.right)
                        : WURect<short>(r.top, static_cast<short>(r.left + start), r.bottom,
                                        static_cast<short>(r.left + start + length));
}

WCGUIControl::BUFFER_HEADER *CScroller::SetScroll(double state, WCEventData &event) {
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        for (const unsigned int type : {eRegScrollX, eRegScrollY})
            chain = Chain(chain, data.SetParamValue(state, type, modifiers));
    }
    SetNeedToRedrawControl();
    return chain;
}

WCGUIControl::BUFFER_HEADER *CScroller::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                      bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const WCPoint2D<short> at = event.GetMouseLocation();
    const WURect<short> thumb = GetThumbRect();
    // A release outside the bar never reaches it: each press decides afresh.
    m_Holding = false;
    const int along = IsVertical() ? at.y - thumb.top : at.x - thumb.left;
    if (thumb.PointInRect(at)) {
        m_Holding = true;
        m_HoldOffset = along;
        return chain;
    }
    const double value = GetLeadRegistration()->GetValue();
    const double paged = std::clamp(value + (along < 0 ? -kPageStates : kPageStates), 0.0, 1000.0);
    return Chain(chain, SetScroll(paged, event));
}

WCGUIControl::BUFFER_HEADER *CScroller::MouseDragSelf(WCEventData &event, double, double, bool &) {
    if (!m_Holding)
        return nullptr;
    const WCPoint2D<short> at = event.GetMouseLocation();
    const int start =
        (IsVertical() ? at.y - m_DrawableRect.top : at.x - m_DrawableRect.left) - m_HoldOffset;
    return SetScroll(ThumbStartToState(start), event);
}

WCGUIControl::BUFFER_HEADER *CScroller::MouseUpSelf(WCEventData &) {
    m_Holding = false;
    return nullptr;
}

int CScroller::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructions(writer);
    writer.Remark("Scroll bar");
    writer.DrawSolidRect(kTrackColor,
                         WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()));
    WURect<short> thumb = GetThumbRect();
    thumb.Offset(static_cast<short>(-m_DrawableRect.left), static_cast<short>(-m_DrawableRect.top));
    writer.DrawSolidRect(kThumbColor, thumb);
    return err;
}

MIREL_NAMESPACE_END
