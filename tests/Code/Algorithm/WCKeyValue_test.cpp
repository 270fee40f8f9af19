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

TEST(WCKeyValue, FunctionValuesReadCurrent) {
    ml::WCKeyValue store;
    int counter = 1;
    store.SetFunc("counter", [&counter] { return ml::WCKeyValue::Value(counter); });
    EXPECT_EQ(store.GetAs<int>("counter", 0), 1);
    counter = 9;
    EXPECT_EQ(store.GetAs<int>("counter", 0), 9);
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

} // namespace
