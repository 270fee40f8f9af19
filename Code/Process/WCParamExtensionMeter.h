#pragma once

#include <cstdint>

#include "Code/Algorithm/WCParamExtension.h"
#include "Code/Process/MirelMeterInfo.h"
#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

// The extension of a meter parameter: its value is a word the process side writes into its
// states memory at a known offset. The meter manager reads the word (SetValueFromDSP), which
// smooths it into the value, holds the peak and asks for a display refresh.
//
// Values are the word times the multiplier. A meter whose range minimum is below 0 shows
// decibels of that value, never below the range minimum; otherwise it shows the value itself.
// Coefficients are per millisecond of display time (SetAttackTimeMiliSec makes them from a
// time); a coefficient of 0 follows the words at once.
//
// Created by the parameter extension factory, owned by the parameter. [main-thread], or the
// shell's meter thread while the main thread leaves meters alone; no lock of its own.
class WCParamExtensionMeter : public WCParamExtension {
public:
    // Smooth snaps to a value this close, and takes this much time when none has passed.
    static constexpr double kSmoothSnap = 0.0001;
    static constexpr double kIdleElapsedMs = 0.5;

    WCParamExtensionMeter() = default;

    // The meter elements inside the extension element ("Origin", "Description", "Orientation",
    // "MeterType", "DisplayInControlSurface", "OrderInControlSurface", "ReadResetVal" with
    // "Type" and "Native", "StateOffset", "Multiplier", "Range", "Smoothing"). Every element
    // that reads is taken; one that does not keeps its default, and the first such code is the
    // answer: eNotANumber for a bad number, eValueNotFound for an unknown word,
    // eOutOfRangeNumber for a number outside what the element allows.
    int ReadFromXML(pugi::xml_node const &element) override;

    // ---- what the process side gives ---------------------------------------------------------
    // [reading thread] One word read back: times the multiplier, smoothed into the value, the
    // peak held, and a display refresh asked for.
    virtual void SetValueFromDSP(double word);
    // The value written back after a read so the process side restarts its peak hold: one for a
    // process side built for a DSP ("Type"), one for native code ("Native").
    double GetReadResetValue(bool native) const { return m_ReadResetValue[native ? 1 : 0]; }
    void SetReadResetValue(bool native, double value) { m_ReadResetValue[native ? 1 : 0] = value; }
    std::uint32_t GetStatesOffset() const { return m_StatesOffset; }
    void SetStatesOffset(std::uint32_t offset) { m_StatesOffset = offset; }
    double GetMultiplier() const { return m_Multiplier; }
    void SetMultiplier(double multiplier) { m_Multiplier = multiplier; }
    double GetRangeMin() const { return m_RangeMin; }
    void SetRangeMin(double rangeMin) { m_RangeMin = rangeMin; }

    // ---- value, peak and smoothing -------------------------------------------------------------
    double GetValue() const { return m_SmoothedValue; }
    double GetPeak() const { return m_Peak; }
    double GetLastPeakTime() const { return m_LastPeakTime; }
    // Stores `value` and the time (ms of the tick counter) when it is a new peak; a level meter's
    // peak is the highest value.
    void SetPeakValue(double value) { SetPeakValue(value, NowMs()); }
    virtual void SetPeakValue(double value, double nowMs);
    // Moves the smoothed value towards `value` and hands it back in `value`: within
    // kSmoothSnap it snaps; else by attack (rising) or release (falling) to the power of the
    // milliseconds since the last call (kIdleElapsedMs when none passed).
    void Smooth(double &value, double attack, double release);
    void Smooth(double &value, double attack, double release, double nowMs);
    double GetAttackCoef() const { return m_AttackCoef; }
    double GetReleaseCoef() const { return m_ReleaseCoef; }
    void SetAttackCoef(double coef) { m_AttackCoef = coef; }
    void SetReleaseCoef(double coef) { m_ReleaseCoef = coef; }
    // Coefficients per step of a 60 Hz display.
    void SetAttackTimeMiliSec(double ms);
    void SetReleaseTimeMiliSec(double ms);

    // What the meter parameter shows: the value, in decibels when the range minimum is below 0.
    virtual double GetDisplayValue() const;

    bool GetNeedsUpdate() const { return m_NeedsUpdate; }
    void SetNeedsUpdate(bool value) { m_NeedsUpdate = value; }

    // The value and peak with nothing measured: 0 for a level meter, unity gain for the gain
    // meters.
    virtual double GetRestValue() const { return 0.0; }
    void ResetPeak();
    void ResetValue();

    // ---- description ---------------------------------------------------------------------------
    EMeterOrigin GetOrigin() const { return m_Origin; }
    EMeterOrientation GetOrientation() const { return m_Orientation; }
    EMeterType GetMeterType() const { return m_MeterType; }
    WCFixedStringBase const &GetDescription() const { return m_Description; }
    bool GetDisplayInControlSurface() const { return m_DisplayInControlSurface; }
    std::int32_t GetOrderInControlSurface() const { return m_OrderInControlSurface; }
    virtual void FillMeterInfo(MirelMeterInfo &info) const;

    // The tick counter meters time their peaks and smoothing with, in milliseconds.
    static double NowMs();

protected:
    // The clip form reads its own elements after the common ones.
    virtual int ReadMoreFromXML(pugi::xml_node const &element);
    // Value and peak at the rest value of the final class, for its constructor to call.
    void StartAtRest() { m_Peak = m_SmoothedValue = GetRestValue(); }
    void StorePeak(double value, double nowMs) {
        m_Peak = value;
        m_LastPeakTime = nowMs;
    }

private:
    // Declaration order follows the data model.
    double m_ReadResetValue[2] = {0.0, 0.0};
    double m_Peak = 0.0;
    double m_LastPeakTime = 0.0;
    bool m_NeedsUpdate = false;
    std::uint32_t m_StatesOffset = 0;
    double m_Multiplier = 1.0;
    double m_RangeMin = 0.0;
    double m_SmoothedValue = 0.0;
    double m_LastSmoothTime = 0.0;
    double m_AttackCoef = 0.0;
    double m_ReleaseCoef = 0.0;

    EMeterOrigin m_Origin = eMeterOriginBottomLeft;
    EMeterOrientation m_Orientation = eMeterOrientationVertical;
    EMeterType m_MeterType = eMeterTypeOther;
    WCFixedString<127> m_Description;
    bool m_DisplayInControlSurface = false;
    std::int32_t m_OrderInControlSurface = -1;
};

// A meter that also holds a clip indication: a word at or above the clip level sets the flag,
// which stays until ResetClip. "Clip" false turns the indication off.
class WCParamExtensionMeterWithClip : public WCParamExtensionMeter {
public:
    void SetValueFromDSP(double word) override;
    double GetDisplayValue() const override;
    void FillMeterInfo(MirelMeterInfo &info) const override;
    double GetClipLevel() const { return m_ClipLevel; }
    void SetClipLevel(double level) { m_ClipLevel = level; }
    bool GetClip() const { return m_Clip; }
    void ResetClip() { m_Clip = false; }
    bool IsClipEnabled() const { return m_ClipEnabled; }

protected:
    int ReadMoreFromXML(pugi::xml_node const &element) override;

private:
    double m_ClipLevel = 1.0;
    bool m_Clip = false;
    bool m_ClipEnabled = true;
};

// A gain-reduction meter: values are gains at or below unity, and the peak is the deepest
// reduction, the lowest value.
class WCParamExtensionAttenuationMeter : public WCParamExtensionMeter {
public:
    WCParamExtensionAttenuationMeter() { StartAtRest(); }
    using WCParamExtensionMeter::SetPeakValue;
    void SetPeakValue(double value, double nowMs) override;
    double GetRestValue() const override { return 1.0; }
};

// A gain meter that swings both ways around unity: the peak is the value farthest from unity in
// decibels, boost or cut.
class WCParamExtensionBoostAttenMeter : public WCParamExtensionMeter {
public:
    WCParamExtensionBoostAttenMeter() { StartAtRest(); }
    using WCParamExtensionMeter::SetPeakValue;
    void SetPeakValue(double value, double nowMs) override;
    double GetRestValue() const override { return 1.0; }
};

MIREL_NAMESPACE_END
