#include "Code/GUI/Controls/CMultipartVuMeter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Code/Algorithm/cALGORITHM.h"
#include "Code/GUI/Controls/CVuMeter_X.h"
#include "Code/GUI/Controls/WUControlLookXML.h"
#include "Code/GUI/WCStaticText.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "view/WCEventData.h"

MIREL_NAMESPACE_BEGIN

namespace {

using WSLook = CMultipartVuMeter::WSLook;

constexpr std::array<ControlLook::WSChild<WSLook>, 2> kTextColors = {{
    {"TextNormalColor", &WSLook::m_TextNormalColor},
    {"TextClipColor", &WSLook::m_TextClipColor},
}};

// "Section" children, each "from" below "to" and a colour.
WTErr ReadSections(const XML::CXMLElement &list, std::vector<CMultipartVuMeter::WSSection> &out) {
    std::vector<CMultipartVuMeter::WSSection> sections;
    for (const XML::CXMLElement *child : list.GetSubElements()) {
        if (child->GetName() != "Section")
            return eValueNotFound;
        CMultipartVuMeter::WSSection section;
        WTErr err = ControlLook::ReadStateAttrib(*child, "from", section.m_From);
        if (err == eNoErr)
            err = ControlLook::ReadStateAttrib(*child, "to", section.m_To);
        if (err == eNoErr && !(section.m_From < section.m_To))
            err = eOutOfRangeNumber;
        if (err == eNoErr)
            err = GUIXML::ReadColor(*child, section.m_Color);
        if (err != eNoErr)
            return err;
        sections.push_back(section);
    }
    out = std::move(sections);
    return eNoErr;
}

} // namespace

CMultipartVuMeter *CMultipartVuMeter::Clone() const {
    auto *copy = new CMultipartVuMeter(m_pOwner);
    CopyTo(*copy);
    CopyMeterTo(*copy);
    return copy;
}

void CMultipartVuMeter::CopyMeterTo(CMultipartVuMeter &other) const {
    other.m_Look = m_Look;
    other.m_Image.Assign(m_Image);
    other.m_Marker.Assign(m_Marker);
    other.m_Peak = m_Peak;
    other.m_Clip = m_Clip;
}

WTErr CMultipartVuMeter::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    // Read into copies, so that a child that does not read leaves the meter as it was.
    WSLook look;
    WCBaseImage image, marker;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        WTErr err = eNoErr;
        if (name == "Image")
            err = image.ReadFromXML(child);
        else if (name == "Marker")
            err = marker.ReadFromXML(child);
        else if (name == "MeterSections")
            err = ReadSections(*child, look.m_Sections);
        else if (name == "ResetOnlyOnValueWin")
            look.m_ResetOnlyOnValueWin = GUIXML::ReadSwitch(*child);
        else if (!ControlLook::ReadChild<WSLook>(*child, kTextColors, look, err))
            look.m_Others.push_back(*child);
        if (err != eNoErr)
            return err;
    }
    m_Look = std::move(look);
    m_Image.Assign(image);
    m_Marker.Assign(marker);
    // The marker is centred on the peak, so its size must be known.
    if (m_Marker.GetResID() >= 0)
        if (WTResContainerType *container = GetContainer())
            (void)m_Marker.LoadFromResource(container);
    return eNoErr;
}

void CMultipartVuMeter::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (m_Image.GetResID() != WCBaseImage::kNoResID)
        m_Image.WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    if (m_Marker.GetResID() != WCBaseImage::kNoResID)
        m_Marker.WriteToXML(cls->push_sub_element(new XML::CXMLElement("Marker")));
    if (!m_Look.m_Sections.empty()) {
        auto *list = cls->push_sub_element(new XML::CXMLElement("MeterSections"));
        for (const WSSection &section : m_Look.m_Sections) {
            auto *element = list->push_sub_element(GUIXML::WriteColor("Section", section.m_Color));
            ControlLook::AddNumberAttrib(*element, "from", section.m_From);
            ControlLook::AddNumberAttrib(*element, "to", section.m_To);
        }
    }
    ControlLook::WriteChildren<WSLook>(*cls, kTextColors, m_Look);
    if (m_Look.m_ResetOnlyOnValueWin)
        cls->push_sub_element(new XML::CXMLElement("ResetOnlyOnValueWin", "true"));
    GUIXML::WriteKeptChildren(*cls, m_Look.m_Others);
}

double CMultipartVuMeter::GetLevel() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr ? CVuMeter_X::CalculateVUValueByParamValue(lead->GetValue()) : 0.0;
}

int CMultipartVuMeter::ReadVU() {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    if (lead == nullptr)
        return eValueNotFound;
    const double level = GetLevel();
    if (!CVuMeter_X::ReadMeterOf(GetAlgorithm(), lead->GetRegisteredParam(), m_Peak, m_Clip)) {
        m_Peak = std::max(m_Peak, level);
        m_Clip = m_Clip || level >= 1.0;
    }
    return eNoErr;
}

int CMultipartVuMeter::ResetPeakAndClip() {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    cALGORITHM *alg = GetAlgorithm();
    std::uint32_t index = 0;
    if (lead != nullptr && alg != nullptr &&
        alg->GetMeterManager().GetMeterIndex(lead->GetRegisteredParam(), index) == eNoErr) {
        (void)alg->ResetPeak(index);
        (void)alg->GetMeterManager().ResetClip(index);
    }
    m_Peak = GetLevel();
    m_Clip = false;
    SetNeedToRedrawControl();
    return eNoErr;
}

void CMultipartVuMeter::UpdatePointerSelf(std::size_t) {
    (void)ReadVU();
}

WCGUIControl::BUFFER_HEADER *
CMultipartVuMeter::MouseDownSelf(WCEventData &event, WURect<double> &limits, bool &keepGoing) {
    BUFFER_HEADER *chain = WCGUIControl::MouseDownSelf(event, limits, keepGoing);
    if (!m_Look.m_ResetOnlyOnValueWin || GetValueRect().PointInRect(event.GetMouseLocation()))
        (void)ResetPeakAndClip();
    return chain;
}

WURect<short> CMultipartVuMeter::MeterRect() const {
    const WURect<short> &bound = m_Image.GetBoundRect();
    if (m_Image.GetResID() < 0 || bound.IsReset())
        return WURect<short>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width());
    return WURect<short>(static_cast<short>(bound.top - m_DrawableRect.top),
                         static_cast<short>(bound.left - m_DrawableRect.left),
                         static_cast<short>(bound.bottom - m_DrawableRect.top),
                         static_cast<short>(bound.right - m_DrawableRect.left));
}

WURect<short> CMultipartVuMeter::Part(const WURect<short> &meter, double from, double to) const {
    WURect<short> part = meter;
    if (m_Direction == eDirectionVertical) {
        part.bottom = static_cast<short>(meter.bottom - std::lround(from * meter.Height()));
        part.top = static_cast<short>(meter.bottom - std::lround(to * meter.Height()));
    } else {
        part.left = static_cast<short>(meter.left + std::lround(from * meter.Width()));
        part.right = static_cast<short>(meter.left + std::lround(to * meter.Width()));
    }
    return part;
}

int CMultipartVuMeter::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int first = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    const WURect<short> meter = MeterRect();
    if (m_Image.GetResID() >= 0) {
        writer.Remark("MultipartVU background");
        writer.DrawPNGAtPosition(m_Image.GetResID(), WCPoint2D<short>(meter.left, meter.top));
    }
    const double level = GetLevel();
    for (const WSSection &section : m_Look.m_Sections) {
        const double to = std::min(level, section.m_To * 0.001);
        const WURect<short> lit = Part(meter, section.m_From * 0.001, to);
        if (to > section.m_From * 0.001 && !lit.IsEmpty()) {
            writer.Remark("MultipartVU section");
            writer.DrawSolidRect(section.m_Color, lit);
        }
    }
    if (m_Peak <= level)
        return first;
    // The peak's place along the meter, and the section it lies in.
    const WURect<short> at = Part(meter, m_Peak, m_Peak);
    const bool vertical = m_Direction == eDirectionVertical;
    if (m_Marker.GetResID() >= 0) {
        const int width = m_Marker.GetDefaultWidth();
        const int height = m_Marker.GetDefaultHeight();
        const WCPoint2D<short> corner(
            static_cast<short>(vertical ? meter.left : at.left - width / 2),
            static_cast<short>(vertical ? at.top - height / 2 : meter.top));
        writer.Remark("MultipartVU marker");
        writer.DrawPNGAtPosition(m_Marker.GetResID(), corner);
        return first;
    }
    const auto holder = std::find_if(
        m_Look.m_Sections.begin(), m_Look.m_Sections.end(), [this](const WSSection &section) {
            return m_Peak > section.m_From * 0.001 && m_Peak <= section.m_To * 0.001;
        });
    if (holder == m_Look.m_Sections.end())
        return first;
    // A line of the peak's section, ending at the peak like the lit part would.
    WURect<short> line = at;
    if (vertical)
        line.bottom = std::min<short>(meter.bottom, static_cast<short>(at.top + kPeakLine));
    else
        line.left = std::max<short>(meter.left, static_cast<short>(at.right - kPeakLine));
    writer.Remark("MultipartVU peak");
    writer.DrawSolidRect(holder->m_Color, line);
    return first;
}

int CMultipartVuMeter::GetDrawInstructionsParamValueWindow(
    miGS::WCGraphicStreamBinaryWriter &writer, std::size_t index) {
    WCStaticText *win =
        index < m_Registrations.size() ? m_Registrations[index].GetValueWin() : nullptr;
    const std::optional<WCRGBAColor> &color =
        m_Clip && m_Look.m_TextClipColor ? m_Look.m_TextClipColor : m_Look.m_TextNormalColor;
    if (win == nullptr || !color)
        return WCGUIControl::GetDrawInstructionsParamValueWindow(writer, index);
    // The window's own colour stays what its XML says, so that it is written back unchanged.
    const WCRGBAColor own = win->GetFontColor();
    win->SetFontColor(*color);
    const int err = WCGUIControl::GetDrawInstructionsParamValueWindow(writer, index);
    win->SetFontColor(own);
    return err;
}

MIREL_NAMESPACE_END
