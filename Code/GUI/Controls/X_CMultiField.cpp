#include "Code/GUI/Controls/X_CMultiField.h"

#include "Code/GUI/WCStaticText.h"
#include "Code/GUI/WUGUIXML.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

const WCRGBAColor kTakenColor(255, 190, 40, 255);

} // namespace

X_CMultiField *X_CMultiField::Clone() const {
    auto *copy = new X_CMultiField(m_pOwner);
    CopyTo(*copy);
    copy->m_Edit = m_Edit;
    copy->m_ImageTypes = m_ImageTypes;
    for (const auto &image : m_Images) {
        copy->m_Images.push_back(std::make_unique<WCBaseImage>());
        copy->m_Images.back()->Assign(*image);
    }
    return copy;
}

WTErr X_CMultiField::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read aside and kept only whole: a broken image leaves the box as it was.
    bool edit = false;
    std::vector<std::unique_ptr<WCBaseImage>> images;
    std::vector<WCFixedString<31>> types;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        if (child->GetName() == "Edit") {
            edit = GUIXML::ReadSwitch(*child);
        } else if (child->GetName() == "Image") {
            auto image = std::make_unique<WCBaseImage>();
            if (const WTErr err = image->ReadFromXML(child); err != eNoErr)
                return err;
            images.push_back(std::move(image));
            types.emplace_back(child->GetAttribString("Type").c_str());
        }
    }
    m_Edit = edit;
    m_Images = std::move(images);
    m_ImageTypes = std::move(types);
    return eNoErr;
}

void X_CMultiField::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (m_Edit)
        cls->push_sub_element(new XML::CXMLElement("Edit", "true"));
    for (std::size_t i = 0; i < m_Images.size(); ++i) {
        auto *element = cls->push_sub_element(new XML::CXMLElement("Image"));
        if (!m_ImageTypes[i].empty())
            element->AddAttrib("Type", m_ImageTypes[i].c_str());
        m_Images[i]->WriteToXML(element);
    }
}

int X_CMultiField::FieldAt(const WCPoint2D<short> &point) const {
    const WCPoint2D<short> local(static_cast<short>(point.x - m_DrawableRect.left),
                                 static_cast<short>(point.y - m_DrawableRect.top));
    for (std::size_t i = 0; i < m_Registrations.size(); ++i)
        if (const WCStaticText *win = m_Registrations[i].GetValueWin();
            win != nullptr && win->GetDrawableRect().PointInRect(local))
            return static_cast<int>(i);
    return -1;
}

WCGUIControl::BUFFER_HEADER *X_CMultiField::MouseDown(WCEventData &event, WURect<double> &limits,
                                                      bool &keepGoing) {
    m_Taken = FieldAt(event.GetMouseLocation());
    SetNeedToRedrawControl();
    return WCGUIControl::MouseDown(event, limits, keepGoing);
}

WCGUIControl::BUFFER_HEADER *X_CMultiField::MouseDrag(WCEventData &event, double dx, double dy,
                                                      bool &keepGoing) {
    if (IsDisabled() || m_Taken < 0 || static_cast<std::size_t>(m_Taken) >= m_Registrations.size())
        return nullptr;
    WCParamRegistrationData &data = m_Registrations[static_cast<std::size_t>(m_Taken)];
    bool modifiers[eNumModifiers];
    ModifiersFor(data, event.GetAllKeyModifiers(), modifiers);
    BUFFER_HEADER *chain = nullptr;
    if (dy != 0.0)
        chain = Chain(chain, data.OffsetParamValue(dy * m_MouseDirectionFactor, eRegMouseVertical,
                                                   modifiers));
    if (dx != 0.0)
        chain = Chain(chain, data.OffsetParamValue(dx * m_MouseDirectionFactor, eRegMouseHorizontal,
                                                   modifiers));
    return Chain(chain, MouseDragSelf(event, dx, dy, keepGoing));
}

int X_CMultiField::WhichParamIndexCanEnterText() const {
    if (!m_Edit || m_Taken < 0 || static_cast<std::size_t>(m_Taken) >= m_Registrations.size() ||
        !m_Registrations[static_cast<std::size_t>(m_Taken)].IsRegistered())
        return WCGUIControl::WhichParamIndexCanEnterText();
    return m_Taken;
}

int X_CMultiField::GetDrawInstructions(miGS::WCGraphicStreamBinaryWriter &writer) {
    for (const auto &image : m_Images) {
        if (image->GetResID() == WCBaseImage::kNoResID)
            continue;
        const WURect<short> &bound = image->GetBoundRect();
        writer.DrawPNGAtPosition(
            image->GetResID(),
            WCPoint2D<short>(
                static_cast<short>(bound.IsReset() ? 0 : bound.left - m_DrawableRect.left),
                static_cast<short>(bound.IsReset() ? 0 : bound.top - m_DrawableRect.top)));
    }
    const int err = WCGUIControl::GetDrawInstructions(writer);
    if (m_Taken >= 0 && static_cast<std::size_t>(m_Taken) < m_Registrations.size())
        if (const WCStaticText *win =
                m_Registrations[static_cast<std::size_t>(m_Taken)].GetValueWin()) {
            writer.Remark("Taken field");
            writer.DrawWireRect(kTakenColor, win->GetDrawableRect(), 1.0f);
        }
    return err;
}

MIREL_NAMESPACE_END
