#include "Code/GUI/Controls/CMarker_X.h"

#include <cmath>
#include <utility>

#include "Code/GUI/Controls/CToggle_X.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/PluginViewManager.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

// The value of the first registration on `type`, 0..1000; -1 without one.
double AxisValue(const WCBaseControl &control, unsigned int type) {
    for (std::size_t i = 0; i < control.GetNumRegistrations(); ++i)
        if (control.GetRegistration(i).GetRegisterFlag(type))
            return std::fmin(1000.0, std::fmax(0.0, control.GetRegistration(i).GetValue()));
    return -1.0;
}

} // namespace

CMarker_X *CMarker_X::Clone() const {
    auto *copy = new CMarker_X(m_pOwner);
    CopyTo(*copy);
    copy->m_Images.CopyImages(m_Images);
    copy->m_Fields = m_Fields;
    copy->m_OtherChildren = m_OtherChildren;
    return copy;
}

WTErr CMarker_X::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    WSFields fields;
    WCBaseImageVector images;
    std::vector<XML::CXMLElement> others;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Image") {
            keep(images.AddFromXML_OneImage(child));
        } else if (name == "Custom") {
            fields.m_Custom = GUIXML::ReadSwitch(*child);
        } else if (name == "NoHideMouse") {
            fields.m_NoHideMouse = GUIXML::ReadSwitch(*child);
        } else if (name == "ClippingRect") {
            keep(GUIXML::ReadRect(*child, fields.m_ClippingRect));
        } else if (name == "TextValueOffset") {
            fields.m_HasTextOffset = true;
            if (!child->GetAttrib("hOffset", fields.m_TextOffset.x) ||
                !child->GetAttrib("vOffset", fields.m_TextOffset.y))
                keep(eNotANumber);
        } else if (name == "Cursor") {
            if (!child->GetAttrib("ResID", fields.m_CursorResID))
                keep(eNotANumber);
        } else {
            others.push_back(*child);
        }
    }
    if (first != eNoErr)
        return first;
    // The picture's size centres it on the point; one that does not decode is drawn from the
    // control's corner.
    if (WTResContainerType *container = GetContainer())
        images.LoadAll(container);
    m_Images.CopyImages(images);
    m_Fields = fields;
    m_OtherChildren = std::move(others);
    return eNoErr;
}

void CMarker_X::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    const WSFields &f = m_Fields;
    for (std::size_t i = 0; i < m_Images.GetImagesVectorSize(); ++i)
        if (const WCBaseImage *image = m_Images.GetImagePtr(i))
            image->WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    if (f.m_Custom)
        cls->push_sub_element(new XML::CXMLElement("Custom", "true"));
    if (!f.m_ClippingRect.IsReset())
        cls->push_sub_element(GUIXML::WriteRect("ClippingRect", f.m_ClippingRect));
    if (f.m_NoHideMouse)
        cls->push_sub_element(new XML::CXMLElement("NoHideMouse", "true"));
    if (f.m_HasTextOffset) {
        auto *offset = cls->push_sub_element(new XML::CXMLElement("TextValueOffset"));
        offset->AddAttrib("hOffset", f.m_TextOffset.x);
        offset->AddAttrib("vOffset", f.m_TextOffset.y);
    }
    if (f.m_CursorResID >= 0)
        cls->push_sub_element(new XML::CXMLElement("Cursor"))->AddAttrib("ResID", f.m_CursorResID);
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

WCPoint2D<short> CMarker_X::GetMarkerPosition() const {
    const WURect<short> &area = m_Fields.m_ClippingRect;
    WCPoint2D<short> centre((m_DrawableRect.left + m_DrawableRect.right) / 2,
                            (m_DrawableRect.top + m_DrawableRect.bottom) / 2);
    if (area.IsReset())
        return centre;
    if (const double x = AxisValue(*this, eRegMouseHorizontal); x >= 0.0)
        centre.x = static_cast<short>(area.left + std::lround(x * 0.001 * area.Width()));
    if (const double y = AxisValue(*this, eRegMouseVertical); y >= 0.0)
        centre.y = static_cast<short>(area.bottom - std::lround(y * 0.001 * area.Height()));
    return centre;
}

void CMarker_X::Place() {
    const WCPoint2D<short> at = GetMarkerPosition();
    const int dx = at.x - (m_DrawableRect.left + m_DrawableRect.right) / 2;
    const int dy = at.y - (m_DrawableRect.top + m_DrawableRect.bottom) / 2;
    if (dx != 0 || dy != 0) {
        // Both the place it leaves and the one it takes are painted again.
        if (m_pOwner != nullptr)
            m_pOwner->SetNeedToRedrawGUI();
        Move(dx, dy);
    }
}

int CMarker_X::FinishCreateSelf() {
    if (m_Fields.m_HasTextOffset)
        for (auto &data : m_Registrations)
            if (WCStaticText *win = data.GetValueWin())
                win->SetDrawableRect(WURect<short>(win->GetDrawableRect())
                                         .Offset(m_Fields.m_TextOffset.x, m_Fields.m_TextOffset.y));
    Place();
    return eNoErr;
}

void CMarker_X::UpdatePointerSelf(std::size_t) {
    Place();
}

WURect<short> CMarker_X::GetMouseDragRect() const {
    return m_Fields.m_ClippingRect.IsReset() ? WCGUIControl::GetMouseDragRect()
                                             : m_Fields.m_ClippingRect;
}

bool CMarker_X::ShouldHideCursorOnDrag() const {
    return !m_Fields.m_NoHideMouse && WCGUIControl::ShouldHideCursorOnDrag();
}

WCGUIControl::BUFFER_HEADER *CMarker_X::Switch() {
    BUFFER_HEADER *chain = nullptr;
    for (auto &data : m_Registrations)
        if (data.GetRegisterFlag(eRegMouseDown))
            chain =
                Chain(chain,
                      data.SetParamValue(
                          CToggle_X::NextState(data.GetValue(),
                                               data.GetActiveControllerParameterStateStep(), false),
                          eRegMouseDown, nullptr));
    return chain;
}

WCGUIControl::BUFFER_HEADER *CMarker_X::MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                                      bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    const bool twice = event.GetMouseClickCount() == PluginViewManager::eClickDouble;
    if (GetControlFlag(eCF_MarkerSwitchOnClick) ||
        (twice && GetControlFlag(eCF_MarkerSwitchOnDoubleClick)))
        chain = Chain(chain, Switch());
    return chain;
}

WCGUIControl::BUFFER_HEADER *CMarker_X::MouseUpSelf(WCEventData &) {
    return GetControlFlag(eCF_MarkerSwitchOnMouseUp) && !m_ValueChangedDuringDrag ? Switch()
                                                                                  : nullptr;
}

void CMarker_X::MouseOverSelf(WCEventData &, bool inside, bool &) {
    if (m_Fields.m_CursorResID < 0)
        return;
    if (inside)
        Utils::SetCursor(m_Fields.m_CursorResID);
    else
        Utils::InitCursor();
}

int CMarker_X::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    const WCBaseImage *image = m_Fields.m_Custom ? nullptr : m_Images.GetImagePtr(0);
    if (image != nullptr && image->GetResID() >= 0) {
        writer.Remark("Marker");
        if (!m_Fields.m_ClippingRect.IsReset())
            writer.ClipRect(WURect<short>(m_Fields.m_ClippingRect)
                                .Offset(static_cast<short>(-m_DrawableRect.left),
                                        static_cast<short>(-m_DrawableRect.top)));
        writer.DrawPNGAtPosition(
            image->GetResID(),
            WCPoint2D<short>(
                static_cast<short>((m_DrawableRect.Width() - image->GetDefaultWidth()) / 2),
                static_cast<short>((m_DrawableRect.Height() - image->GetDefaultHeight()) / 2)));
    }
    return WCGUIControl::GetDrawInstructions(writer);
}

MIREL_NAMESPACE_END
