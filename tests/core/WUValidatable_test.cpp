#include "core/TBitVector.h"
#include "core/WUValidatable.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace MIREL_NAMESPACE_NAME;

namespace {

class WCNeedsOpenFile : public WUValidatable {
public:
    explicit WCNeedsOpenFile(bool open) : m_open(open) {}
    bool IsValidSelf() const override { return m_open; }

private:
    bool m_open;
};

} // namespace

TEST(WUValidatable, ValidOnlyWithoutErrorAndWithItsOwnTestPassing) {
    const WUValidatable ok;
    EXPECT_TRUE(ok.IsValid());
    EXPECT_TRUE(static_cast<bool>(ok));

    const WUValidatable failed(eFMFileNotFound);
    EXPECT_FALSE(failed.IsValid());
    EXPECT_STREQ(failed.ErrorName(), "eFMFileNotFound");

    const WCNeedsOpenFile closed(false);
    int error = 123;
    EXPECT_FALSE(closed.IsValid(error));
    EXPECT_EQ(error, eNoErr);
}

TEST(WUValidatable, ConstObjectsRecordLaterErrors) {
    const WCNeedsOpenFile file(true);
    EXPECT_TRUE(file.IsValid());
    file.SetError(eFMReadFailed);
    int error = 0;
    EXPECT_FALSE(file.IsValid(error));
    EXPECT_EQ(error, eFMReadFailed);
    EXPECT_EQ(file.GetError(), eFMReadFailed);
    EXPECT_STREQ(WUValidatable(-7777).ErrorName(), "Unnamed error");
}

TEST(TBitVector, SetsClearsAndTestsBits) {
    TBitVector<std::uint32_t> flags;
    EXPECT_TRUE(flags.IsEmpty());
    flags.SetBit(0);
    flags.SetBit(31);
    EXPECT_EQ(flags.GetBits(), 0x80000001u);
    EXPECT_TRUE(flags.IsBitSet(31));
    EXPECT_EQ(flags.Count(), 2u);
    flags.ClearBit(0);
    flags.ToggleBit(4);
    EXPECT_EQ(flags.GetBits(), 0x80000010u);
    flags.SetBit(4, false);
    EXPECT_EQ(flags.GetBits(), 0x80000000u);
    flags.Clear();
    EXPECT_FALSE(flags.Any());
}

TEST(TBitVector, BitsPastTheWidthAreIgnored) {
    TBitVector<std::uint32_t> narrow;
    narrow.SetBit(32);
    narrow.ToggleBit(40);
    EXPECT_TRUE(narrow.IsEmpty());
    EXPECT_FALSE(narrow.IsBitSet(32));
    TBitVector<std::uint64_t> wide;
    wide.SetBit(63);
    EXPECT_EQ(wide.GetBits(), 0x8000000000000000ull);
    EXPECT_TRUE(TBitVector<std::uint64_t>::FromBit(64).IsEmpty());
}

TEST(TBitVector, CombinesAsMasks) {
    using Flags = TBitVector<std::uint64_t>;
    const Flags a(0b1100), b(0b1010);
    EXPECT_EQ((a | b).GetBits(), 0b1110u);
    EXPECT_EQ((a & b).GetBits(), 0b1000u);
    EXPECT_EQ((a ^ b).GetBits(), 0b0110u);
    EXPECT_TRUE(a.HasAll(Flags(0b0100)));
    EXPECT_FALSE(a.HasAll(b));
    EXPECT_TRUE(a.HasAny(b));
    EXPECT_FALSE(a.HasAny(Flags(0b0011)));
    EXPECT_EQ((~Flags(0)).Count(), 64u);
}
