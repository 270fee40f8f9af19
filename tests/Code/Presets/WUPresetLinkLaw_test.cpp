#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/WUPresetLinkLaw.h"
#include "Code/Presets/sPluginSpecific.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using namespace ml::Preset;

const WSLinkLaw kLaw{3, 7, {{0, 1000}, {0.1, 1e-300}, {999.5, -0.0}, {1000, 1.0 / 3}}};

TEST(PresetLinkLaw, RoundTripsThroughAFileExactly) {
    CPresetInfo info;
    ASSERT_EQ(SaveLinklawToPreset(info, kLaw, kLinkLawTag, ml::eSetupA), ml::eNoErr);
    ASSERT_EQ(SaveLinklawToPreset(info, WSLinkLaw{1, 2, {}}, "Empty Law", ml::eSetupA), ml::eNoErr);
    EXPECT_EQ(SaveLinklawToPreset(info, kLaw, kLinkLawTag, ml::eSetupA),
              ml::eDuplicatePluginSpecificTag);
    std::string text;
    ASSERT_EQ(WritePresetsToXMLString({&info}, kPresetFileRoot, text), ml::eNoErr);
    EXPECT_NE(
        text.find("<Descriptor Name=\"NumPoints\">4</Descriptor>\n"
                  "                    <Descriptor Name=\"Source State 0\">0</Descriptor>\n"
                  "                    <Descriptor Name=\"Target State 0\">1000</Descriptor>"),
        std::string::npos)
        << text;

    WTPresetList list;
    ASSERT_EQ(ReadPresetsFromXMLText(text.data(), text.size(), CPresetsFileInfo(), list, true),
              ml::eNoErr);
    WSLinkLaw read;
    ASSERT_EQ(LoadLinklawFromPreset(*list[0], kLinkLawTag, ml::eSetupA, read), ml::eNoErr);
    EXPECT_EQ(read, kLaw);
    EXPECT_TRUE(std::signbit(read.m_Points[2].m_TargetState));
    ASSERT_EQ(LoadLinklawFromPreset(*list[0], "Empty Law", ml::eSetupA, read), ml::eNoErr);
    EXPECT_EQ(read, (WSLinkLaw{1, 2, {}}));
    EXPECT_EQ(LoadLinklawFromPreset(*list[0], kLinkLawTag, ml::eSetupB, read),
              ml::ePluginSpecifcNotExisting);
}

TEST(PresetLinkLaw, UnwritableStateAddsNoBlock) {
    CPresetInfo info;
    const WSLinkLaw law{0, 1, {{0, 0}, {1, std::numeric_limits<double>::infinity()}}};
    EXPECT_EQ(SaveLinklawToPreset(info, law, kLinkLawTag, ml::eSetupA), ml::eNotANumber);
    EXPECT_EQ(info.GetNumPluginSpecificData(ml::eSetupA), 0u);
}

TEST(PresetLinkLaw, BrokenBlockGivesItsCodeAndLeavesTheLawAlone) {
    struct WSCase {
        const char *what;
        std::vector<std::pair<const char *, const char *>> descriptors;
        ml::WTErr code;
    };
    const std::vector<std::pair<const char *, const char *>> whole = {
        {"source_parameter", "4"}, {"target_parameter", "5"},   {"NumPoints", "2"},
        {"Source State 0", "0"},   {"Target State 0", " 10\n"}, {"Source State 1", "1"},
        {"Target State 1", "20"}};
    auto with = [&](std::size_t index, const char *value) {
        auto descriptors = whole;
        descriptors[index].second = value;
        return descriptors;
    };
    auto without = [&](std::size_t index) {
        auto descriptors = whole;
        descriptors.erase(descriptors.begin() + static_cast<long>(index));
        return descriptors;
    };
    auto misnumbered = whole;
    misnumbered[6].first = "Target State 7";
    const WSCase cases[] = {
        {"whole", whole, ml::eNoErr},
        {"no source", without(0), ml::eValueNotFound},
        {"no target", without(1), ml::eValueNotFound},
        {"no count", without(2), ml::eValueNotFound},
        {"a point short", without(6), ml::eOutOfRangeNumber},
        {"a point misnumbered", misnumbered, ml::eOutOfRangeNumber},
        {"count past the points", with(2, "3"), ml::eOutOfRangeNumber},
        {"hostile count", with(2, "18446744073709551615"), ml::eOutOfRangeNumber},
        {"count past 64 bits", with(2, "18446744073709551616"), ml::eOutOfRangeNumber},
        {"negative count", with(2, "-1"), ml::eNegativeNumber},
        {"word as parameter", with(0, "Gain"), ml::eNotANumber},
        {"empty parameter", with(1, ""), ml::eNotANumber},
        {"trailing text", with(3, "0.5x"), ml::eNotJustANumber},
        {"not a state", with(4, "nan"), ml::eNotANumber},
        {"infinite state", with(5, "inf"), ml::eNotANumber},
    };
    for (const auto &entry : cases) {
        CPresetInfo info;
        ASSERT_EQ(info.AddPluginSpecifcData(nullptr, 0, kLinkLawTag, 0, ePSNoData, ml::eSetupA),
                  ml::eNoErr);
        for (const auto &[name, value] : entry.descriptors)
            info.AddPluginSpecifcDescriptor_Tag(kLinkLawTag, name, value, ml::eSetupA);
        WSLinkLaw law = kLaw;
        EXPECT_EQ(LoadLinklawFromPreset(info, kLinkLawTag, ml::eSetupA, law), entry.code)
            << entry.what;
        if (entry.code == ml::eNoErr)
            EXPECT_EQ(law, (WSLinkLaw{4, 5, {{0, 10}, {1, 20}}}));
        else
            EXPECT_EQ(law, kLaw) << entry.what;
    }
}

} // namespace
