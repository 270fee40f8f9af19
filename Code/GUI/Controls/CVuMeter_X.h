#pragma once

#include "Code/GUI/WCGUIControl.h"
#include "core/MirelNamespace.h"
#include "core/WCRGBAColor.h"
#include "core/WURect.h"

MIREL_NAMESPACE_BEGIN

// A level meter of a display-only parameter: its background picture (the unlit meter) whole,
// and of its foreground picture (the lit one) the part the level asks, from the bottom for a
// vertical meter and from the left otherwise. Each picture sits at its own "PositionRect", else
// at the control's corner. It reads no "Class" children of its own.
//
// Peak and clip: a parameter that is a meter of the plug-in has its peak and clip held by the
// meter manager, and ReadVU takes them from there; for any other parameter the control holds
// the highest level it has shown, and a level at full scale counts as a clip. The peak is drawn
// as a two-pixel band of the lit picture, the clip as a light at the meter's far end. A click on
// the meter resets its peak and clip. Owned by its document like every control. [main-thread]
class CVuMeter_X : public WCGUIControl {
public:
    static constexpr short kPeakLine = 2;
    static constexpr short kClipLight = 4;

    explicit CVuMeter_X(WIControlOwner *owner = nullptr) : WCGUIControl(owner) {}

    CVuMeter_X *Clone() const override;

    // The lit fraction (0..1) for a parameter state (0..1000); a state out of range is held at
    // the nearer end and one that is no number shows nothing.
    static double CalculateVUValueByParamValue(double value) noexcept;
    // The lit fraction of the lead registration's value; 0 without registrations.
    double GetVUValue() const;
    // The peak (as a lit fraction) and clip of parameter `id` of `alg`; false when it is no
    // meter of the plug-in, leaving both alone.
    static bool ReadMeterOf(cALGORITHM *alg, std::uint64_t id, double &peak, bool &clip);

    // Takes the peak and clip of the lead registration as told above. eValueNotFound without a
    // registration.
    int ReadVU();
    // The peak back to the level shown; the meter manager's too for a meter parameter.
    int ResetPeak();
    // Every meter of the plug-in's peak, and this one's.
    int ResetAllPeak();
    // Every meter of the plug-in's clip, and this one's.
    int ResetAllClip();
    double GetPeakValue() const noexcept { return m_Peak; }
    bool IsClipped() const noexcept { return m_Clip; }

    // A meter drawn from pictures in `rect` (frame-local): the unlit picture whole, the lit one
    // up to `level` (0..1) from the bottom (vertical) or the left; -1 for a picture not to draw.
    // A slider's slit draws its level the same way.
    static void GetDrawVUMeterInstructions(miGS::WCGraphicStreamBinaryWriter &writer,
                                           short unlitResID, short litResID,
                                           const WURect<short> &rect, double level, bool vertical);

protected:
    // The meter is the control's face: the colour, the unlit picture and the lit part, the peak
    // and the clip light, so that the selection picture and the value windows stand over it.
    int GetDrawInstructionsBkgColor(miGS::WCGraphicStreamBinaryWriter &writer) override;
    void UpdatePointerSelf(std::size_t index) override;
    BUFFER_HEADER *MouseDownSelf(WCEventData &event, WURect<double> &limits,
                                 bool &keepGoing) override;

private:
    // Where a picture of the control sits in its frame, and how large it is.
    WURect<short> PlaceOf(const WCBaseImage &image) const;
    // The meter index of the lead registration's parameter, or -1.
    std::int64_t MeterIndex() const;

    double m_Peak = 0.0;
    bool m_Clip = false;
};

MIREL_NAMESPACE_END
