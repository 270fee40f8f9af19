#pragma once

#include <optional>
#include <vector>

#include "Code/GUI/WCGUIControl.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A level meter drawn with rectangles instead of pictures: the "BackgroundColor" over the whole
// control, then the level in up to three colours, "MeterColor1" up to the first of the
// "ColorSwitchValues" ("first", "second", in states 0..1000), "MeterColor2" up to the second and
// "MeterColor3" above. A meter parameter that clipped, or a level at full scale, lights the
// "MeterClipColor" at the meter's far end. Vertical with the control's "Direction" vertical,
// else horizontal. The "Class" children it does not know are kept whole and written back.
// Owned by its document like every control. [main-thread]
class WCPolygonMeter : public WCGUIControl {
public:
    struct WSLook {
        std::optional<WCRGBAColor> m_MeterColor1, m_MeterColor2, m_MeterColor3, m_MeterClipColor,
            m_BackgroundColor;
        // "ColorSwitchValues", in states.
        std::optional<double> m_Switch1, m_Switch2;
        std::vector<XML::CXMLElement> m_Others;
    };
    // What the static drawing needs, defaults filled in.
    struct WSColors {
        WCRGBAColor m_Background{30, 30, 30, 255};
        WCRGBAColor m_Zone[3] = {{60, 200, 60, 255}, {230, 200, 40, 255}, {240, 120, 30, 255}};
        WCRGBAColor m_Clip{255, 40, 40, 255};
        double m_Switch[2] = {700.0, 900.0};
    };
    static constexpr short kClipLight = 4;

    explicit WCPolygonMeter(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    WCPolygonMeter *Clone() const override;

    const WSLook &GetLook() const noexcept { return m_Look; }
    WSColors GetColors() const;
    // The meter's clip: its meter parameter's flag, or a level at full scale.
    bool IsClipped() const;

    // A meter of `level` (0..1) in `rect` (frame-local), from the bottom (vertical) or the left,
    // with the clip light when `clip`. A slider's slit can draw its level the same way.
    static void GetDrawVUMeterInstructions(miGS::WCGraphicStreamBinaryWriter &writer,
                                           const WURect<short> &rect, double level, bool vertical,
                                           bool clip, const WSColors &colors);

protected:
    WTErr ReadFromXMLWithAlgSelf(const XML::CXMLElement *cls, cALGORITHM *alg) override;
    void WriteToXMLWithAlgSelf(XML::CXMLElement *cls) const override;
    // The meter is the control's face, under the selection picture and the value windows.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;

private:
    WSLook m_Look;
};

MIREL_NAMESPACE_END
