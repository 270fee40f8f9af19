#include "core/WCVersion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

using namespace MIREL_NAMESPACE_NAME;

// A plain value of core: four integers and no virtual table, so core needs no XML layer for it.
static_assert(!std::is_polymorphic_v<WCVersion>);
static_assert(std::is_trivially_copyable_v<WCVersion>);
static_assert(sizeof(WCVersion) == 4 * sizeof(unsigned int));
static_assert(WCVersion(13, 1, 0, 186).GetVersionAsBinaryNumber() == 0x0D0100BAu);

namespace {

struct WSParseCase {
    const char *text;
    unsigned int parts[4];
};

} // namespace

TEST(WCVersion, ParsesUpToFourPartsAndStopsAtTheFirstBadOne) {
    const WSParseCase cases[] = {
        {"13.1.0.186", {13, 1, 0, 186}},
        {"13.1", {13, 1, 0, 0}},
        {"7", {7, 0, 0, 0}},
        {"1.2.3.4.5", {1, 2, 3, 4}},
        {"1.x.3", {1, 0, 0, 0}},
        {"1.2-beta", {1, 2, 0, 0}},
        {"1-2.3", {1, 0, 0, 0}},
        {"2..3", {2, 0, 0, 0}},
        {"1.2.", {1, 2, 0, 0}},
        {"v1.2", {0, 0, 0, 0}},
        {"", {0, 0, 0, 0}},
        {"-1.2", {0, 0, 0, 0}},
        {" 3.4", {3, 4, 0, 0}},
        {"99999999999.1", {4294967295u, 1, 0, 0}},
    };
    for (const auto &c : cases) {
        const WCVersion v(c.text);
        EXPECT_EQ(v.Major(), c.parts[0]) << c.text;
        EXPECT_EQ(v.Minor(), c.parts[1]) << c.text;
        EXPECT_EQ(v.Revision(), c.parts[2]) << c.text;
        EXPECT_EQ(v.InternalStage(), c.parts[3]) << c.text;
    }
    EXPECT_TRUE(WCVersion(static_cast<const char *>(nullptr)).Empty());
    WCVersion v(1, 2, 3, 4);
    v.ReadFromString("5"); // reading resets the parts it does not reach
    EXPECT_EQ(v, WCVersion(5, 0, 0, 0));
}

TEST(WCVersion, GetStringPrintsTheFirstParts) {
    const WCVersion v(13, 1, 0, 186);
    EXPECT_STREQ(v.GetString(0).data(), "");
    EXPECT_STREQ(v.GetString(1).data(), "13");
    EXPECT_STREQ(v.GetString(2).data(), "13.1");
    EXPECT_STREQ(v.GetString(4).data(), "13.1.0.186");
    EXPECT_STREQ(v.GetString(9).data(), "13.1.0.186");
    EXPECT_EQ(WCVersion(v.GetString().data()), v);
}

TEST(WCVersion, OrdersPartByPart) {
    std::vector<WCVersion> versions{WCVersion("13.1.0.186"), WCVersion("2.0"), WCVersion("13.1"),
                                    WCVersion("13.0.9.999"), WCVersion("13.1.0.9")};
    std::sort(versions.begin(), versions.end());
    EXPECT_EQ(versions, (std::vector<WCVersion>{WCVersion("2.0"), WCVersion("13.0.9.999"),
                                                WCVersion("13.1"), WCVersion("13.1.0.9"),
                                                WCVersion("13.1.0.186")}));

    const WCVersion a("1.2.3.4");
    EXPECT_TRUE(a <= a);
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(a <= WCVersion("1.2.3.5"));
    EXPECT_FALSE(WCVersion("1.2.3.5") <= a);
    EXPECT_TRUE(WCVersion("1.10") > WCVersion("1.9"));
}

TEST(WCVersion, LessComparesOnlyTheFirstParts) {
    const WCVersion a("13.9"), b("13.1");
    EXPECT_FALSE(WCVersion::less(a, b, 1));
    EXPECT_FALSE(WCVersion::less(b, a, 1));
    EXPECT_TRUE(WCVersion::less(b, a, 2));
    EXPECT_FALSE(WCVersion::less(a, b, 2));
    EXPECT_FALSE(WCVersion::less(b, a, 0));
    EXPECT_TRUE(WCVersion::less(WCVersion("1.0.0.1"), WCVersion("1.0.0.2"), 4));
    EXPECT_FALSE(WCVersion::less(WCVersion("1.0.0.1"), WCVersion("1.0.0.2"), 3));
}

TEST(WCVersion, BinaryNumbersPackEightBitsAPart) {
    const WCVersion v(13, 1, 0, 186);
    EXPECT_EQ(v.GetVersionAsBinaryNumber(), 0x0D0100BAu);
    EXPECT_EQ(v.GetVersionAsAUShellNumber(), 0x000D0100u);
    WCVersion back;
    back.SetVersionFromBinaryNumber(0x0D0100BAu);
    EXPECT_EQ(back, v);
    // A part above 255 spills into the part above it.
    EXPECT_EQ(WCVersion(0, 0, 0, 0x1FF).GetVersionAsBinaryNumber(), 0x1FFu);
}
