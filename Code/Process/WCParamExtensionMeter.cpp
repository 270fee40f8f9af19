#include "Code/Process/WCParamExtensionMeter.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include <pugixml.hpp>

#include "Code/Process/WUMeterDSP.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

namespace {

// Meters redraw at most this often, so their coefficients are per step of it.
constexpr double kDisplayRateHz = 60.0;

// The first error wins; later elements still read.
void Keep(int &first, int err) {
    if (first == eNoErr)
        first = err;
}

// A text of a child element or an attribute; attributes win, so both spellings read.
char const *Field(pugi::xml_node const &node, char const *name) {
    if (auto attribute = node.attribute(name))
        return attribute.value();
    if (auto child = node.child(name))
        return child.text().get();
    return nullptr;
}

// The whole text must be one finite number, blanks around it allowed.
int ParseNumber(char const *text, double &out) {
    if (text == nullptr)
        return eNotANumber;
    char *end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text || !std::isfinite(value))
        return eNotANumber;
    while (*end == ' ' || *end == '\t' || *end == '\r' || *end == '\n')
        ++end;
    if (*end != 0)
        return eNotANumber;
    out = value;
    return eNoErr;
}

int ParseBool(char const *text, bool &out) {
    for (char const *word : {"true", "yes", "1"}) {
        if (strcasecmp(text, word) == 0) {
            out = true;
            return eNoErr;
        }
    }
    for (char const *word : {"false", "no", "0"}) {
        if (strcasecmp(text, word) == 0) {
            out = false;
            return eNoErr;
        }
    }
    return eValueNotFound;
}

template <typename Enum, std::size_t N>
int ParseWord(char const *text, char const *const (&words)[N], Enum &out) {
    for (std::size_t i = 0; i < N; ++i) {
        if (std::strcmp(text, words[i]) == 0) {
            out = static_cast<Enum>(i);
            return eNoErr;
        }
    }
    return eValueNotFound;
}

// A number no lower than `low` and no higher than `high`; `out` changes only when it is.
int ParseBounded(char const *text, double low, double high, double &out) {
    double value = 0.0;
    if (const int err = ParseNumber(text, value); err != eNoErr)
        return err;
    if (value < low || value > high)
        return eOutOfRangeNumber;
    out = value;
    return eNoErr;
}

constexpr char const *kOrigins[] = {"BottomLeft", "TopRight", "Center"};
constexpr char const *kOrientations[] = {"Vertical", "Horizontal"};
constexpr char const *kMeterTypes[] = {"Input",        "Output",   "CompLim_Gain",
                                       "ExpGate_Gain", "Analysis", "Other"};

} // namespace

double WCParamExtensionMeter::NowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

int WCParamExtensionMeter::ReadFromXML(pugi::xml_node const &element) {
    int first = eNoErr;
    for (pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element)
            continue;
        char const *tag = child.name();
        char const *text = child.text().get();
        if (std::strcmp(tag, "Origin") == 0) {
            Keep(first, ParseWord(text, kOrigins, m_Origin));
        } else if (std::strcmp(tag, "Description") == 0) {
            m_Description = text;
        } else if (std::strcmp(tag, "Orientation") == 0) {
            Keep(first, ParseWord(text, kOrientations, m_Orientation));
        } else if (std::strcmp(tag, "MeterType") == 0) {
            Keep(first, ParseWord(text, kMeterTypes, m_MeterType));
        } else if (std::strcmp(tag, "DisplayInControlSurface") == 0) {
            Keep(first, ParseBool(text, m_DisplayInControlSurface));
        } else if (std::strcmp(tag, "OrderInControlSurface") == 0) {
            double order = 0.0;
            const int err = ParseBounded(text, -1.0, 2147483647.0, order);
            if (err == eNoErr)
                m_OrderInControlSurface = static_cast<std::int32_t>(order);
            Keep(first, err);
        } else if (std::strcmp(tag, "ReadResetVal") == 0) {
            // One value serves both roles unless "Native" gives the native one its own.
            char const *dsp = Field(child, "Type");
            char const *native = Field(child, "Native");
            if (dsp != nullptr) {
                const int err = ParseNumber(dsp, m_ReadResetValue[0]);
                if (err == eNoErr && native == nullptr)
                    m_ReadResetValue[1] = m_ReadResetValue[0];
                Keep(first, err);
            }
            if (native != nullptr)
                Keep(first, ParseNumber(native, m_ReadResetValue[1]));
            if (dsp == nullptr && native == nullptr)
                Keep(first, eXMLAttribMissing);
        } else if (std::strcmp(tag, "StateOffset") == 0) {
            double offset = 0.0;
            const int err = ParseBounded(text, 0.0, 2147483647.0, offset);
            if (err == eNoErr && offset != std::floor(offset))
                Keep(first, eOutOfRangeNumber);
            else if (err == eNoErr)
                m_StatesOffset = static_cast<std::uint32_t>(offset);
            else
                Keep(first, err);
        } else if (std::strcmp(tag, "Multiplier") == 0) {
            Keep(first, ParseNumber(text, m_Multiplier));
        } else if (std::strcmp(tag, "Range") == 0) {
            Keep(first, ParseNumber(text, m_RangeMin));
        } else if (std::strcmp(tag, "Smoothing") == 0) {
            // Coefficients are kept below 1, where the value still moves.
            if (char const *coef = Field(child, "AttackTimeCoeff"))
                Keep(first, ParseBounded(coef, 0.0, 0.999999, m_AttackCoef));
            if (char const *coef = Field(child, "ReleaseTimeCoeff"))
                Keep(first, ParseBounded(coef, 0.0, 0.999999, m_ReleaseCoef));
            double ms = 0.0;
            if (char const *time = Field(child, "AttackTimeMilisec")) {
                const int err = ParseBounded(time, 0.0, 3600000.0, ms);
                if (err == eNoErr)
                    SetAttackTimeMiliSec(ms);
                Keep(first, err);
            }
            if (char const *time = Field(child, "ReleaseTimeMilisec")) {
                const int err = ParseBounded(time, 0.0, 3600000.0, ms);
                if (err == eNoErr)
                    SetReleaseTimeMiliSec(ms);
                Keep(first, err);
            }
        }
    }
    Keep(first, ReadMoreFromXML(element));
    return first;
}

int WCParamExtensionMeter::ReadMoreFromXML(pugi::xml_node const &) {
    return eNoErr;
}

void WCParamExtensionMeter::SetValueFromDSP(double word) {
    double value = word * m_Multiplier;
    // A word that is no number (a process side that wrote garbage) must not poison the peak.
    if (!std::isfinite(value))
        return;
    const double now = NowMs();
    SetPeakValue(value, now);
    Smooth(value, m_AttackCoef, m_ReleaseCoef, now);
    m_NeedsUpdate = true;
}

void WCParamExtensionMeter::SetPeakValue(double value, double nowMs) {
    if (value > m_Peak)
        StorePeak(value, nowMs);
}

void WCParamExtensionAttenuationMeter::SetPeakValue(double value, double nowMs) {
    if (value < GetPeak())
        StorePeak(value, nowMs);
}

void WCParamExtensionBoostAttenMeter::SetPeakValue(double value, double nowMs) {
    if (std::fabs(DSP::GainTodb(value)) > std::fabs(DSP::GainTodb(GetPeak())))
        StorePeak(value, nowMs);
}

void WCParamExtensionMeter::Smooth(double &value, double attack, double release) {
    Smooth(value, attack, release, NowMs());
}

void WCParamExtensionMeter::Smooth(double &value, double attack, double release, double nowMs) {
    double const stored = m_SmoothedValue;
    double elapsed = nowMs - m_LastSmoothTime;
    m_LastSmoothTime = nowMs;
    if (std::fabs(value - stored) <= kSmoothSnap) {
        m_SmoothedValue = value;
        return;
    }
    const double base = stored > value ? release : attack;
    if (!(elapsed > 0.0))
        elapsed = kIdleElapsedMs;
    const double k = base > 0.0 ? std::pow(base, elapsed) : 0.0;
    value = (stored - value) * k + value;
    m_SmoothedValue = value;
}

void WCParamExtensionMeter::SetAttackTimeMiliSec(double ms) {
    m_AttackCoef = DSP::msToDspCoef(ms, kDisplayRateHz);
}

void WCParamExtensionMeter::SetReleaseTimeMiliSec(double ms) {
    m_ReleaseCoef = DSP::msToDspCoef(ms, kDisplayRateHz);
}

double WCParamExtensionMeter::GetDisplayValue() const {
    if (!(m_RangeMin < 0.0))
        return m_SmoothedValue;
    return std::max(DSP::GainTodb(m_SmoothedValue), m_RangeMin);
}

void WCParamExtensionMeter::ResetPeak() {
    m_Peak = GetRestValue();
    m_LastPeakTime = 0.0;
}

void WCParamExtensionMeter::ResetValue() {
    m_SmoothedValue = GetRestValue();
    m_LastSmoothTime = 0.0;
    m_NeedsUpdate = true;
}

void WCParamExtensionMeter::FillMeterInfo(MirelMeterInfo &info) const {
    info.m_Origin = m_Origin;
    info.m_Orientation = m_Orientation;
    info.m_MeterType = m_MeterType;
    info.m_DisplayInControlSurface = m_DisplayInControlSurface ? 1 : 0;
    info.m_OrderInControlSurface = m_OrderInControlSurface;
    info.m_StatesOffset = m_StatesOffset;
    info.m_Multiplier = m_Multiplier;
    info.m_RangeMin = m_RangeMin;
    info.m_HasClip = 0;
    info.m_ClipLevel = 0.0;
    const std::size_t length = std::min(m_Description.size(), sizeof info.m_Description - 1);
    std::memcpy(info.m_Description, m_Description.c_str(), length);
    info.m_Description[length] = 0;
}

// ---- with clip --------------------------------------------------------------------------------

int WCParamExtensionMeterWithClip::ReadMoreFromXML(pugi::xml_node const &element) {
    int first = eNoErr;
    if (auto clip = element.child("Clip"))
        Keep(first, ParseBool(clip.text().get(), m_ClipEnabled));
    if (auto level = element.child("ClipLevel"))
        Keep(first, ParseNumber(level.text().get(), m_ClipLevel));
    return first;
}

void WCParamExtensionMeterWithClip::SetValueFromDSP(double word) {
    const double value = word * GetMultiplier();
    if (m_ClipEnabled && std::isfinite(value) && value >= m_ClipLevel)
        m_Clip = true;
    WCParamExtensionMeter::SetValueFromDSP(word);
}

double WCParamExtensionMeterWithClip::GetDisplayValue() const {
    // A clip shows as a full bar however fast the bar falls after it.
    const double shown = WCParamExtensionMeter::GetDisplayValue();
    if (!m_Clip)
        return shown;
    const double level =
        GetRangeMin() < 0.0 ? std::max(DSP::GainTodb(m_ClipLevel), GetRangeMin()) : m_ClipLevel;
    return std::max(shown, level);
}

void WCParamExtensionMeterWithClip::FillMeterInfo(MirelMeterInfo &info) const {
    WCParamExtensionMeter::FillMeterInfo(info);
    info.m_HasClip = m_ClipEnabled ? 1 : 0;
    info.m_ClipLevel = m_ClipLevel;
}

MIREL_NAMESPACE_END
