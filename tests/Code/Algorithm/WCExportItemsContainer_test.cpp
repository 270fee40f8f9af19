#include "Code/Algorithm/WCExportItemsContainer.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

TEST(WCExportItemsContainer, GenericItemsReadAndWriteThroughThePointerAtTheirExactSize) {
    ml::WCExportItemsContainer items;
    double volume = -6.0;
    items.add_generic_item("track_volume", &volume);
    double out = 0;
    EXPECT_EQ(items.get_value_binary("track_volume", &out, sizeof out), 0);
    EXPECT_EQ(out, -6.0);
    char wide[16] = {};
    EXPECT_EQ(items.get_value_binary("track_volume", wide, sizeof wide), ml::eValueWrongSize)
        << "items take no larger buffer";
    const double louder = 3.5;
    EXPECT_EQ(items.set_value_binary("track_volume", &louder, 4), ml::eValueWrongSize);
    EXPECT_EQ(items.set_value_binary("track_volume", &louder, 8), 0);
    EXPECT_EQ(volume, 3.5);
    EXPECT_EQ(items.set_value_str("track_volume", "1.25"), 0);
    EXPECT_EQ(volume, 1.25);
    // Text that is not the item's type is refused with its code and changes nothing.
    std::int32_t count = 4;
    items.add_generic_item("count", &count);
    EXPECT_EQ(items.set_value_str("track_volume", "loud"), ml::eNotANumber);
    EXPECT_EQ(items.set_value_str("track_volume", "2 dB"), ml::eNotJustANumber);
    EXPECT_EQ(items.set_value_str("count", "4294967296"), ml::eOutOfRangeNumber);
    EXPECT_EQ(items.set_value_str("count", nullptr), ml::eMemNullPointer);
    EXPECT_EQ(volume, 1.25);
    EXPECT_EQ(count, 4);
    ml::WCFixedString<127> text;
    EXPECT_EQ(items.get_value_str("track_volume", text), 0);
    EXPECT_STREQ(text.c_str(), "1.25");
    ml::WTKeyValueType type{};
    std::uint64_t size = 0;
    EXPECT_EQ(items.get_value_info("track_volume", type, size), 0);
    EXPECT_EQ(type, ml::eKeyValueDouble);
    EXPECT_EQ(size, 8u);
}

TEST(WCExportItemsContainer, MissingItemsGiveValueNotFound) {
    ml::WCExportItemsContainer items;
    double out = 0;
    ml::WCFixedString<127> text("kept");
    ml::WTKeyValueType type{};
    std::uint64_t size = 0;
    EXPECT_EQ(items.get_value_binary("none", &out, 8), ml::eValueNotFound);
    EXPECT_EQ(items.set_value_binary("none", &out, 8), ml::eValueNotFound);
    EXPECT_EQ(items.get_value_str("none", text), ml::eValueNotFound);
    EXPECT_EQ(items.get_value_info("none", type, size), ml::eValueNotFound);
    EXPECT_STREQ(text.c_str(), "kept");
    EXPECT_FALSE(items.is_item_supported(nullptr));
}

TEST(WCExportItemsContainer, ConstantsRefuseToBeSet) {
    ml::WCExportItemsContainer items;
    items.add_item("answer", std::make_unique<ml::WCExportItemConst<std::int32_t>>(42));
    EXPECT_EQ(items.get_set_item("answer"), nullptr);
    std::int32_t value = 7;
    EXPECT_EQ(items.set_value_binary("answer", &value, 4), ml::eNotImplemented);
    EXPECT_EQ(items.get_value_binary("answer", &value, 4), 0);
    EXPECT_EQ(value, 42);
    EXPECT_EQ(items.get_value_binary("answer", nullptr, 4), ml::eMemNullPointer);
}

TEST(WCExportItemsContainer, SetterFunctionsGetTheText) {
    ml::WCExportItemsContainer items;
    std::string name;
    items.add_item("track_name",
                   std::make_unique<ml::WCExportItem_call_alg_set_func_with_const_char>(
                       [&name](char const *text) {
                           name = text;
                           return 0;
                       }));
    EXPECT_EQ(items.set_value_str("track_name", "Vocals"), 0);
    EXPECT_EQ(name, "Vocals");
    EXPECT_EQ(items.set_value_binary("track_name", "Drums!", 5), 0) << "only the given bytes";
    EXPECT_EQ(name, "Drums");
    EXPECT_EQ(items.set_value_binary("track_name", nullptr, 5), ml::eMemNullPointer);
}

TEST(WCExportItemsContainer, PatternsAnswerKeysThatStartWithThem) {
    ml::WCExportItemsContainer items;
    items.add_item_pattern(ml::WCExportItem_ControlRealWorldToState::kPattern,
                           std::make_unique<ml::WCExportItem_ControlRealWorldToState>(
                               [](std::int64_t control, double &inOut) {
                                   if (control != 2)
                                       return ml::eOutOfRangeNumber;
                                   inOut = inOut * 10.0;
                                   return ml::eNoErr;
                               }));
    EXPECT_TRUE(items.is_item_supported("GUI:control:realworld_to_state:2:4.5"));
    EXPECT_FALSE(items.is_item_supported("GUI:control:realworld_to_stateX"));
    double state = 0;
    EXPECT_EQ(items.get_value_binary("GUI:control:realworld_to_state:2:4.5", &state, 8), 0);
    EXPECT_EQ(state, 45.0);
    ml::WCFixedString<127> text;
    EXPECT_EQ(items.get_value_str("GUI:control:realworld_to_state:2:1", text), 0);
    EXPECT_STREQ(text.c_str(), "10");
    EXPECT_EQ(items.get_value_binary("GUI:control:realworld_to_state:3:1", &state, 8),
              ml::eOutOfRangeNumber);
    for (const char *bad :
         {"GUI:control:realworld_to_state", "GUI:control:realworld_to_state:x:1",
          "GUI:control:realworld_to_state:2", "GUI:control:realworld_to_state:2:nan"})
        EXPECT_EQ(items.get_value_binary(bad, &state, 8), ml::eValueNotFound) << bad;
    items.remove_item_pattern(ml::WCExportItem_ControlRealWorldToState::kPattern);
    EXPECT_FALSE(items.is_item_supported("GUI:control:realworld_to_state:2:4.5"));
}

TEST(WCExportItemsContainer, KeysItemListsEveryKeyAndKeysAreCut) {
    ml::WCExportItemsContainer items;
    items.add_item("keys", std::make_unique<ml::WCExportItem_keys>(items));
    std::uint32_t a = 1;
    const std::string longKey(127, 'k');
    items.add_generic_item((longKey + "first").c_str(), &a);
    EXPECT_TRUE(items.is_item_supported((longKey + "second").c_str()));
    ml::WCFixedString<1023> text;
    EXPECT_EQ(items.get_value_str("keys", text), 0);
    EXPECT_EQ(std::string(text.c_str()), "keys\n" + longKey);
    items.remove_item((longKey + "x").c_str());
    EXPECT_FALSE(items.is_item_supported(longKey.c_str()));
}

} // namespace
