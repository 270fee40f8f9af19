#include "core/WCFixedString.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>

using namespace MIREL_NAMESPACE_NAME;

namespace {
constexpr std::uint64_t kNotFound = ~std::uint64_t(0);
using S15 = WCFixedString<15>;
using S63 = WCFixedString<63>;
} // namespace

// ---- truncation ----

TEST(WCFixedString, TruncatesSilentlyAtCapacity) {
    WCFixedString<4> s;
    s = "abcdef";
    EXPECT_STREQ(s.data(), "abcd");
    EXPECT_EQ(s.size(), 4u);
    EXPECT_EQ(s.data()[4], '\0');
    s << "more" << 'x' << 12 << true << 1.5;
    EXPECT_STREQ(s.data(), "abcd");

    WCFixedString<6> t;
    t.append("abc", 100).append('z', 100);
    EXPECT_STREQ(t.data(), "abczzz");
    const unsigned char bytes[] = {1, 0xAB, 3, 4}; // hex prints the last byte first
    t.clear();
    t.append_hex_binary(bytes, 4);
    EXPECT_STREQ(t.data(), "0403AB");
    t.clear();
    t.append_random_chars(50);
    EXPECT_EQ(t.size(), 6u);
    EXPECT_STREQ(WCFixedString<3>("ab", "cd").data(), "abc");
}

TEST(WCFixedString, ACutNeverSplitsAUTF8Character) {
    // "ÿ" is two bytes, "€" three: a cut inside one drops it whole; one that fits stays.
    const struct {
        const char *text;
        const char *kept;
    } cases[] = {{"abc\xC3\xBF", "abc"},
                 {"ab\xE2\x82\xAC", "ab"},
                 {"a\xE2\x82\xAC\xE2\x82\xAC", "a\xE2\x82\xAC"},
                 {"\xE2\x82\xACxyz", "\xE2\x82\xACx"},
                 {"ab\xC3\xBF", "ab\xC3\xBF"}};
    for (const auto &c : cases) {
        WCFixedString<4> assigned(c.text);
        EXPECT_STREQ(assigned.data(), c.kept) << c.text;
        WCFixedString<4> appended;
        appended.append(c.text, 10);
        EXPECT_STREQ(appended.data(), c.kept) << c.text;
    }
}

TEST(WCFixedString, NumberThatDoesNotFitKeepsItsLowDigits) {
    WCFixedString<3> s;
    s << 12345;
    EXPECT_STREQ(s.data(), "345");
    WCFixedString<5> t("ab");
    t << 98765u;
    EXPECT_STREQ(t.data(), "ab765");
    WCFixedString<3> full("abc");
    full << -5;
    EXPECT_STREQ(full.data(), "abc");
    WCFixedString<3> signOnly("ab");
    signOnly << -57;
    EXPECT_STREQ(signOnly.data(), "ab-");
}

TEST(WCFixedString, ConstructorsConcatenateAndAcceptNull) {
    EXPECT_STREQ(S15("ab", "cd").data(), "abcd");
    EXPECT_STREQ(S15(nullptr, "cd").data(), "cd");
    EXPECT_STREQ(S15(nullptr, nullptr).data(), "");
    EXPECT_STREQ(S15(S15("path"), "/file").data(), "path/file");
    EXPECT_STREQ(S15("abcdef", 3).data(), "abc");
    const S15 a("abc");
    S15 b(a);
    b << "d";
    EXPECT_STREQ(a.data(), "abc"); // a copy never shares storage
    for (std::uint64_t i = a.size(); i <= a.capacity(); ++i)
        EXPECT_EQ(a.data()[i], '\0') << "constructor clears the whole array, byte " << i;
}

TEST(WCFixedString, AssigningEmptiesFirstAndSurvivesItsOwnText) {
    S15 s("old text");
    s = 'x';
    EXPECT_STREQ(s.data(), "x");
    s.assign("abcdef", 2);
    EXPECT_STREQ(s.data(), "ab");
    s = static_cast<const char *>(nullptr);
    EXPECT_TRUE(s.empty());
    s = "same";
    WCFixedStringBase &base = s, &alias = s;
    base = alias; // self-assignment is a no-op
    EXPECT_STREQ(s.data(), "same");

    char buffer[8];
    WCFixedStringBase over(buffer, sizeof buffer - 1); // a string over the caller's storage
    over << "abcdefghij";
    EXPECT_STREQ(buffer, "abcdefg");
    S15 own("hello world");
    own.assign(own.data() + 6);
    EXPECT_STREQ(own.data(), "world");
    own.append(own.data());
    EXPECT_STREQ(own.data(), "worldworld");
}

// ---- number formats ----

TEST(WCFixedString, IntegersPrintInDecimalIncludingTheirMinimum) {
    WCFixedString<127> s;
    s << static_cast<short>(SHRT_MIN) << ' ' << INT_MIN << ' ' << LLONG_MIN << ' ' << LLONG_MAX
      << ' ' << 4294967295u << ' ' << UINT64_MAX << ' ' << 0;
    EXPECT_STREQ(s.data(), "-32768 -2147483648 -9223372036854775808 9223372036854775807 "
                           "4294967295 18446744073709551615 0");
}

TEST(WCFixedString, AppendUintUsesUpperCaseLettersAboveNine) {
    const struct {
        std::uint64_t value;
        int radix;
        const char *text;
    } cases[] = {{255, 16, "FF"},         {255, 2, "11111111"}, {35, 36, "Z"},
                 {36, 36, "10"},          {0, 16, "0"},         {~0ull, 16, "FFFFFFFFFFFFFFFF"},
                 {1234567, 10, "1234567"}};
    for (const auto &c : cases) {
        WCFixedString<127> s;
        s.append_uint(c.value, c.radix);
        EXPECT_STREQ(s.data(), c.text) << c.value << " radix " << c.radix;
    }
}

TEST(WCFixedString, DoublesFollowPrintfFormats) {
    const struct {
        double value;
        int precision;
        const char *text;
    } cases[] = {
        {3.14159, 2, "3.14"},
        {2.5, 0, "2"},
        {0.1, -1, "0.10000000000000000555"},
        {1e300, -1, "1.0000000000000000525e+300"},
        {-1.0 / 3.0, 4, "-0.3333"},
        {1e30, 10, "1000000000000000019884624838656"}, // cut at 31 characters
    };
    for (const auto &c : cases) {
        S63 s;
        s << PDoubleWithPrecision(c.value, c.precision);
        EXPECT_STREQ(s.data(), c.text) << c.value << " at " << c.precision;
    }
    S63 s;
    s << 1.5 << ' ' << 1.5f << ' ' << true << ' ' << false;
    EXPECT_STREQ(s.data(), "1.5000000000 1.50000 true false");
    s.clear();
    s.append_double_with_precision(1.0, 40);
    EXPECT_EQ(s.size(), 31u);
}

TEST(WCFixedString, NumbersIgnoreTheHostLocale) {
    const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
    const bool haveComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    S63 s;
    s << 1.5;
    s.append_double_with_precision(1.0, 40);
    double back = 0;
    S15("2.25") >> back;
    std::setlocale(LC_NUMERIC, saved.c_str());
    EXPECT_TRUE(s.begins_with("1.50000000001.0000")) << s.data();
    EXPECT_EQ(back, 2.25);
    if (!haveComma)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
}

// ---- reading ----

TEST(WCFixedString, ReadsNumbersFromTheStartIgnoringTrailingText) {
    int i = 0;
    S63("42abc") >> i;
    EXPECT_EQ(i, 42);
    S63("nothing") >> i;
    EXPECT_EQ(i, 0);
    std::int64_t big = 0;
    std::uint64_t ubig = 0;
    S63("-9223372036854775808") >> big;
    S63("18446744073709551615") >> ubig;
    EXPECT_EQ(big, INT64_MIN);
    EXPECT_EQ(ubig, UINT64_MAX);
    float f = 0;
    double d = 0;
    S63("2.5e1x") >> f;
    S63("  -0.125") >> d;
    EXPECT_EQ(f, 25.0f);
    EXPECT_EQ(d, -0.125);
}

TEST(WCFixedString, ReadsBoolWordsInAnyCaseAndLeavesOthers) {
    const struct {
        const char *text;
        bool start, expected;
    } cases[] = {{"YES", false, true},  {"True", false, true},  {"1", false, true},
                 {"no", true, false},   {"FALSE", true, false}, {"0", true, false},
                 {"maybe", true, true}, {"yes ", false, false}, {"", true, true}};
    for (const auto &c : cases) {
        bool b = c.start;
        S15(c.text) >> b;
        EXPECT_EQ(b, c.expected) << '"' << c.text << '"';
    }
}

TEST(WCFixedString, IndexPastCapacityAddressesTheLastByte) {
    S63 s("abc");
    EXPECT_EQ(&s[1000], s.data() + 63);
    EXPECT_EQ(&static_cast<const S63 &>(s)[64], s.data() + 63);
    EXPECT_EQ(s[1], 'b');
}

// ---- comparing and finding ----

TEST(WCFixedString, CompareIsUnsignedByteWiseAndNullIsLowest) {
    const S15 s("abc");
    EXPECT_EQ(s.compare("abc"), 0);
    EXPECT_EQ(s.compare("abd"), -1);
    EXPECT_EQ(s.compare("ab"), 1);
    EXPECT_EQ(s.compare("ab\xE9"), -1); // above 127 sorts after ASCII
    EXPECT_EQ(s.compare(static_cast<const char *>(nullptr)), 1);
    EXPECT_EQ(s.case_insensitive_compare(nullptr), 1);
    EXPECT_EQ(s.case_insensitive_compare("ABC"), 0);
    std::map<S63, int> m{{S63("beta"), 2}, {S63("alpha"), 1}};
    EXPECT_EQ(m.begin()->second, 1);
}

TEST(WCFixedString, FindAnswersNotFoundAtTheBoundariesAndForAnEmptyNeedle) {
    const S15 s("abcabc");
    EXPECT_EQ(s.find(""), kNotFound);
    EXPECT_EQ(s.rfind(""), kNotFound);
    EXPECT_EQ(s.find_case_insensitive(""), kNotFound);
    EXPECT_TRUE(s.begins_with("") && s.ends_with("") && S15().begins_with("")); // yet a prefix
    EXPECT_EQ(s.find("bc"), 1u);
    EXPECT_EQ(s.find("bc", 2), 4u);
    EXPECT_EQ(s.find("bc", 5), kNotFound); // rest shorter than the needle
    EXPECT_EQ(s.find("c", 6), kNotFound);  // position at the end
    EXPECT_EQ(s.find("abcabcx"), kNotFound);
    EXPECT_EQ(s.rfind("abc"), 3u);
    EXPECT_EQ(S15("Plug-In Name").find_case_insensitive("in n"), 5u);
    EXPECT_TRUE(s.ends_with("cabc"));
    EXPECT_FALSE(s.begins_with("abcabcabc"));
}

TEST(WCFixedString, FindOfSetsForwardAndBackward) {
    const S15 s("  a=b;c  ");
    EXPECT_EQ(s.find_first_of("=;", 4), 5u);
    EXPECT_EQ(s.find_first_not_of(" "), 2u);
    EXPECT_EQ(s.find_last_of("=;"), 5u);
    EXPECT_EQ(s.find_last_not_of(" "), 6u);
    EXPECT_EQ(s.find_first_of("=", 9), kNotFound);
    EXPECT_EQ(s.find_last_of("=", 9), kNotFound);
    EXPECT_EQ(s.find_last_of("=", 4), kNotFound); // searched from the end down to 4 only
    EXPECT_EQ(S15("   ").find_first_not_of(" "), kNotFound);
}

TEST(WCFixedString, CopyToBufferCutsAndTerminates) {
    const S15 s("abcdef");
    char buffer[4] = {'x', 'x', 'x', 'x'};
    s.copy_to_buffer(4, buffer);
    EXPECT_STREQ(buffer, "abc");
    char untouched = 'x';
    s.copy_to_buffer(0, &untouched);
    EXPECT_EQ(untouched, 'x');
    s.copy_to_buffer(10, nullptr);
}

// ---- changing in place ----

TEST(WCFixedString, EraseCountsNegativePositionsFromTheEnd) {
    const struct {
        std::int64_t position;
        std::uint64_t count;
        const char *expected;
    } cases[] = {{0, 2, "cdef"},    {2, 100, "ab"},   {-2, 1, "abcdf"}, {6, 1, "abcdef"},
                 {10, 1, "abcdef"}, {1, 0, "abcdef"}, {-100, 2, "cdef"}};
    for (const auto &c : cases) {
        S15 s("abcdef");
        s.erase(c.position, c.count);
        EXPECT_STREQ(s.data(), c.expected) << c.position << ", " << c.count;
    }
    S15 s("a-b_c-d");
    s.erase_all_of("-_");
    EXPECT_STREQ(s.data(), "abcd");
    S15 digits("v1.2.3-beta");
    digits.erase_all_not_of("0123456789");
    EXPECT_STREQ(digits.data(), "123");
}

TEST(WCFixedString, ReplaceCountsMatchesEvenWhenTheExpansionIsCut) {
    S15 s("a.b.c");
    EXPECT_EQ(s.replace('.', '/'), 2u);
    EXPECT_EQ(s.replace("ac", 'x'), 2u);
    EXPECT_STREQ(s.data(), "x/b/x");
    EXPECT_EQ(s.replace('/', ", "), 2u);
    EXPECT_STREQ(s.data(), "x, b, x");
    WCFixedString<6> cut("a,b,c");
    EXPECT_EQ(cut.replace(',', "----"), 2u);
    EXPECT_STREQ(cut.data(), "a----b");
    S15 removed("a,b,c");
    EXPECT_EQ(removed.replace(',', nullptr), 2u);
    EXPECT_STREQ(removed.data(), "abc");
    S15 self("ab");
    EXPECT_EQ(self.replace('a', self.data()), 1u); // replacement taken from the string itself
    EXPECT_STREQ(self.data(), "abb");
}

TEST(WCFixedString, ResizeDoesNotFillTheGapAndRepositionEndFindsTheZero) {
    WCFixedString<7> s("abcdef");
    s.resize(2);
    EXPECT_STREQ(s.data(), "ab");
    s.resize(4);
    EXPECT_EQ(s.size(), 4u);
    EXPECT_EQ(s[2], '\0');
    EXPECT_EQ(s[3], 'd');
    s.resize(100);
    EXPECT_EQ(s.size(), 7u);

    S15 written;
    std::strcpy(written.data(), "written");
    written.reposition_end();
    EXPECT_EQ(written.size(), 7u);
    WCFixedString<4> full;
    std::memcpy(full.data(), "wxyz", 4);
    full.reposition_end();
    EXPECT_STREQ(full.data(), "wxyz");
    full.reverse();
    EXPECT_STREQ(full.data(), "zyxw");
}

TEST(WCFixedString, SubstrClampsAndNegativeCountDropsTail) {
    const S15 s("abcdef");
    const struct {
        std::uint64_t position;
        std::int64_t count;
        const char *expected;
    } cases[] = {{1, 3, "bcd"}, {1, 100, "bcdef"}, {0, -1, "abcde"},  {2, -2, "cd"},
                 {4, -5, ""},   {100, 2, ""},      {0, INT64_MIN, ""}};
    for (const auto &c : cases)
        EXPECT_STREQ(s.substr(c.position, c.count).data(), c.expected)
            << c.position << ", " << c.count;
    EXPECT_STREQ(s.substr(2).data(), "cdef");
}
