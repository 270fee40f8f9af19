#include "Code/GUI/Controls/CSlider_X.h"

#include <algorithm>
#include <cmath>

#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/WCStaticText.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

constexpr double kMaxState = 1000.0;

double ClampState(double state) {
    return std::isfinite(state) ? std::clamp(state, 0.0, kMaxState) : 0.0;
}

// The slit's lists are each wrapped in an "ImageList", as the control's own lists are.
constexpr const char *kSlitForeground = "ForeGroundImageList";
constexpr const char *kSlitBackground = "BackGroundImageList";
constexpr const char *kSlitSelection = "SelectionImageList";

} // namespace

CSlider_X::CSlider_X(WIControlOwner *owner) : WCGUIControl(owner) {}

CSlider_X::~CSlider_X() = default;

WCGUIControl *CSlider_X::Clone() const {
    auto *copy = new CSlider_X(m_pOwner);
    CopyTo(*copy);
    CopySliderTo(*copy);
    return copy;
}

void CSlider_X::CopySliderTo(CSlider_X &other) const {
    other.m_HoldPoint = m_HoldPoint;
    other.m_ThumbCentre = m_ThumbCentre;
    other.m_MovementStart = m_MovementStart;
    other.m_MovementLength = m_MovementLength;
    other.m_BackGroundPictRect = m_BackGroundPictRect;
    other.m_ThumbMovementArea = m_ThumbMovementArea;
    other.m_TextRelativeToThumb = m_TextRelativeToThumb;
    other.m_ThumbRect = m_ThumbRect;
    other.m_Shadow.CopyImages(m_Shadow);
    other.m_ThumbSizeX = m_ThumbSizeX;
    other.m_ThumbSizeY = m_ThumbSizeY;
    other.m_HasSlit = m_HasSlit;
    other.m_SlitBackground.CopyImages(m_SlitBackground);
    other.m_SlitForeground.CopyImages(m_SlitForeground);
    other.m_SlitSelection.CopyImages(m_SlitSelection);
    other.m_VUValue = m_VUValue;
    other.m_ResetFromRect = m_ResetFromRect;
}

// ---- XML ---------------------------------------------------------------------------------------

WTErr CSlider_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *element, cALGORITHM *) {
    if (element == nullptr)
        return eMemNullPointer;
    // What a skin's "Class" does not name, the slider does not have; nothing of a last skin stays.
    for (WURect<short> *rect :
         {&m_ThumbMovementArea, &m_BackGroundPictRect, &m_TextRelativeToThumb})
        rect->Reset();
    for (WCBaseImageVector *images :
         {&m_Shadow, &m_SlitBackground, &m_SlitForeground, &m_SlitSelection})
        images->Clear();
    m_HasSlit = m_ResetFromRect = false;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    for (const XML::CXMLElement *child : element->GetSubElements()) {
        const auto &name = child->GetName();
        WURect<short> *rect = name == "ThumbMovementArea"           ? &m_ThumbMovementArea
                              : name == "BackGroundPictRect"        ? &m_BackGroundPictRect
                              : name == "TextWindowRelativeToThumb" ? &m_TextRelativeToThumb
                                                                    : nullptr;
        if (rect != nullptr) {
            WURect<short> read;
            const WTErr err = GUIXML::ReadRect(*child, read);
            keep(err);
            if (err == eNoErr)
                *rect = read;
        } else if (name == "Slit") {
            keep(ReadFromXMLSliderSlit(*child));
        } else if (name == "Image" && child->GetAttribString("Type") == "Shadow") {
            m_Shadow.Clear();
            keep(m_Shadow.AddFromXML_OneImage(child));
        } else if (name == "ResetFromRect") {
            m_ResetFromRect = true;
        } else {
            keep(ReadFromXMLCustom(*child));
        }
    }
    m_MovementRect = m_ThumbMovementArea;
    return first;
}

WTErr CSlider_X::ReadFromXMLSliderSlit(const XML::CXMLElement &slit) {
    m_HasSlit = true;
    WTErr first = eNoErr;
    for (const XML::CXMLElement *child : slit.GetSubElements()) {
        const XML::CXMLElement *list = child->SubElement("ImageList");
        if (list == nullptr)
            continue;
        WTErr err = eNoErr;
        if (child->GetName() == kSlitForeground) {
            err = m_SlitForeground.ReadFromXML(list);
        } else if (child->GetName() == kSlitBackground) {
            err = m_SlitBackground.ReadFromXML(list);
        } else if (child->GetName() == kSlitSelection) {
            m_SlitSelection.Clear();
            const XML::CXMLElement *selection = list->SubElement("Selection");
            for (const XML::CXMLElement *image : selection != nullptr
                                                     ? selection->GetSubElements()
                                                     : std::vector<XML::CXMLElement *>{}) {
                const int level =
                    GUINames::SelectLevelFromString(image->GetAttribString("Type").c_str());
                if (image->GetName() != "Image" || level < 0 || level >= eNumSelectLevels)
                    continue;
                auto read = std::make_unique<WCBaseImage>();
                if (err = read->ReadFromXML(image); err != eNoErr)
                    break;
                m_SlitSelection.InsertImage(std::move(read), static_cast<std::size_t>(level));
            }
        }
        if (first == eNoErr)
            first = err;
    }
    return first;
}

void CSlider_X::WriteToXMLWithAlgSelf(XML::CXMLElement *element) const {
    if (element == nullptr)
        return;
    if (m_HasSlit)
        WriteToXMLSliderSlit(*element);
    const struct {
        const char *name;
        const WURect<short> &rect;
    } rects[] = {{"ThumbMovementArea", m_ThumbMovementArea},
                 {"BackGroundPictRect", m_BackGroundPictRect},
                 {"TextWindowRelativeToThumb", m_TextRelativeToThumb}};
    for (const auto &[name, rect] : rects)
        if (!rect.IsReset())
            element->push_back(GUIXML::WriteRect(name, rect));
    if (const WCBaseImage *shadow = m_Shadow.GetImagePtr(0)) {
        auto *image = new XML::CXMLElement("Image");
        image->AddAttrib("Type", "Shadow");
        element->push_back(shadow->WriteToXML(image));
    }
    if (m_ResetFromRect)
        element->push_back(new XML::CXMLElement("ResetFromRect"));
}

void CSlider_X::WriteToXMLSliderSlit(XML::CXMLElement &element) const {
    auto *slit = new XML::CXMLElement("Slit");
    for (const auto &[name, images] : {std::pair{kSlitForeground, &m_SlitForeground},
                                       std::pair{kSlitBackground, &m_SlitBackground}}) {
        if (images->Empty())
            continue;
        auto *wrapper = new XML::CXMLElement(name);
        wrapper->push_back(images->WriteToXML(new XML::CXMLElement("ImageList")));
        slit->push_back(wrapper);
    }
    if (!m_SlitSelection.Empty()) {
        auto *selection = new XML::CXMLElement("Selection");
        for (std::size_t level = 0; level < m_SlitSelection.GetImagesVectorSize(); ++level)
            if (const WCBaseImage *image = m_SlitSelection.GetImagePtr(level)) {
                auto *child = new XML::CXMLElement("Image");
                child->AddAttrib("Type", GUINames::SelectLevel2String(static_cast<int>(level)));
                selection->push_back(image->WriteToXML(child));
            }
        auto *list = new XML::CXMLElement("ImageList");
        list->push_back(selection);
        auto *wrapper = new XML::CXMLElement(kSlitSelection);
        wrapper->push_back(list);
        slit->push_back(wrapper);
    }
    element.push_back(slit);
}

// ---- geometry ----------------------------------------------------------------------------------

bool CSlider_X::IsVertical() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    // A drawn horizontal line is moved up and down, so it shares the vertical branch.
    return lead != nullptr && (lead->GetRegisterFlag(eRegMouseVertical) ||
                               lead->GetRegisterFlag(eRegMouseDrawHorizontal));
}

void CSlider_X::CalcThumbSize() {
    const WCBaseImage *thumb = m_Foreground.GetCurrentImage();
    if (thumb == nullptr)
        return;
    m_ThumbSizeX = static_cast<short>(std::max(0, thumb->GetDefaultWidth()));
    m_ThumbSizeY = static_cast<short>(std::max(0, thumb->GetDefaultHeight()));
    if (m_ThumbSizeX == 0 || m_ThumbSizeY == 0)
        return;
    if (m_ThumbRect.IsEmpty()) {
        // Before the first update the thumb stands where its picture says, else at the start
        // of the area.
        const WURect<short> &bound = thumb->GetBoundRect();
        const WCPoint2D<short> at =
            bound.IsReset() ? m_ThumbMovementArea.TopLeft() : bound.TopLeft();
        m_ThumbRect.SetTopLeftWidthHeight(at.y, at.x, m_ThumbSizeX, m_ThumbSizeY);
        m_ThumbCentre = WCPoint2D<short>(static_cast<short>(at.x + m_ThumbSizeX / 2),
                                         static_cast<short>(at.y + m_ThumbSizeY / 2));
    }
    UpdateMovement();
}

void CSlider_X::UpdateMovement() {
    const bool vertical = IsVertical();
    const int size = vertical ? m_ThumbMovementArea.Height() : m_ThumbMovementArea.Width();
    const int thumb = vertical ? m_ThumbSizeY : m_ThumbSizeX;
    m_MovementStart = (vertical ? m_ThumbMovementArea.top : m_ThumbMovementArea.left) + thumb / 2;
    m_MovementLength = std::max(0, size - thumb);
}

double CSlider_X::GetSliderPosition() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr ? ClampState(lead->GetValue()) : 0.0;
}

void CSlider_X::UpdateSliderGUI(std::uint64_t index, const double &value) {
    if (index >= m_Registrations.size())
        return;
    const double state = ClampState(value);
    if (m_HasSlit && m_Registrations[index].IsRegisteredToType(eRegDisplayOnly, nullptr)) {
        // The slit is a meter strip: its level as a meter reads it, and the picture of that level.
        m_VUValue = CVuMeter_X::CalculateVUValueByParamValue(value);
        if (const std::size_t frames = m_SlitForeground.GetImagesVectorSize(); frames > 1)
            m_SlitForeground.SetCurrentImage(
                static_cast<std::size_t>(std::lround(m_VUValue * double(frames - 1))));
    }
    if (index != m_LeadParamIndex)
        return;
    double fraction = state / kMaxState;
    if (GetControlFlag(eCF_SliderLogResolution))
        fraction = std::pow(fraction, kLogResolutionExponent);
    const double travel = IsVertical() ? (1.0 - fraction) : fraction;
    SetThumbRect(m_MovementStart + static_cast<int>(std::trunc(travel * m_MovementLength)));
}

void CSlider_X::SetThumbRect(int position) {
    if (m_ThumbRect.IsEmpty())
        return;
    const WURect<short> before = m_ThumbRect;
    if (IsVertical())
        m_ThumbRect.MoveTo(m_ThumbRect.left,
                           static_cast<short>(position - m_ThumbRect.Height() / 2));
    else
        m_ThumbRect.MoveTo(static_cast<short>(position - m_ThumbRect.Width() / 2), m_ThumbRect.top);
    m_ThumbCentre =
        WCPoint2D<short>(static_cast<short>((m_ThumbRect.left + m_ThumbRect.right) / 2),
                         static_cast<short>((m_ThumbRect.top + m_ThumbRect.bottom) / 2));
    const auto dx = static_cast<short>(m_ThumbRect.left - before.left);
    const auto dy = static_cast<short>(m_ThumbRect.top - before.top);
    if (GetControlFlag(eCF_SliderIconFollowKnob) && (dx != 0 || dy != 0))
        for (auto &data : m_Registrations)
            data.OffsetBitmapWin(dx, dy);
    if (GetControlFlag(eCF_SliderTextFollowKnob) && !m_TextRelativeToThumb.IsReset())
        for (auto &data : m_Registrations)
            if (WCStaticText *win = data.GetValueWin()) {
                // Text windows sit relative to the control.
                WURect<short> rect = m_TextRelativeToThumb;
                rect.Offset(static_cast<short>(m_ThumbRect.left - m_DrawableRect.left),
                            static_cast<short>(m_ThumbRect.top - m_DrawableRect.top));
                win->SetDrawableRect(rect);
            }
    SetNeedToRedrawControl();
}

double CSlider_X::ThumbPositionToState(const WCPoint2D<short> &point,
                                       const WCPoint2D<short> &origin) const {
    const bool vertical = IsVertical();
    const double size = vertical ? m_ThumbMovementArea.Height() : m_ThumbMovementArea.Width();
    const double thumb = vertical ? m_ThumbSizeY : m_ThumbSizeX;
    if (size - thumb <= 0.0)
        return 0.0;
    // Counted from the end where the state is 0: the bottom of a vertical slider.
    const double p = vertical ? origin.y + size - point.y : point.x - origin.x;
    double state = ClampState((1.0 - (size - p - thumb * 0.5) / (size - thumb)) * kMaxState);
    if (GetControlFlag(eCF_SliderLogResolution))
        state = kMaxState * std::pow(state / kMaxState, 1.0 / kLogResolutionExponent);
    return state;
}

WCPoint2D<short> CSlider_X::CalcRelativeClickPoint(const WCPoint2D<short> &point) const {
    const WCPoint2D<short> relative = WCGUIControl::CalcRelativeClickPoint(point);
    return WCPoint2D<short>(static_cast<short>(relative.x - m_HoldPoint.x),
                            static_cast<short>(relative.y - m_HoldPoint.y));
}

bool CSlider_X::IsInside(const WCPoint2D<short> &point) const {
    if (GetControlFlag(eCF_SliderMouseTrackKnob))
        return m_ThumbRect.PointInRect(point);
    return WCGUIControl::IsInside(point);
}

void CSlider_X::Move(int dx, int dy) {
    WCGUIControl::Move(dx, dy);
    const auto sdx = static_cast<short>(dx);
    const auto sdy = static_cast<short>(dy);
    for (WURect<short> *rect : {&m_ThumbMovementArea, &m_BackGroundPictRect, &m_ThumbRect})
        if (!rect->IsReset())
            rect->Offset(sdx, sdy);
    m_MovementRect = m_ThumbMovementArea;
    m_ThumbCentre = WCPoint2D<short>(static_cast<short>(m_ThumbCentre.x + sdx),
                                     static_cast<short>(m_ThumbCentre.y + sdy));
    UpdateMovement();
}

// ---- life and input ----------------------------------------------------------------------------

int CSlider_X::FinishCreateSelf() {
    // Without an area of its own the thumb travels over the whole control.
    if (m_ThumbMovementArea.IsEmpty())
        m_ThumbMovementArea = m_DrawableRect;
    m_MovementRect = m_ThumbMovementArea;
    CalcThumbSize();
    UpdateMovement();
    UpdateSliderGUI(m_LeadParamIndex, GetSliderPosition());
    return eNoErr;
}

WTErr CSlider_X::UpdateFromXMLWithAlgSelf(const XML::CXMLElement *, cALGORITHM *) {
    // The thumb of the new skin is measured and placed afresh.
    m_ThumbRect.Reset();
    m_ThumbSizeX = m_ThumbSizeY = 0;
    return FinishCreateSelf();
}

void CSlider_X::UpdatePointerSelf(std::size_t index) {
    if (index < m_Registrations.size())
        UpdateSliderGUI(index, m_Registrations[index].GetValue());
}

CSlider_X::BUFFER_HEADER *CSlider_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                   bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    // Without a thumb there is nothing to hold, and a hold point would only shift hit tests.
    if (m_ThumbRect.IsEmpty())
        return chain;
    const WCPoint2D<short> at = event.GetMouseLocation();
    m_HoldPoint = WCPoint2D<short>(static_cast<short>(at.x - m_ThumbCentre.x),
                                   static_cast<short>(at.y - m_ThumbCentre.y));
    return chain;
}

CSlider_X::BUFFER_HEADER *CSlider_X::MouseDragSelf(WCEventData &event, double dx, double dy,
                                                   bool &) {
    // An absolute drag puts the thumb centre under the mouse less the hold point, so the thumb
    // keeps its place under the mouse instead of jumping its centre there.
    const WCPoint2D<short> origin =
        WCGUIControl::CalcRelativeClickPoint(m_ThumbMovementArea.TopLeft());
    const double state =
        ThumbPositionToState(CalcRelativeClickPoint(event.GetMouseLocation()), origin);
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations) {
        bool modifiers[eNumModifiers];
        ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
        if (dy != 0.0 && IsVertical())
            chain = Chain(chain, data.SetParamValue(state, eRegAbsMouseMoveVertical, modifiers));
        if (dx != 0.0 && !IsVertical())
            chain = Chain(chain, data.SetParamValue(state, eRegAbsMouseMoveHorizontal, modifiers));
    }
    return chain;
}

CSlider_X::BUFFER_HEADER *CSlider_X::MouseUpSelf(WCEventData &) {
    ResetHoldPoint();
    return nullptr;
}

// ---- drawing -----------------------------------------------------------------------------------

int CSlider_X::DrawImage(miGS::WCGraphicStreamBinaryWriter &writer, const WCBaseImage *image,
                         const WCPoint2D<short> &guiPosition) const {
    if (image == nullptr || image->GetResID() < 0)
        return eNoErr;
    writer.DrawPNGAtPosition(
        image->GetResID(),
        WCPoint2D<short>(static_cast<short>(guiPosition.x - m_DrawableRect.left),
                         static_cast<short>(guiPosition.y - m_DrawableRect.top)));
    return eNoErr;
}

int CSlider_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    auto placed = [this](const WCBaseImage *image) {
        return image == nullptr || image->GetBoundRect().IsReset()
                   ? m_DrawableRect.TopLeft()
                   : image->GetBoundRect().TopLeft();
    };
    if (m_HasSlit) {
        writer.Remark("Slit");
        for (const WCBaseImage *image :
             {m_SlitBackground.GetCurrentImage(), m_SlitForeground.GetCurrentImage()})
            DrawImage(writer, image, placed(image));
    }
    if (m_ThumbSizeX == 0 || m_ThumbSizeY == 0)
        CalcThumbSize();
    if (!GetControlFlag(eCF_SliderNoBackground)) {
        writer.Remark("Slider background");
        const WCBaseImage *background = m_Background.GetCurrentImage();
        DrawImage(writer, background,
                  m_BackGroundPictRect.IsReset() ? placed(background)
                                                 : m_BackGroundPictRect.TopLeft());
    }
    const int err = WCGUIControl::GetDrawInstructions(writer);
    if (!m_ThumbRect.IsEmpty()) {
        writer.Remark("Thumb");
        DrawImage(writer, m_Foreground.GetCurrentImage(), m_ThumbRect.TopLeft());
    }
    if (const WCBaseImage *shadow = m_Shadow.GetCurrentImage(); shadow != nullptr) {
        writer.Remark("Shadow");
        const WURect<short> &offset = shadow->GetBoundRect();
        DrawImage(writer, shadow,
                  WCPoint2D<short>(static_cast<short>(m_ThumbRect.left + offset.left),
                                   static_cast<short>(m_ThumbRect.top + offset.top)));
    }
    return err;
}

MIREL_NAMESPACE_END
