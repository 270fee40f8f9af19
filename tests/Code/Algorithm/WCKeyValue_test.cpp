#include "Code/Algorithm/WCKeyValue.h"

#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

TEST(WCKeyValue, KeysAreCutAt127Characters) {
    ml::WCKeyValue store;
    const std::string base(127, 'k');
    store.Set((base + "first").c_str(), 1);
    EXPECT_TRUE(store.Has((base + "second").c_str())) << "they differ only past the cut";
    EXPECT_EQ(store.GetAs<int>((base + "other").c_str(), 0), 1);
    EXPECT_EQ(store.size(), 1u);
}

TEST(WCKeyValue, MissingKeyGivesTheDefaultAndStoresNothing) {
    ml::WCKeyValue store;
    EXPECT_TRUE(store.GetAs<bool>("absent", true));
    EXPECT_FALSE(store.Has("absent"));
    EXPECT_EQ(store.size(), 0u);
    EXPECT_FALSE(store.Has(nullptr));
}

TEST(WCKeyValue, ConvertsWhateverItHolds) {
    ml::WCKeyValue store;
    store.Set("number", std::string("12.5"));
    store.Set("flag", true);
    store.Set("big", std::uint64_t(7));
    EXPECT_DOUBLE_EQ(store.GetAs<double>("number", 0.0), 12.5);
    EXPECT_EQ(store.GetAs<int>("flag", 0), 1);
    EXPECT_EQ(store.GetAs<std::string>("big", ""), "7");
    EXPECT_TRUE(store.GetAs<bool>("big", false));

    // Numbers an integer cannot hold saturate instead of wrapping to the other end.
    store.Set("huge", 1e10);
    store.Set("negative", -1.5);
    store.Set("nan", std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(store.GetAs<std::int32_t>("huge", 0), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(store.GetAs<std::int32_t>("negative", 0), -1);
    EXPECT_EQ(store.GetAs<std::uint32_t>("negative", 7u), 0u);
    EXPECT_EQ(store.GetAs<std::int64_t>("huge", 0), 10000000000);
    EXPECT_EQ(store.GetAs<std::int32_t>("nan", 5), 5) << "NaN has no integer: the default";
}

TEST(WCKeyValue, BinaryCopiesWhatFitsAndNamesWhatDoesNot) {
    ml::WCKeyValue store;
    store.Set("word", std::int32_t(0x01020304));
    store.Set("text", std::string("abc"));
    store.Set("wide", 2.0);
    std::int64_t buffer = 0;
    EXPECT_EQ(store.GetBinary("word", &buffer, sizeof buffer), 0) << "a larger buffer is fine";
    EXPECT_EQ(static_cast<std::int32_t>(buffer), 0x01020304);
    char text[3] = {};
    EXPECT_EQ(store.GetBinary("text", text, 3), 0);
    EXPECT_EQ(std::memcmp(text, "abc", 3), 0);
    std::int32_t narrow = 0;
    EXPECT_EQ(store.GetBinary("wide", &narrow, sizeof narrow), ml::eValueWrongSize);
    EXPECT_EQ(narrow, 0);
    EXPECT_EQ(store.GetBinary("absent", &narrow, sizeof narrow), ml::eValueNotFound);
    EXPECT_EQ(store.GetBinary("word", nullptr, 4), ml::eMemNullPointer);
}

TEST(WCKeyValue, TextAndBytesWrittenToATypedKeyKeepItsType) {
    ml::WCKeyValue store;
    store.Set("inputs:stem", std::int32_t(0));
    store.Set("flag", false);
    store.Set("rate", 44100.0);
    store.Set("count", std::uint32_t(3));

    // The binary read of a 32-bit key must see the number typed in, not its characters.
    EXPECT_EQ(store.SetStr("inputs:stem", " 2 "), 0);
    std::int32_t word = -1;
    EXPECT_EQ(store.GetBinary("inputs:stem", &word, sizeof word), 0);
    EXPECT_EQ(word, 2);
    EXPECT_EQ(store.SetStr("flag", "Yes\n"), 0);
    EXPECT_TRUE(store.GetAs<bool>("flag", false));
    EXPECT_EQ(store.SetStr("rate", "48000.5"), 0);
    EXPECT_EQ(store.GetAs<double>("rate", 0.0), 48000.5);

    struct Refusal {
        const char *key;
        const char *text;
        ml::WTErr code;
    };
    for (auto const &r :
         {Refusal{"inputs:stem", "two", ml::eNotANumber},
          Refusal{"inputs:stem", "2x", ml::eNotJustANumber},
          Refusal{"inputs:stem", "99999999999", ml::eOutOfRangeNumber},
          Refusal{"count", "-1", ml::eNegativeNumber}, Refusal{"flag", "maybe", ml::eNotANumber}})
        EXPECT_EQ(store.SetStr(r.key, r.text), r.code) << r.key << " " << r.text;
    EXPECT_EQ(store.GetAs<std::int32_t>("inputs:stem", 0), 2) << "a refused text loses nothing";
    EXPECT_EQ(store.GetAs<std::uint32_t>("count", 0), 3u);
    EXPECT_EQ(store.SetStr("inputs:stem", nullptr), ml::eMemNullPointer);

    const std::int32_t five = 5;
    EXPECT_EQ(store.SetBinary("inputs:stem", &five, sizeof five), 0);
    EXPECT_EQ(store.GetAs<std::int32_t>("inputs:stem", 0), 5);
    const unsigned char byte = 2;
    EXPECT_EQ(store.SetBinary("flag", &byte, 1), 0);
    EXPECT_TRUE(store.GetAs<bool>("flag", false)) << "any non-zero byte is true";
    EXPECT_EQ(store.SetBinary("count", "abcdefgh", 8), 0) << "another size becomes bytes";
    EXPECT_EQ(store.GetAs<std::string>("count", ""), "abcdefgh");
    EXPECT_EQ(store.SetStr("free", "text"), 0);
    EXPECT_EQ(store.GetAs<std::string>("free", ""), "text");
    EXPECT_EQ(store.SetBinary("free", nullptr, 1), ml::eMemNullPointer);
}

} // namespace
