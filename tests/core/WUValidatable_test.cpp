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
    EXPECT_TRUE(static_cast<bool>(WUValidatable()));
    EXPECT_STREQ(WUValidatable(eFMFileNotFound).ErrorName(), "eFMFileNotFound");
    int error = 123;
    EXPECT_FALSE(WCNeedsOpenFile(false).IsValid(error));
    EXPECT_EQ(error, eNoErr);

    const WCNeedsOpenFile file(true);
    file.SetError(eFMReadFailed); // a const object still records a later failure
    EXPECT_FALSE(file.IsValid(error));
    EXPECT_EQ(error, eFMReadFailed);
}

TEST(TBitVector, BitsPastTheWidthAreIgnored) {
    TBitVector<std::uint32_t> flags;
    flags.SetBit(0);
    flags.SetBit(31);
    flags.SetBit(32);
    flags.ToggleBit(40);
    EXPECT_EQ(flags.GetBits(), 0x80000001u);
    EXPECT_FALSE(flags.IsBitSet(32));
    flags.SetBit(0, false);
    EXPECT_EQ(flags.Count(), 1u);
    TBitVector<std::uint64_t> wide;
    wide.SetBit(63);
    EXPECT_EQ(wide.GetBits(), 0x8000000000000000ull);
}
