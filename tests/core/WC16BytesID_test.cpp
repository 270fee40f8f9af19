#include "core/WC16BytesID.h"
#include "core/WUBase64.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {

WC16BytesID Sequential() {
    unsigned char bytes[16];
    for (int i = 0; i < 16; ++i)
        bytes[i] = static_cast<unsigned char>(i * 17);
    return WC16BytesID(bytes);
}

std::string Encode(const std::string &bytes) {
    WCFixedString<127> out;
    Utils::Base64Encode(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size(), out);
    return out.data();
}

WTErr Decode(const std::string &text, std::string &bytes) {
    unsigned char buffer[64];
    std::uint64_t written = 0;
    const WTErr err = Utils::Base64Decode(text.data(), text.size(), buffer, sizeof buffer, written);
    bytes.assign(reinterpret_cast<const char *>(buffer), written);
    return err;
}

} // namespace

TEST(Base64, MatchesTheStandardVectors) {
    const std::pair<const char *, const char *> vectors[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
        {"\xff\xfe\xfd", "//79"},
    };
    for (const auto &[plain, coded] : vectors) {
        EXPECT_EQ(Encode(plain), coded);
        std::string back;
        EXPECT_EQ(Decode(coded, back), eNoErr) << coded;
        EXPECT_EQ(back, plain);
    }
}

TEST(Base64, DecodingSkipsWhiteSpaceAndAcceptsMissingPadding) {
    std::string back;
    EXPECT_EQ(Decode(" Zm9v\nYmFy\r\nZm8", back), eNoErr);
    EXPECT_EQ(back, "foobarfo");
}

TEST(Base64, RejectsTextThatIsNotBase64) {
    const char *bad[] = {"Zm9v!", "Z", "Zm9vY", "Zg==Zg", "=Zg", "Zm9v=", "Zg=x", "\xc3\xa9"};
    for (const char *text : bad) {
        unsigned char buffer[8] = {7, 7, 7, 7, 7, 7, 7, 7};
        std::uint64_t written = 99;
        EXPECT_EQ(Utils::Base64Decode(text, std::strlen(text), buffer, sizeof buffer, written),
                  eNotANumber)
            << text;
        EXPECT_EQ(written, 0u);
        EXPECT_EQ(buffer[0], 7) << "bad text must not write anything";
    }
    std::uint64_t written = 0;
    EXPECT_EQ(Utils::Base64Decode(nullptr, 4, nullptr, 0, written), eMemNullPointer);
}

TEST(WC16BytesID, EncodeDecodeRoundTrip) {
    const WC16BytesID id = Sequential();
    const WCFixedString<31> text = id.Encode();
    EXPECT_EQ(text.size(), 24u);
    EXPECT_STREQ(text.data(), "ABEiM0RVZneImaq7zN3u/w==");
    WC16BytesID back;
    EXPECT_TRUE(back.IsDefault());
    ASSERT_EQ(back.Decode(text.data()), eNoErr);
    EXPECT_EQ(back, id);
    EXPECT_FALSE(back.IsDefault());
}

TEST(WC16BytesID, ShortTextLeavesTheTailZeroAndLongTextIsCut) {
    WC16BytesID id = Sequential();
    ASSERT_EQ(id.Decode("Zm9v"), eNoErr);
    EXPECT_EQ(std::memcmp(id.GetBytes(), "foo", 3), 0);
    for (int i = 3; i < 16; ++i)
        EXPECT_EQ(id.GetBytes()[i], 0) << i;

    // 24 bytes of text: only the first sixteen are kept.
    ASSERT_EQ(id.Decode("MDEyMzQ1Njc4OWFiY2RlZmdoaWprbG1u"), eNoErr);
    EXPECT_EQ(std::memcmp(id.GetBytes(), "0123456789abcdef", 16), 0);

    ASSERT_EQ(id.Decode(""), eNoErr);
    EXPECT_TRUE(id.IsDefault());
}

TEST(WC16BytesID, UnreadableTextLeavesTheDefaultIdentifier) {
    // The old bytes must not survive: a caller would take them for the value it asked for.
    const std::pair<const char *, WTErr> cases[] = {
        {"not base64!", eNotANumber}, {"Zm9vY", eNotANumber}, {nullptr, eMemNullPointer}};
    for (const auto &[text, code] : cases) {
        WC16BytesID id = Sequential();
        EXPECT_EQ(id.Decode(text), code) << (text ? text : "null");
        EXPECT_TRUE(id.IsDefault()) << (text ? text : "null");
    }
}

TEST(WC16BytesID, OrdersByteWise) {
    unsigned char low[16] = {}, high[16] = {};
    low[15] = 0xFF;
    high[0] = 0x01;
    EXPECT_LT(WC16BytesID(low), WC16BytesID(high));
    EXPECT_FALSE(WC16BytesID(high) < WC16BytesID(low));
    EXPECT_FALSE(WC16BytesID(low) == WC16BytesID(high));
}
