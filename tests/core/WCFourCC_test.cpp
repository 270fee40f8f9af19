#include "core/WCFourCC.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <unordered_set>

using namespace MIREL_NAMESPACE_NAME;

namespace {

// A selector switch must compile with codes as case labels.
constexpr int Dispatch(WCFourCC selector) {
    switch (selector) {
    case WCFourCC("Strt"): return 1;
    case "Stop"_4cc: return 2;
    default: return 0;
    }
}

static_assert(WCFourCC("abcd").GetValue() == 0x61626364u);
static_assert("abcd"_4cc == WCFourCC(0x61626364u));
static_assert(Dispatch(WCFourCC("Stop")) == 2);

std::string Text(WCFourCC code) {
    return code.GetString().data();
}

} // namespace

TEST(WCFourCC, FirstCharacterIsTheTopByte) {
    const WCFourCC code("AlgX");
    EXPECT_EQ(code.GetValue(), 0x416C6758u);
    EXPECT_EQ(code.GetChar(0), 'A');
    EXPECT_EQ(code.GetChar(3), 'X');
    EXPECT_EQ(code.GetChar(4), '\0');
    EXPECT_EQ(Dispatch(WCFourCC("Strt")), 1);
    EXPECT_EQ(Dispatch(WCFourCC("Nope")), 0);
}

TEST(WCFourCC, OrdersAsTheInteger) {
    EXPECT_LT(WCFourCC("AAAA"), WCFourCC("AAAB"));
    EXPECT_LT(WCFourCC("ZZZZ"), WCFourCC("aaaa"));
    // A high byte orders above all ASCII, because the value is unsigned.
    EXPECT_LT(WCFourCC("zzzz"), WCFourCC(0xE0000000u));
    std::unordered_set<WCFourCC> set{WCFourCC("aaaa"), WCFourCC("aaaa")};
    EXPECT_EQ(set.size(), 1u);
}

TEST(WCFourCC, PrintsFourCharactersAndStopsAtAZeroByte) {
    WCFixedString<15> s("type=");
    s << WCFourCC("XPst");
    EXPECT_STREQ(s.data(), "type=XPst");
    EXPECT_EQ(Text(WCFourCC(0x41420000u)), "AB");
    EXPECT_EQ(Text(WCFourCC(0x00414243u)), "");
    EXPECT_EQ(Text(WCFourCC()), "");
}

struct WSTextCase {
    const char *text;
    const char *expected; // null for the unreadable code
};

TEST(WCFourCC, FromTextSkipsQuotesAndSpacesAndNeedsFourCharacters) {
    const WSTextCase cases[] = {
        {"abcd", "abcd"},   {"'abcd'", "abcd"}, {"\"abcd\"", "abcd"}, {" \t 'abcd'", "abcd"},
        {"abcdef", "abcd"}, {"ab d", "ab d"},   {"abc", nullptr},     {"'abc'", "abc'"},
        {"", nullptr},      {"   ", nullptr},   {"''\"\"", nullptr},
    };
    for (const auto &c : cases) {
        const WCFourCC code = WCFourCC::FromText(c.text);
        if (c.expected == nullptr) {
            EXPECT_TRUE(code.IsUnreadable()) << '"' << c.text << '"';
            EXPECT_EQ(code.GetValue(), 0x3F3F3F3Fu);
        } else {
            EXPECT_EQ(Text(code), c.expected) << '"' << c.text << '"';
        }
    }
    EXPECT_TRUE(WCFourCC::FromText(nullptr).IsUnreadable());
}

struct WSStepCase {
    char from;
    int offset;
    char expected;
};

TEST(OffsetOSTypeAlphanumerically, StepsThroughTheRingOfDigitsAndLetters) {
    const WSStepCase cases[] = {
        {'0', 1, '1'},
        {'9', 1, 'A'},
        {'Z', 1, 'a'},
        {'z', 1, '0'},
        {'a', 0, 'a'},
        {'0', -1, 'z'},
        {'A', -1, '9'},
        {'a', -1, 'Z'},
        {'b', -1, 'a'},
        {'5', 10, 'F'},
        {'0', 62, '0'},
        {'0', -62, '0'},
        {'0', 63, '1'},
        {'0', -63, 'z'},
        // Outside the ring a forward step lands on the next alphanumeric character...
        {' ', 1, '0'},
        {'~', 1, '0'},
        {'[', 1, 'a'},
        // ...while a backward step is the plain previous code until it reaches the ring.
        {'!', -1, ' '},
        {'[', -1, 'Z'},
    };
    for (const auto &c : cases) {
        const WCFourCC code(c.from, 'x', 'x', 'x');
        const WCFourCC stepped = OffsetOSTypeAlphanumerically(code, 0u, c.offset);
        EXPECT_EQ(stepped.GetChar(0), c.expected)
            << "'" << c.from << "' by " << c.offset << " gave '" << stepped.GetChar(0) << "'";
        EXPECT_EQ(stepped.GetChar(1), 'x');
    }
}

TEST(OffsetOSTypeAlphanumerically, WithoutIndexStepsEveryCharacter) {
    EXPECT_EQ(Text(OffsetOSTypeAlphanumerically(WCFourCC("az09"), 1)), "b01A");
    EXPECT_EQ(Text(OffsetOSTypeAlphanumerically(WCFourCC("0Aa1"), -1)), "z9Z0");
    EXPECT_EQ(Text(OffsetOSTypeAlphanumerically(WCFourCC("abcd"), 3u, 1)), "abce");
    EXPECT_EQ(Text(OffsetOSTypeAlphanumerically(WCFourCC("abcd"), 4u, 1)), "abcd");
    // Huge offsets finish, and stepping forth and back again is the identity.
    const WCFourCC far = OffsetOSTypeAlphanumerically(WCFourCC("0aZ9"), INT_MAX);
    EXPECT_EQ(OffsetOSTypeAlphanumerically(far, -INT_MAX), WCFourCC("0aZ9"));
}
