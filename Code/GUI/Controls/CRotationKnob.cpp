#include "Code/GUI/Controls/CRotationKnob.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "Code/GUI/WUGUIXML.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"

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

WTErr ReadReal(const char *text, double &out) {
    char *end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text || *end != '\0' || !std::isfinite(value))
        return eNotANumber;
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
    other.m_SequenceSteps = m_SequenceSteps;
    other.m_SubSequenceSteps = m_SubSequenceSteps;
    other.m_Alpha = m_Alpha;
    other.m_DiscreteStep = m_DiscreteStep;
    other.m_SequenceQuantize = m_SequenceQuantize;
    other.m_Clipable = m_Clipable;
    other.m_HasAngleRange = m_HasAngleRange;
    other.m_MinAngle = m_MinAngle;
    other.m_MaxAngle = m_MaxAngle;
    other.m_AngleDirection = m_AngleDirection;
    other.m_HasKnobCenter = m_HasKnobCenter;
    other.m_KnobCenter = m_KnobCenter;
    other.m_OtherChildren = m_OtherChildren;
}

int CRotationKnob::FrameForState(double state, int steps) noexcept {
    if (steps <= 1 || !std::isfinite(state))
        return 0;
    const double clamped = std::clamp(state, 0.0, 1000.0);
    return static_cast<int>(std::lround(clamped * (steps - 1) / 1000.0));
}

int CRotationKnob::GetCurrentFrame() const {
    const WCParamRegistrationData *lead = GetLeadRegistration();
    return lead != nullptr ? FrameForState(lead->GetValue(), m_SequenceSteps) : 0;
}

WTErr CRotationKnob::ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *) {
    if (cls == nullptr)
        return eMemNullPointer;
    WTErr first = eNoErr;
    auto keep = [&first](WTErr err) {
        if (first == eNoErr)
            first = err;
    };
    // A skin change reads the class again: what was kept is replaced, not added to.
    m_OtherChildren.clear();
    for (const XML::CXMLElement *child : cls->GetSubElements()) {
        const auto &name = child->GetName();
        if (name == "Image") {
            WCBaseImage strip;
            const WTErr err = strip.ReadFromXML(child);
            keep(err);
            if (err == eNoErr)
                m_Strip.Assign(strip);
        } else if (name == "SequenceSteps") {
            int steps = 0;
            WTErr err = ReadCount(*child, steps);
            if (err == eNoErr && steps == 0)
                err = eOutOfRangeNumber;
            keep(err);
            if (err == eNoErr)
                m_SequenceSteps = steps;
        } else if (name == "SubSequenceSteps") {
            keep(ReadCount(*child, m_SubSequenceSteps));
        } else if (name == "Alpha") {
            int alpha = 0;
            WTErr err = ReadCount(*child, alpha);
            if (err == eNoErr && alpha > 255)
                err = eOutOfRangeNumber;
            keep(err);
            if (err == eNoErr)
                m_Alpha = alpha;
        } else if (name == "DiscreteStep") {
            keep(ReadReal(child->GetText().c_str(), m_DiscreteStep));
        } else if (name == "SequenceQuantize") {
            m_SequenceQuantize = GUIXML::ReadSwitch(*child);
        } else if (name == "Clipable") {
            m_Clipable = GUIXML::ReadSwitch(*child);
        } else if (name == "AngleRange") {
            double low = 0.0, high = 0.0;
            WTErr err = ReadReal(child->GetAttribString("minAngle").c_str(), low);
            if (err == eNoErr)
                err = ReadReal(child->GetAttribString("maxAngle").c_str(), high);
            keep(err);
            if (err == eNoErr) {
                m_HasAngleRange = true;
                m_MinAngle = low;
                m_MaxAngle = high;
                child->GetAttrib("direction", m_AngleDirection);
            }
        } else if (name == "KnobCenter") {
            short x = 0, y = 0;
            if (child->GetAttrib("x", x) && child->GetAttrib("y", y)) {
                m_HasKnobCenter = true;
                m_KnobCenter = WCPoint2D<short>(x, y);
            } else {
                // Another form of centre is kept as it was written.
                m_OtherChildren.push_back(*child);
            }
        } else {
            m_OtherChildren.push_back(*child);
        }
    }
    // The strip's height tells the height of a frame; a strip that does not decode is drawn with
    // frames of the control's height.
    if (m_Strip.GetResID() >= 0)
        if (WTResContainerType *container = GetContainer())
            m_Strip.LoadFromResource(container);
    return first;
}

void CRotationKnob::WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const {
    if (cls == nullptr)
        return;
    if (m_Strip.GetResID() != WCBaseImage::kNoResID)
        m_Strip.WriteToXML(cls->push_sub_element(new XML::CXMLElement("Image")));
    cls->push_sub_element(new XML::CXMLElement("SequenceSteps", m_SequenceSteps));
    if (m_SubSequenceSteps != 0)
        cls->push_sub_element(new XML::CXMLElement("SubSequenceSteps", m_SubSequenceSteps));
    if (m_Alpha != 255)
        cls->push_sub_element(new XML::CXMLElement("Alpha", m_Alpha));
    if (m_DiscreteStep != 0.0)
        cls->push_sub_element(new XML::CXMLElement("DiscreteStep", m_DiscreteStep));
    if (m_SequenceQuantize)
        cls->push_sub_element(new XML::CXMLElement("SequenceQuantize", "true"));
    if (m_Clipable)
        cls->push_sub_element(new XML::CXMLElement("Clipable", "true"));
    if (m_HasAngleRange) {
        auto *range = cls->push_sub_element(new XML::CXMLElement("AngleRange"));
        range->AddAttrib("minAngle", static_cast<float>(m_MinAngle));
        range->AddAttrib("maxAngle", static_cast<float>(m_MaxAngle));
        if (!m_AngleDirection.empty())
            range->AddAttrib("direction", m_AngleDirection.c_str());
    }
    if (m_HasKnobCenter) {
        auto *center = cls->push_sub_element(new XML::CXMLElement("KnobCenter"));
        center->AddAttrib("x", m_KnobCenter.x);
        center->AddAttrib("y", m_KnobCenter.y);
    }
    for (const auto &child : m_OtherChildren)
        cls->push_sub_element(new XML::CXMLElement(child));
}

WCPoint2D<short> CRotationKnob::FrameSize() const {
    const int steps = std::max(1, m_SequenceSteps);
    if (m_Strip.IsLoaded())
        return WCPoint2D<short>(static_cast<short>(m_Strip.GetDefaultWidth()),
                                static_cast<short>(m_Strip.GetDefaultHeight() / steps));
    return WCPoint2D<short>(m_DrawableRect.Width(), m_DrawableRect.Height());
}

int CRotationKnob::GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) {
    const int err = WCGUIControl::GetDrawInstructionsBkgColor(writer);
    if (m_Strip.GetResID() < 0)
        return err;
    const WCPoint2D<short> frame = FrameSize();
    writer.Remark("RotationKnob frame");
    writer.DrawPNGAtPositionClipped(
        m_Strip.GetResID(), WCPoint2D<short>(0, static_cast<short>(-GetCurrentFrame() * frame.y)),
        WURect<short>(0, 0, frame.y, frame.x));
    return err;
}

MIREL_NAMESPACE_END
