#pragma once

#include <optional>
#include <vector>

#include "Code/GUI/WCBaseImage.h"
#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A level meter made of sections, each lit in its own colour: over the unlit picture ("Image",
// at its "PositionRect", else the whole control) the level lights every "Section" of
// "MeterSections" ("from", "to" in states 0..1000, and a colour) up to where it reaches, from
// the bottom (the control's "Direction" vertical) or the left. The peak is drawn with the
// "Marker" picture centred on it, or without one as a two-pixel line in the colour of its
// section. The value window shows its text in "TextNormalColor", or in "TextClipColor" once the
// meter clipped.
//
// Peak and clip are kept as the VU meter keeps them (the plug-in's meter manager for a meter
// parameter, else the control itself). A click resets them, only on the value window with
// "ResetOnlyOnValueWin". Children of "Class" it does not know are kept whole and written back.
// Owned by its document like every control. [main-thread]
class CMultipartVuMeter : public WCGUIControl {
public:
    struct WSSection {
        double m_From = 0.0;
        double m_To = 1000.0;
        WCRGBAColor m_Color;
    };
    // What the "Class" children give besides the two pictures.
    struct WSLook {
        std::vector<WSSection> m_Sections;
        std::optional<WCRGBAColor> m_TextNormalColor, m_TextClipColor;
        bool m_ResetOnlyOnValueWin = false;
        std::vector<XML::CXMLElement> m_Others;
    };
    static constexpr short kPeakLine = 2;

    explicit CMultipartVuMeter(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CMultipartVuMeter *Clone() const override;

    const std::vector<WSSection> &GetSections() const noexcept { return m_Look.m_Sections; }
    bool GetResetOnlyOnValueWin() const noexcept { return m_Look.m_ResetOnlyOnValueWin; }
    // The lit fraction of the lead registration; 0 without one.
    double GetLevel() const;
    // Takes peak and clip as the VU meter does; eValueNotFound without a registration.
    int ReadVU();
    // Peak back to the level and clip off, the meter manager's too.
    int ResetPeakAndClip();
    double GetPeakValue() const noexcept { return m_Peak; }
    bool IsClipped() const noexcept { return m_Clip; }

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The meter is the control's face, under the selection picture and the value windows.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    int GetDrawInstructionsParamValueWindow(miGS::WCGraphicStreamBinaryWriter &writer,
                                            std::size_t index) override;
    void UpdatePointerSelf(std::size_t index) override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;

private:
    // The meter's area in the control's frame.
    WURect<short> MeterRect() const;
    // The part of `meter` between two fractions.
    WURect<short> Part(const WURect<short> &meter, double from, double to) const;

    void CopyMeterTo(CMultipartVuMeter &other) const;

    WSLook m_Look;
    WCBaseImage m_Image;
    WCBaseImage m_Marker;
    double m_Peak = 0.0;
    bool m_Clip = false;
};

MIREL_NAMESPACE_END
