#include "Code/GUI/Controls/CRotationKnob.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "Code/GUI/Controls/WUControlLookXML.h"
#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"

MIREL_NAMESPACE_BEGIN

namespace {

// A whole number of 0 or more from an element's text.
WTErr ReadCount(const XML::CXMLElement &element, int &out) {
    int value = 0;
    if (!GUIXML::ReadIntText(element, value))
        return eNotANumber;
    if (value < 0)
        return eOutOfRangeNumber;
    out = value;
    return eNoErr;
}

} // namespace

CRotationKnob *CRotationKnob::Clone() const {
    auto *copy = new CRotationKnob(m_pOwner);
    CopyTo(*copy);
    CopyKnobTo(*copy);
    return copy;
}

void CRotationKnob::CopyKnobTo(CRotationKnob &other) const {
    other.m_Strip.Assign(m_Strip);
    other.m_Fields = m_Fields;
    other.m_OtherChildren = m_OtherChildren;
}

int CRotationKnob::FrameForState(double state, int steps) noexcept {
    if (steps <= 1 || !std::isfinite(state))
        return 0;
    const double clamped = std::clamp(state, 0.0, 1000.0);
    return static_cast<int>(std::lround(clamped * (steps - 1) / 1000.0));
}

double CRotationKnob::GetKnobState() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr ? lead->GetValue() : 0.0;
}

int CRotationKnob::GetCurrentFrame() const {
    return FrameForState(GetKnobState(), m_Fields.m_SequenceSteps);
}

double CRotationKnob::GetMinAngle() const noexcept {
    return m_Fields.m_HasAngleRange ? m_Fields.m_MinAngle : kDefaultMinAngle;
}

double CRotationKnob::GetMaxAngle() const noexcept {
    return m_Fields.m_HasAngleRange ? m_Fields.m_MaxAngle : kDefaultMaxAngle;
}

bool CRotationKnob::TurnsCounterClockwise() const noexcept {
    const char *direction = m_Fields.m_AngleDirection.c_str();
    return strcasecmp(direction, "ccw") == 0 || strcasecmp(direction, "counterclockwise") == 0;
}

double CRotationKnob::AngleForState(double state) const noexcept {
    const double fraction = std::isfinite(state) ? std::clamp(state, 0.0, 1000.0) / 1000.0 : 0.0;
    const double angle = GetMinAngle() + fraction * (GetMaxAngle() - GetMinAngle());
    return TurnsCounterClockwise() ? -angle : angle;
}

WTErr CRotationKnob::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    // A skin change reads the class again: what was kept is replaced, not added to, and all of
    // it only once every child has read.
    sKnobFields fields;
    WCBaseImage strip;
    std::vector<XML::CXMLElement> others;
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (IsDerivedClassChild(std::string_view(name.c_str()))) {
            continue;
        } else if (name == "Image") {
            keep(strip.ReadFromXML(child));
        } else if (name == "Type") {
            keep(ReadCount(*child, fields.m_Mode));
            fields.m_HasMode = true;
        } else if (name == "SequenceSteps") {
            WTErr err = ReadCount(*child, fields.m_SequenceSteps);
            if (err == eNoErr && fields.m_SequenceSteps == 0)
                err = eOutOfRangeNumber;
            keep(err);
        } else if (name == "SubSequenceSteps") {
            keep(ReadCount(*child, fields.m_SubSequenceSteps));
        } else if (name == "Alpha") {
            WTErr err = ReadCount(*child, fields.m_Alpha);
            if (err == eNoErr && fields.m_Alpha > 255)
                err = eOutOfRangeNumber;
            keep(err);
        } else if (name == "DiscreteStep") {
            keep(ControlLook::ReadNumber(child->GetText().c_str(), fields.m_DiscreteStep));
        } else if (name == "SequenceQuantize") {
            fields.m_SequenceQuantize = GUIXML::ReadSwitch(*child);
        } else if (name == "Clipable") {
            fields.m_Clipable = GUIXML::ReadSwitch(*child);
        } else if (name == "AngleRange") {
            keep(ControlLook::ReadNumber(child->GetAttribString("minAngle").c_str(),
                                         fields.m_MinAngle));
            keep(ControlLook::ReadNumber(child->GetAttribString("maxAngle").c_str(),
                                         fields.m_MaxAngle));
            fields.m_HasAngleRange = true;
            child->GetAttrib("direction", fields.m_AngleDirection);
        } else if (name == "KnobCenter") {
            short x = 0, y = 0;
            if (child->GetAttrib("x", x) && child->GetAttrib("y", y)) {
                fields.m_HasKnobCenter = true;
                fields.m_KnobCenter = WCPoint2D<short>(x, y);
            } else {
                // Another form of centre is kept as it was written.
                others.push_back(*child);
            }
        } else {
            others.push_back(*child);
        }
    }
    if (first != eNoErr)
        return first;
    m_Fields = fields;
    m_Strip.Assign(strip);
    m_OtherChildren = std::move(others);
    // The strip's height tells the height of a frame; a strip that does not decode is drawn with
    // frames of the control's height.
    if (m_Strip.GetResID() >= 0)
        if (WTResContainerType *container = GetContainer())
            m_Strip.LoadFromResource(container);
    return eNoErr;
}

void CRotationKnob::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    const sKnobFields &f = m_Fields;
    if (m_Strip.GetResID() != WCBaseImage::kNoResID)
        m_Strip.WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    if (f.m_HasMode)
        cls->push_sub_element(new XML::CXMLElement("Type", f.m_Mode));
    cls->push_sub_element(new XML::CXMLElement("SequenceSteps", f.m_SequenceSteps));
    if (f.m_SubSequenceSteps != 0)
        cls->push_sub_element(new XML::CXMLElement("SubSequenceSteps", f.m_SubSequenceSteps));
    if (f.m_Alpha != 255)
        cls->push_sub_element(new XML::CXMLElement("Alpha", f.m_Alpha));
    if (f.m_DiscreteStep != 0.0)
        cls->push_sub_element(new XML::CXMLElement("DiscreteStep", f.m_DiscreteStep));
    if (f.m_SequenceQuantize)
        cls->push_sub_element(new XML::CXMLElement("SequenceQuantize", "true"));
    if (f.m_Clipable)
        cls->push_sub_element(new XML::CXMLElement("Clipable", "true"));
    if (f.m_HasAngleRange) {
        auto *range = cls->push_sub_element(new XML::CXMLElement("AngleRange"));
        range->AddAttrib("minAngle", static_cast<float>(f.m_MinAngle));
        range->AddAttrib("maxAngle", static_cast<float>(f.m_MaxAngle));
        if (!f.m_AngleDirection.empty())
            range->AddAttrib("direction", f.m_AngleDirection.c_str());
    }
    if (f.m_HasKnobCenter) {
        auto *center = cls->push_sub_element(new XML::CXMLElement("KnobCenter"));
        center->AddAttrib("x", f.m_KnobCenter.x);
        center->AddAttrib("y", f.m_KnobCenter.y);
    }
    GUIXML::WriteKeptChildren(*cls, m_OtherChildren);
}

WCPoint2D<short> CRotationKnob::FrameSize() const {
    const int steps = std::max(1, m_Fields.m_SequenceSteps);
    if (m_Strip.IsLoaded())
        return WCPoint2D<short>(static_cast<short>(m_Strip.GetDefaultWidth()),
                                static_cast<short>(m_Strip.GetDefaultHeight() / steps));
    return WCPoint2D<short>(m_DrawableRect.Width(), m_DrawableRect.Height());
}

WCPoint2D<short> CRotationKnob::GetRotationCentre() const {
    if (m_Fields.m_HasKnobCenter)
        return m_Fields.m_KnobCenter;
    const WCPoint2D<short> frame = FrameSize();
    return WCPoint2D<short>(static_cast<short>(frame.x / 2), static_cast<short>(frame.y / 2));
}

int CRotationKnob::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    if (m_Strip.GetResID() < 0)
        return err;
    const WCPoint2D<short> frame = FrameSize();
    const WURect<short> firstFrame(0, 0, frame.y, frame.x);
    if (!RotatesImage()) {
        writer.Remark("RotationKnob frame");
        writer.DrawPNGAtPositionClipped(
            m_Strip.GetResID(),
            WCPoint2D<short>(0, static_cast<short>(-GetCurrentFrame() * frame.y)), firstFrame);
        return err;
    }
    // The turn lives in a frame of its own, so that it ends with the picture and what the
    // control draws next stands upright.
    writer.Remark("RotationKnob turned");
    miGS::WCStGSFrameStructWriter turned(
        writer, WURect<int>(0, 0, m_DrawableRect.Height(), m_DrawableRect.Width()), 0);
    const WCPoint2D<short> centre = GetRotationCentre();
    miGS::SGSFrameRotate rotate;
    rotate.angleDegrees = static_cast<std::int32_t>(std::lround(AngleForState(GetKnobState())));
    rotate.xOffset = centre.x;
    rotate.yOffset = centre.y;
    writer.RotateFrame(rotate);
    miGS::WCGraphicStreamBinaryWriter::ImageFlags flags;
    // Bit 0 tells a painter that this picture stands in a turned frame.
    flags.SetBit(0);
    writer.DrawPNGAtPositionClipped(m_Strip.GetResID(), WCPoint2D<short>(0, 0), firstFrame, flags);
    return err;
}

MIREL_NAMESPACE_END
