#include "core/WCFixedString.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {

constexpr std::uint64_t kNotFound = ~std::uint64_t(0);

// The zero after the text is part of the contract: callers hand data() to C functions.
template <std::uint64_t N>
void ExpectTerminated(const WCFixedString<N> &s) {
    EXPECT_EQ(s.data()[s.size()], '\0');
    EXPECT_EQ(std::strlen(s.data()), s.size());
}

} // namespace

// ---- truncation ----

TEST(WCFixedString, TruncatesSilentlyAtCapacity) {
    WCFixedString<4> s;
    s = "abcdef";
    EXPECT_STREQ(s.data(), "abcd");
    EXPECT_EQ(s.size(), 4u);
    ExpectTerminated(s);

    s << "more" << 'x' << 12 << true;
    EXPECT_STREQ(s.data(), "abcd");
}

TEST(WCFixedString, KeepsLowDigitsOfANumberThatDoesNotFit) {
    WCFixedString<3> s;
    s << 12345;
    EXPECT_STREQ(s.data(), "345");

    WCFixedString<5> t("ab");
    t << 98765u;
    EXPECT_STREQ(t.data(), "ab765");
}

TEST(WCFixedString, NegativeNumberOnFullStringLeavesItUnchanged) {
    WCFixedString<3> s("abc");
    s << -5;
    EXPECT_STREQ(s.data(), "abc");

    // With room for only the sign, the sign is written and the digits are dropped.
    WCFixedString<3> t("ab");
    t << -57;
    EXPECT_STREQ(t.data(), "ab-");
}

TEST(WCFixedString, EveryAppendFormRespectsCapacity) {
    WCFixedString<6> s;
    s.append("abc", 100);
    s.append('z', 100);
    EXPECT_STREQ(s.data(), "abczzz");
    s.clear();
    const char text[] = "0123456789";
    s.append(text, text + 10);
    EXPECT_STREQ(s.data(), "012345");
    s.clear();
    const unsigned char bytes[] = {1, 2, 3, 4};
    s.append_hex_binary(bytes, 4);
    EXPECT_STREQ(s.data(), "040302");
    s.clear();
    s.append_random_chars(50);
    EXPECT_EQ(s.size(), 6u);
    s.clear();
    s.append_double_with_precision(3.14159265, 10);
    EXPECT_STREQ(s.data(), "3.1415");
}

TEST(WCFixedString, ConcatenatingConstructorsAcceptNull) {
    EXPECT_STREQ(WCFixedString<15>("ab", "cd").data(), "abcd");
    EXPECT_STREQ(WCFixedString<15>(nullptr, "cd").data(), "cd");
    EXPECT_STREQ(WCFixedString<15>("ab", nullptr).data(), "ab");
    EXPECT_STREQ(WCFixedString<15>(nullptr, nullptr).data(), "");
    const WCFixedString<15> first("path");
    EXPECT_STREQ(WCFixedString<15>(first, "/file").data(), "path/file");
    EXPECT_STREQ(WCFixedString<3>("ab", "cd").data(), "abc");
    EXPECT_STREQ(WCFixedString<15>("abcdef", 3).data(), "abc");
}

TEST(WCFixedString, ConstructorClearsWholeArray) {
    WCFixedString<15> s("abc");
    for (std::uint64_t i = s.size(); i <= s.capacity(); ++i)
        EXPECT_EQ(s.data()[i], '\0') << i;
}

TEST(WCFixedString, CopyNeverSharesStorage) {
    WCFixedString<15> a("abc");
    WCFixedString<15> b(a);
    EXPECT_NE(a.data(), b.data());
    b << "d";
    EXPECT_STREQ(a.data(), "abc");
    EXPECT_STREQ(b.data(), "abcd");

    WCFixedString<3> narrow(WCFixedString<15>("abcdef"));
    EXPECT_STREQ(narrow.data(), "abc");
}

// ---- assigning ----

TEST(WCFixedString, AssignmentEmptiesFirst) {
    WCFixedString<15> s("old text");
    s = 'x';
    EXPECT_STREQ(s.data(), "x");
    s = "new";
    EXPECT_STREQ(s.data(), "new");
    s.assign("abcdef", 2);
    EXPECT_STREQ(s.data(), "ab");
    const char range[] = "range";
    s.assign(range, range + 3);
    EXPECT_STREQ(s.data(), "ran");
    s = static_cast<const char *>(nullptr);
    EXPECT_TRUE(s.empty());
    s = "x";
    s.assign(nullptr, 5);
    EXPECT_TRUE(s.empty());
}

TEST(WCFixedString, SelfAssignmentIsANoOp) {
    WCFixedString<15> s("same");
    WCFixedStringBase &base = s;
    base = base;
    EXPECT_STREQ(s.data(), "same");
}

TEST(WCFixedString, AssignFromOwnTextSurvives) {
    WCFixedString<15> s("hello world");
    s.assign(s.data() + 6);
    EXPECT_STREQ(s.data(), "world");
    s.append(s.data());
    EXPECT_STREQ(s.data(), "worldworld");
}

// ---- number formats ----

struct WSIntCase {
    long long value;
    const char *text;
};

TEST(WCFixedString, SignedIntegersPrintInDecimalIncludingTheirMinimum) {
    const WSIntCase cases[] = {
        {0, "0"},
        {7, "7"},
        {-7, "-7"},
        {1234567890, "1234567890"},
        {LLONG_MAX, "9223372036854775807"},
        {LLONG_MIN, "-9223372036854775808"},
    };
    for (const auto &c : cases) {
        WCFixedString<31> s;
        s << c.value;
        EXPECT_STREQ(s.data(), c.text) << c.value;
    }
    WCFixedString<31> s;
    s << static_cast<short>(SHRT_MIN) << ' ' << INT_MIN << ' ' << static_cast<std::int64_t>(-1);
    EXPECT_STREQ(s.data(), "-32768 -2147483648 -1");
}

TEST(WCFixedString, UnsignedIntegersPrintInDecimal) {
    WCFixedString<63> s;
    s << 4294967295u << ' ' << static_cast<std::uint64_t>(18446744073709551615ull) << ' ' << 0ull;
    EXPECT_STREQ(s.data(), "4294967295 18446744073709551615 0");
}

struct WSRadixCase {
    std::uint64_t value;
    int radix;
    const char *text;
};

TEST(WCFixedString, AppendUintUsesUpperCaseLettersAboveNine) {
    const WSRadixCase cases[] = {
        {255, 16, "FF"},
        {255, 2, "11111111"},
        {35, 36, "Z"},
        {36, 36, "10"},
        {0, 16, "0"},
        {0xDEADBEEF, 16, "DEADBEEF"},
        {~0ull, 16, "FFFFFFFFFFFFFFFF"},
    };
    for (const auto &c : cases) {
        WCFixedString<127> s;
        s.append_uint(c.value, c.radix);
        EXPECT_STREQ(s.data(), c.text) << c.value << " radix " << c.radix;
    }
}

TEST(WCFixedString, FloatHasFiveDecimalsAndDoubleTen) {
    WCFixedString<63> s;
    s << 1.5;
    EXPECT_STREQ(s.data(), "1.5000000000");
    s.clear();
    s << 1.5f;
    EXPECT_STREQ(s.data(), "1.50000");
    s.clear();
    s << -0.25;
    EXPECT_STREQ(s.data(), "-0.2500000000");
}

struct WSDoubleCase {
    double value;
    int precision;
    const char *text;
};

TEST(WCFixedString, DoubleWithPrecisionMatchesPrintf) {
    const WSDoubleCase cases[] = {
        {3.14159, 2, "3.14"},
        {2.5, 0, "2"},
        {0.1, -1, "0.10000000000000000555"},
        {1e300, -1, "1.0000000000000000525e+300"},
        {-1.0 / 3.0, 4, "-0.3333"},
        {123456.0, 1, "123456.0"},
    };
    for (const auto &c : cases) {
        WCFixedString<63> s;
        s.append_double_with_precision(c.value, c.precision);
        EXPECT_STREQ(s.data(), c.text) << c.value << " at " << c.precision;
        WCFixedString<63> viaManipulator;
        viaManipulator << PDoubleWithPrecision(c.value, c.precision);
        EXPECT_STREQ(viaManipulator.data(), c.text);
    }
}

TEST(WCFixedString, DoubleLongerThan31CharactersIsCutAt31) {
    WCFixedString<127> s;
    s << 1e30; // 31 digits, a point and ten decimals
    EXPECT_EQ(s.size(), 31u);
    EXPECT_STREQ(s.data(), "1000000000000000019884624838656");

    s.clear();
    s.append_double_with_precision(1.0, 40);
    EXPECT_EQ(s.size(), 31u);
    EXPECT_TRUE(s.begins_with("1.00000000"));
}

TEST(WCFixedString, NumbersIgnoreTheHostLocale) {
    // A host that switches to a locale with a decimal comma must not change stored numbers.
    const char *previous = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = previous ? previous : "C";
    const bool haveComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr ||
                           std::setlocale(LC_NUMERIC, "fr_FR.UTF-8") != nullptr;
    WCFixedString<63> s;
    s << 1.5 << ' ';
    s.append_double_with_precision(1.0, 40);
    double back = 0;
    WCFixedString<15>("2.25") >> back;
    std::setlocale(LC_NUMERIC, saved.c_str());
    EXPECT_TRUE(s.begins_with("1.5000000000 1.0000")) << s.data();
    EXPECT_EQ(back, 2.25);
    if (!haveComma)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST(WCFixedString, BoolAppendsWords) {
    WCFixedString<15> s;
    s << true << '/' << false;
    EXPECT_STREQ(s.data(), "true/false");
}

TEST(WCFixedString, HexBinaryPrintsLastByteFirst) {
    const std::uint32_t value = 0x12AB34CDu; // little-endian in memory
    WCFixedString<15> s;
    s.append_hex_binary(reinterpret_cast<const unsigned char *>(&value), sizeof value);
    EXPECT_STREQ(s.data(), "12AB34CD");
}

TEST(WCFixedString, RandomCharsAreAlphanumeric) {
    WCFixedString<255> s;
    s.append_random_chars(200);
    EXPECT_EQ(s.size(), 200u);
    EXPECT_EQ(s.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"),
              kNotFound);
}

// ---- reading ----

TEST(WCFixedString, ReadsNumbersFromTheStartIgnoringTrailingText) {
    int i = 0;
    WCFixedString<31>("42abc") >> i;
    EXPECT_EQ(i, 42);
    WCFixedString<31>("-17") >> i;
    EXPECT_EQ(i, -17);
    WCFixedString<31>("nothing") >> i;
    EXPECT_EQ(i, 0);
    std::int64_t big = 0;
    WCFixedString<31>("-9223372036854775808") >> big;
    EXPECT_EQ(big, INT64_MIN);
    std::uint64_t ubig = 0;
    WCFixedString<31>("18446744073709551615") >> ubig;
    EXPECT_EQ(ubig, UINT64_MAX);
    unsigned int u = 0;
    WCFixedString<31>("  77") >> u;
    EXPECT_EQ(u, 77u);
    float f = 0;
    WCFixedString<31>("2.5e1x") >> f;
    EXPECT_EQ(f, 25.0f);
    double d = 0;
    WCFixedString<31>("-0.125") >> d;
    EXPECT_EQ(d, -0.125);
}

TEST(WCFixedString, ReadsBoolWordsInAnyCaseAndLeavesOthers) {
    struct {
        const char *text;
        bool start;
        bool expected;
    } const cases[] = {
        {"YES", false, true},  {"True", false, true},   {"1", false, true},
        {"no", true, false},   {"FALSE", true, false},  {"0", true, false},
        {"maybe", true, true}, {"maybe", false, false}, {"yes ", false, false},
        {"", true, true},
    };
    for (const auto &c : cases) {
        bool b = c.start;
        WCFixedString<15>(c.text) >> b;
        EXPECT_EQ(b, c.expected) << '"' << c.text << '"';
    }
}

// ---- indexing and size ----

TEST(WCFixedString, IndexPastCapacityAddressesTheLastByte) {
    WCFixedString<63> s("abc");
    EXPECT_EQ(&s[1000], s.data() + 63);
    EXPECT_EQ(s[1000], '\0');
    const WCFixedString<63> &cs = s;
    EXPECT_EQ(&cs[64], cs.data() + 63);
    EXPECT_EQ(cs[1], 'b');
}

TEST(WCFixedString, BoolConversionIsNonEmpty) {
    WCFixedString<7> s;
    EXPECT_FALSE(s);
    EXPECT_TRUE(s.empty());
    s = "x";
    EXPECT_TRUE(s);
}

// ---- comparing ----

TEST(WCFixedString, CompareIsUnsignedByteWiseAndNullIsLowest) {
    const WCFixedString<15> s("abc");
    EXPECT_EQ(s.compare("abc"), 0);
    EXPECT_EQ(s.compare("abd"), -1);
    EXPECT_EQ(s.compare("ab"), 1);
    EXPECT_EQ(s.compare(static_cast<const char *>(nullptr)), 1);
    EXPECT_EQ(WCFixedString<15>().compare(static_cast<const char *>(nullptr)), 1);
    // A byte above 127 sorts after ASCII, as unsigned.
    EXPECT_EQ(s.compare("ab\xE9"), -1);
    EXPECT_EQ(s.case_insensitive_compare(nullptr), 1);
    EXPECT_EQ(s.case_insensitive_compare("ABC"), 0);
    EXPECT_LT(s.case_insensitive_compare("ABD"), 0);
}

TEST(WCFixedString, OrdersAsKeyOfAMap) {
    std::map<WCFixedString<63>, int> m;
    m[WCFixedString<63>("beta")] = 2;
    m[WCFixedString<63>("alpha")] = 1;
    EXPECT_EQ(m.begin()->second, 1);
    EXPECT_TRUE(WCFixedString<63>("alpha") == "alpha");
    EXPECT_TRUE(WCFixedString<63>("alpha") != WCFixedString<15>("alpha2"));
}

// ---- finding ----

TEST(WCFixedString, EmptyNeedleIsNotFoundButAlwaysAPrefix) {
    const WCFixedString<31> s("hello");
    EXPECT_EQ(s.find(""), kNotFound);
    EXPECT_EQ(s.find(static_cast<const char *>(nullptr)), kNotFound);
    EXPECT_EQ(s.rfind(""), kNotFound);
    EXPECT_EQ(s.find_case_insensitive(""), kNotFound);
    EXPECT_TRUE(s.begins_with(""));
    EXPECT_TRUE(s.ends_with(""));
    EXPECT_TRUE(WCFixedString<31>().begins_with(""));
}

TEST(WCFixedString, FindAnswersNotFoundAtTheBoundaries) {
    const WCFixedString<31> s("abcabc");
    EXPECT_EQ(s.find("bc"), 1u);
    EXPECT_EQ(s.find("bc", 2), 4u);
    EXPECT_EQ(s.find("bc", 5), kNotFound); // rest shorter than the needle
    EXPECT_EQ(s.find("c", 6), kNotFound);  // position at the end
    EXPECT_EQ(s.find("abcabcx"), kNotFound);
    EXPECT_EQ(s.find("xyz"), kNotFound);
    EXPECT_EQ(s.find('c', 3), 5u);
    EXPECT_EQ(s.rfind("abc"), 3u);
    EXPECT_EQ(s.rfind('a'), 3u);
    EXPECT_EQ(WCFixedString<31>("").find("a"), kNotFound);
}

TEST(WCFixedString, FindCaseInsensitiveFoldsBothSides) {
    const WCFixedString<31> s("Plug-In Name");
    EXPECT_EQ(s.find_case_insensitive("in n"), 5u);
    EXPECT_EQ(s.find_case_insensitive("PLUG"), 0u);
    EXPECT_EQ(s.find_case_insensitive("plug", 1), kNotFound);
}

TEST(WCFixedString, PrefixAndSuffix) {
    const WCFixedString<31> s("preset.xps");
    EXPECT_TRUE(s.begins_with("pre"));
    EXPECT_FALSE(s.begins_with("preset.xps2"));
    EXPECT_TRUE(s.ends_with(".xps"));
    EXPECT_FALSE(s.ends_with(".yps"));
}

TEST(WCFixedString, FindOfSetsForwardAndBackward) {
    const WCFixedString<31> s("  a=b;c  ");
    EXPECT_EQ(s.find_first_of("=;"), 3u);
    EXPECT_EQ(s.find_first_of("=;", 4), 5u);
    EXPECT_EQ(s.find_first_not_of(" "), 2u);
    EXPECT_EQ(s.find_last_of("=;"), 5u);
    EXPECT_EQ(s.find_last_not_of(" "), 6u);
    EXPECT_EQ(s.find_first_of("=", 9), kNotFound);
    EXPECT_EQ(s.find_last_of("=", 9), kNotFound);
    EXPECT_EQ(s.find_last_of("=", 4), kNotFound); // searched only from the end down to 4
    EXPECT_EQ(s.find_first_of("xyz"), kNotFound);
    EXPECT_EQ(WCFixedString<31>("   ").find_first_not_of(" "), kNotFound);
}

// ---- copying out ----

TEST(WCFixedString, CopyToBufferCutsAndTerminates) {
    const WCFixedString<31> s("abcdef");
    char buffer[4] = {'x', 'x', 'x', 'x'};
    s.copy_to_buffer(4, buffer);
    EXPECT_STREQ(buffer, "abc");
    char one = 'x';
    s.copy_to_buffer(1, &one);
    EXPECT_EQ(one, '\0');
    char untouched = 'x';
    s.copy_to_buffer(0, &untouched);
    EXPECT_EQ(untouched, 'x');
    s.copy_to_buffer(10, nullptr);
    char wide[16];
    s.copy_to_buffer(sizeof wide, wide);
    EXPECT_STREQ(wide, "abcdef");
}

// ---- changing in place ----

TEST(WCFixedString, EraseCountsNegativePositionsFromTheEnd) {
    struct {
        std::int64_t position;
        std::uint64_t count;
        const char *expected;
    } const cases[] = {
        {0, 2, "cdef"},    {2, 100, "ab"},   {-2, 1, "abcdf"},  {6, 1, "abcdef"},
        {10, 1, "abcdef"}, {1, 0, "abcdef"}, {-100, 2, "cdef"},
    };
    for (const auto &c : cases) {
        WCFixedString<15> s("abcdef");
        s.erase(c.position, c.count);
        EXPECT_STREQ(s.data(), c.expected) << c.position << ", " << c.count;
        ExpectTerminated(s);
    }
}

TEST(WCFixedString, EraseAllOfAndNotOf) {
    WCFixedString<31> s("a-b_c-d");
    s.erase_all_of("-_");
    EXPECT_STREQ(s.data(), "abcd");
    WCFixedString<31> digits("v1.2.3-beta");
    digits.erase_all_not_of("0123456789");
    EXPECT_STREQ(digits.data(), "123");
}

TEST(WCFixedString, ReplaceCharsCountsReplacements) {
    WCFixedString<31> s("a.b.c");
    EXPECT_EQ(s.replace('.', '/'), 2u);
    EXPECT_STREQ(s.data(), "a/b/c");
    EXPECT_EQ(s.replace("ac", 'x'), 2u);
    EXPECT_STREQ(s.data(), "x/b/x");
    EXPECT_EQ(s.replace('q', 'r'), 0u);
}

TEST(WCFixedString, ReplaceByTextExpandsAndCountsEvenWhenCut) {
    WCFixedString<31> s("a,b,c");
    EXPECT_EQ(s.replace(',', ", "), 2u);
    EXPECT_STREQ(s.data(), "a, b, c");

    WCFixedString<6> cut("a,b,c");
    EXPECT_EQ(cut.replace(',', "----"), 2u);
    EXPECT_STREQ(cut.data(), "a----b");

    WCFixedString<15> removed("a,b,c");
    EXPECT_EQ(removed.replace(',', nullptr), 2u);
    EXPECT_STREQ(removed.data(), "abc");

    // The replacement may come from the string itself.
    WCFixedString<15> self("ab");
    EXPECT_EQ(self.replace('a', self.data()), 1u);
    EXPECT_STREQ(self.data(), "abb");
}

TEST(WCFixedString, ResizeDoesNotFillTheGap) {
    WCFixedString<7> s("abcdef");
    s.resize(2);
    EXPECT_STREQ(s.data(), "ab");
    s.resize(4);
    EXPECT_EQ(s.size(), 4u);
    EXPECT_EQ(s[2], '\0'); // the zero written by the first resize
    EXPECT_EQ(s[3], 'd');
    s.resize(100);
    EXPECT_EQ(s.size(), 7u);
    ExpectTerminated(WCFixedString<7>());
}

TEST(WCFixedString, RepositionEndFindsTheFirstZero) {
    WCFixedString<15> s;
    std::strcpy(s.data(), "written");
    EXPECT_TRUE(s.empty());
    s.reposition_end();
    EXPECT_EQ(s.size(), 7u);

    WCFixedString<4> full;
    std::memcpy(full.data(), "wxyz", 4);
    full.reposition_end();
    EXPECT_STREQ(full.data(), "wxyz");
    EXPECT_EQ(full.size(), 4u);
}

TEST(WCFixedString, ReverseAndCaseFolding) {
    WCFixedString<15> s("Abc1");
    s.reverse();
    EXPECT_STREQ(s.data(), "1cbA");
    s.to_upper();
    EXPECT_STREQ(s.data(), "1CBA");
    s.to_lower();
    EXPECT_STREQ(s.data(), "1cba");
    char range[] = "12345";
    WCFixedStringBase::reverse(range + 1, range + 4);
    EXPECT_STREQ(range, "14325");
}

TEST(WCFixedString, SubstrClampsAndNegativeCountDropsTail) {
    const WCFixedString<15> s("abcdef");
    struct {
        std::uint64_t position;
        std::int64_t count;
        const char *expected;
    } const cases[] = {
        {1, 3, "bcd"}, {1, 100, "bcdef"}, {0, -1, "abcde"}, {2, -2, "cd"},
        {4, -5, ""},   {100, 2, ""},      {6, -1, ""},      {3, 0, ""},
    };
    for (const auto &c : cases) {
        const WCFixedString<15> sub = s.substr(c.position, c.count);
        EXPECT_STREQ(sub.data(), c.expected) << c.position << ", " << c.count;
    }
    EXPECT_STREQ(s.substr(2).data(), "cdef");
    EXPECT_STREQ(s.substr(0, INT64_MIN).data(), "");
}

TEST(WCFixedStringPair, HoldsTwoTexts) {
    WCFixedStringPair<3, 15> pair("name", "value");
    EXPECT_STREQ(pair.first.data(), "nam");
    EXPECT_STREQ(pair.second.data(), "value");
}
