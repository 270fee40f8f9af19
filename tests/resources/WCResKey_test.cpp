#include "resources/WCResKey.h"

#include <map>

#include <gtest/gtest.h>

#include "resources/WCResConfiguration.h"
#include "resources/WCResConvertPugiXML.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;

TEST(WCResKey, IdFormsPrintAsTextAndStrJoinsTypeIdAndVariant) {
    EXPECT_EQ(WCResKey("AlgXML", short(1001)).m_ID, "1001");
    EXPECT_EQ(WCResKey("AlgXML", short(-5)).m_ID, "-5");
    EXPECT_EQ(WCResKey("PROC", WCFourCC("Gain")).m_ID, "Gain");
    EXPECT_EQ(WCResKey("PNG_", "knob").str('/'), "PNG_/knob");
    EXPECT_EQ(WCResKey("PNG_", "knob", "2x").str(':'), "PNG_:knob!2x");
}

TEST(WCResKey, TypeOrdersWithoutCaseThenIdAndVariantByBytes) {
    EXPECT_FALSE(WCResKey("png_", "a") < WCResKey("PNG_", "a"));
    EXPECT_FALSE(WCResKey("PNG_", "a") < WCResKey("png_", "a"));
    EXPECT_TRUE(WCResKey("png_", "a") == WCResKey("PNG_", "a"));
    EXPECT_TRUE(WCResKey("AAAA", "z") < WCResKey("bbbb", "a"));
    // Ids compare by byte value: upper case sorts before lower case.
    EXPECT_TRUE(WCResKey("T", "Z") < WCResKey("T", "a"));
    EXPECT_FALSE(WCResKey("T", "a") == WCResKey("T", "A"));
    EXPECT_TRUE(WCResKey("T", "a") < WCResKey("T", "a", "v"));
    EXPECT_TRUE(WCResKey("T", "\x7f") < WCResKey("T", "\x80"));
}

TEST(WCResKey, ConverterTakesNoPartInComparisonAndIsNeverNull) {
    EXPECT_EQ(WCResKey().GetConverter(), WCResKey::DefaultConverter());
    WCResKey pugi("XML_", "1");
    pugi.SetConverter(std::make_shared<RM::WCResConvertPugiXML>());
    EXPECT_TRUE(pugi == WCResKey("XML_", "1"));
    std::map<WCResKey, int> map{{WCResKey("xml_", "1"), 7}};
    EXPECT_EQ(map.at(pugi), 7);
    pugi.SetConverter(nullptr);
    EXPECT_EQ(pugi.GetConverter(), WCResKey::DefaultConverter());
}

TEST(WCResKey, FieldsAreCutAt31Characters) {
    const WCResKey key(std::string(40, 't').c_str(), std::string(40, 'i').c_str());
    EXPECT_EQ(key.m_Type.size(), 31u);
    EXPECT_EQ(key.m_ID.size(), 31u);
}

TEST(WUFNV1aHash, MatchesTheReferenceValues) {
    EXPECT_EQ(RM::WUFNV1aHash::Hash(""), 0xCBF29CE484222325ULL);
    EXPECT_EQ(RM::WUFNV1aHash::Hash("a"), 0xAF63DC4C8601EC8CULL);
    EXPECT_EQ(RM::WUFNV1aHash::Hash("foobar"), 0x85944171F73967E8ULL);
}

TEST(WCResConfiguration, YAMLFillsTheThreeMapsAndCutsLongTexts) {
    RM::WCResConfiguration config;
    const std::string longValue(200, 'v');
    ASSERT_EQ(config.ReadFromYAML("Redirection:\n  PNG_/a.png: b.png\n"
                                  "Extensions:\n  PNG_: .png\n  LONG: .abcdefghijklmnopqrstuvwxyz\n"
                                  "Attributes:\n  PNG_:a:frames: " +
                                  longValue + "\n"),
              eNoErr);
    EXPECT_EQ(config.GetExtension(WCFixedString<31>("PNG_")), ".png");
    EXPECT_EQ(config.GetExtension(WCFixedString<31>("LONG")).size(), 15u);
    EXPECT_TRUE(config.GetExtension(WCFixedString<31>("png_")).empty());
    ASSERT_NE(config.FindRedirection(WCFixedString<255>("PNG_/a.png")), nullptr);
    const auto *attribute = config.FindAttribute(WCFixedString<63>("PNG_:a:frames"));
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(attribute->size(), 127u);
}

TEST(WCResConfiguration, AbsentMapsAreSkippedAndEmptyTextIsEmpty) {
    RM::WCResConfiguration config;
    EXPECT_EQ(config.ReadFromYAML("Extensions:\n  A: .a\n"), eNoErr);
    EXPECT_TRUE(config.Redirections().empty());
    EXPECT_EQ(config.ReadFromYAML(""), eNoErr);
    EXPECT_TRUE(config.Extensions().empty());
}

TEST(WCResConfiguration, BrokenYAMLKeepsWhatWasThere) {
    RM::WCResConfiguration config;
    ASSERT_EQ(config.ReadFromYAML("Extensions:\n  A: .a\n"), eNoErr);
    for (const char *broken : {"Extensions: {A: .a", "- a\n- b\n", "Extensions:\n  A: [x]\n",
                               "Redirection: 5\n", "\"unterminated"}) {
        EXPECT_EQ(config.ReadFromYAML(broken), eRMInvalidResContainer) << broken;
        EXPECT_EQ(config.GetExtension(WCFixedString<31>("A")), ".a") << broken;
    }
}

TEST(WCResConfiguration, TextPairsIgnoreAKeyWithoutValue) {
    RM::WCResConfiguration::WTExtensionMap map;
    RM::WCResConfiguration::ReadPairs("A .a\n\tB   .b  C", map);
    EXPECT_EQ(map.size(), 2u);
    EXPECT_EQ(map.at(WCFixedString<31>("B")), ".b");
}

TEST(WCResConfiguration, WrittenYAMLReadsBackTheSame) {
    RM::WCResConfiguration config;
    config.SetExtension("PNG_", ".png");
    config.SetRedirection("PNG_/a.png", "../b.png");
    config.SetAttribute(WCFixedString<63>("PNG_:a:x"), "with: colon");
    RM::WCResConfiguration back;
    ASSERT_EQ(back.ReadFromYAML(config.WriteToYAML()), eNoErr);
    EXPECT_EQ(back.GetExtension(WCFixedString<31>("PNG_")), ".png");
    EXPECT_EQ(*back.FindRedirection(WCFixedString<255>("PNG_/a.png")), "../b.png");
    EXPECT_EQ(*back.FindAttribute(WCFixedString<63>("PNG_:a:x")), "with: colon");
}

TEST(WCResConfiguration, TextIsCutWithoutSplittingACharacterAndUnwritableUTF8IsRefused) {
    RM::WCResConfiguration config;
    // 14 ASCII bytes then a two-byte character: the 15-byte extension keeps the ASCII only.
    ASSERT_EQ(config.ReadFromYAML("Extensions:\n  T: .abcdefghijklm\xC3\xA9\n"), eNoErr);
    EXPECT_EQ(config.GetExtension(WCFixedString<31>("T")), ".abcdefghijklm");
    EXPECT_EQ(config.ReadFromYAML("Extensions:\n  T: .x\xC3\x28\n"), eRMInvalidResContainer);
    EXPECT_EQ(config.GetExtension(WCFixedString<31>("T")), ".abcdefghijklm");
    // Noncharacters would come back from a write as U+FFFD, so they are refused like bad bytes.
    EXPECT_EQ(config.ReadFromYAML("Extensions:\n  R\xEF\xBF\xBF/knob.: .p\n"),
              eRMInvalidResContainer);
    EXPECT_EQ(config.ReadFromYAML("Extensions:\n  T: .\xEF\xB7\x90\n"), eRMInvalidResContainer);
    EXPECT_EQ(config.GetExtension(WCFixedString<31>("T")), ".abcdefghijklm");
    RM::WCResConfiguration::WTExtensionMap map;
    RM::WCResConfiguration::ReadPairs("A .a\nB .\xFF\n", map);
    EXPECT_EQ(map.size(), 1u);
}

} // namespace
