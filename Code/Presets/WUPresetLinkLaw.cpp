#include "Code/Presets/WUPresetLinkLaw.h"

#include <charconv>
#include <cmath>
#include <new>
#include <string_view>
#include <system_error>
#include <vector>

#include "Code/Presets/sPluginSpecific.h"
#include "core/WCFixedString.h"

MIREL_NAMESPACE_BEGIN

namespace Preset {

namespace {

constexpr const char *kSourceParam = "source_parameter";
constexpr const char *kTargetParam = "target_parameter";
constexpr const char *kNumPoints = "NumPoints";
constexpr std::string_view kSourceState = "Source State ";
constexpr std::string_view kTargetState = "Target State ";
constexpr std::uint64_t kFixedDescriptors = 3;

using WTDescriptor = WCFixedStringPair<63, 1023>;

// Hand-mended files may carry blanks or line feeds around a number.
std::string_view Trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <typename T>
WTErr ParseWhole(std::string_view text, T &value) noexcept {
    text = Trimmed(text);
    T parsed{};
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (ec == std::errc::result_out_of_range)
        return eOutOfRangeNumber;
    if (ec != std::errc())
        return text.size() > 1 && text[0] == '-' && text[1] >= '0' && text[1] <= '9'
                   ? eNegativeNumber
                   : eNotANumber;
    if (end != text.data() + text.size())
        return eNotJustANumber;
    value = parsed;
    return eNoErr;
}

WTErr ParseState(std::string_view text, double &state) noexcept {
    double parsed = 0.0;
    if (const WTErr error = ParseWhole(text, parsed); error != eNoErr)
        return error;
    // "nan" and "inf" parse, but no parameter has such a state.
    if (!std::isfinite(parsed))
        return eNotANumber;
    state = parsed;
    return eNoErr;
}

const WTDescriptor *FindDescriptor(const std::vector<WTDescriptor> &descriptors,
                                   const char *name) noexcept {
    for (const auto &descriptor : descriptors) {
        if (descriptor.first == name)
            return &descriptor;
    }
    return nullptr;
}

WCFixedString<31> NumberText(double value) noexcept {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return WCFixedString<31>(
        std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
}

WCFixedString<63> PointName(std::string_view prefix, std::uint64_t index) {
    WCFixedString<63> name(prefix);
    name << static_cast<unsigned long long>(index);
    return name;
}

// The point index of a "Source State i" or "Target State i" name, digits only.
bool PointIndex(std::string_view name, std::string_view prefix, std::uint64_t &index) noexcept {
    if (name.size() <= prefix.size() || name.substr(0, prefix.size()) != prefix)
        return false;
    const std::string_view digits = name.substr(prefix.size());
    if (digits.find_first_not_of("0123456789") != std::string_view::npos)
        return false;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    return ec == std::errc() && end == digits.data() + digits.size();
}

WTErr ReadLaw(const std::vector<WTDescriptor> &descriptors, WSLinkLaw &law) {
    const WTDescriptor *source = FindDescriptor(descriptors, kSourceParam);
    const WTDescriptor *target = FindDescriptor(descriptors, kTargetParam);
    const WTDescriptor *count = FindDescriptor(descriptors, kNumPoints);
    if (source == nullptr || target == nullptr || count == nullptr)
        return eValueNotFound;
    WSLinkLaw read;
    std::uint64_t numPoints = 0;
    if (WTErr error = ParseWhole(source->second.view(), read.m_SourceParam); error != eNoErr)
        return error;
    if (WTErr error = ParseWhole(target->second.view(), read.m_TargetParam); error != eNoErr)
        return error;
    if (WTErr error = ParseWhole(count->second.view(), numPoints); error != eNoErr)
        return error;
    // Checked before anything is allocated, so a hostile count costs nothing.
    if (numPoints > (descriptors.size() - kFixedDescriptors) / 2)
        return eOutOfRangeNumber;
    read.m_Points.resize(numPoints);
    std::vector<unsigned char> found(numPoints, 0);
    // One pass over the descriptors, so a block of many points reads in linear time.
    for (const auto &descriptor : descriptors) {
        std::uint64_t index = 0;
        unsigned char side = 0;
        if (PointIndex(descriptor.first.view(), kSourceState, index))
            side = 1;
        else if (PointIndex(descriptor.first.view(), kTargetState, index))
            side = 2;
        if (side == 0 || index >= numPoints || (found[index] & side) != 0)
            continue;
        WSLinkLawPoint &point = read.m_Points[index];
        double &state = side == 1 ? point.m_SourceState : point.m_TargetState;
        if (const WTErr error = ParseState(descriptor.second.view(), state); error != eNoErr)
            return error;
        found[index] |= side;
    }
    for (const unsigned char sides : found) {
        if (sides != 3)
            return eOutOfRangeNumber;
    }
    law = std::move(read);
    return eNoErr;
}

} // namespace

WTErr SaveLinklawToPreset(CPresetInfo &info, const WSLinkLaw &law, const char *tag,
                          EPluginSetup setup) {
    try {
        std::vector<WTDescriptor> descriptors;
        descriptors.reserve(kFixedDescriptors + 2 * law.m_Points.size());
        WCFixedString<31> number;
        number << static_cast<unsigned long long>(law.m_SourceParam);
        descriptors.emplace_back(kSourceParam, number.c_str());
        number.clear();
        number << static_cast<unsigned long long>(law.m_TargetParam);
        descriptors.emplace_back(kTargetParam, number.c_str());
        number.clear();
        number << static_cast<unsigned long long>(law.m_Points.size());
        descriptors.emplace_back(kNumPoints, number.c_str());
        for (std::uint64_t i = 0; i < law.m_Points.size(); ++i) {
            const WSLinkLawPoint &point = law.m_Points[i];
            if (!std::isfinite(point.m_SourceState) || !std::isfinite(point.m_TargetState))
                return eNotANumber;
            descriptors.emplace_back(PointName(kSourceState, i).c_str(),
                                     NumberText(point.m_SourceState).c_str());
            descriptors.emplace_back(PointName(kTargetState, i).c_str(),
                                     NumberText(point.m_TargetState).c_str());
        }
        if (const WTErr error = info.AddPluginSpecifcData(nullptr, 0, tag, 0, ePSNoData, setup);
            error != eNoErr)
            return error;
        info.FindPluginSpecific_Tag(tag, setup)->m_Descriptors = std::move(descriptors);
        return eNoErr;
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

WTErr LoadLinklawFromPreset(const CPresetInfo &info, const char *tag, EPluginSetup setup,
                            WSLinkLaw &law) {
    if (tag == nullptr)
        return eMemNullPointer;
    const sPluginSpecific *block = info.FindPluginSpecific_Tag(tag, setup);
    if (block == nullptr)
        return ePluginSpecifcNotExisting;
    try {
        return ReadLaw(block->m_Descriptors, law);
    } catch (const std::bad_alloc &) {
        return eMemOutOfMemory;
    }
}

} // namespace Preset

MIREL_NAMESPACE_END
