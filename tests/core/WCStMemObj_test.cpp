#include "core/WCStMemObj.h"
#include "core/WUAssert.h"
#include "core/WUMemory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

using namespace MIREL_NAMESPACE_NAME;
using Utils::WCStConstMemObj;
using Utils::WCStMemObj;

// Allocation failures are provoked with impossible sizes; the heap must answer null instead of
// aborting the test under AddressSanitizer.
extern "C" const char *__asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

constexpr std::uint64_t kImpossible = std::uint64_t(1) << 62;

std::string Bytes(const WCStConstMemObj &m) {
    return m.Empty() ? std::string()
                     : std::string(static_cast<const char *>(m.GetPtr()), m.GetSize());
}

int gAsserts = 0;
void RecordAssert(const char *, int, const char *) {
    ++gAsserts;
}

} // namespace

TEST(WUMemory, NullForZeroSizeAndResizeFailureKeepsTheBlock) {
    EXPECT_EQ(Utils::NewWTPtr(0), nullptr);
    EXPECT_EQ(Utils::NewWTPtrClear(0), nullptr);

    void *p = nullptr;
    ASSERT_EQ(Utils::ResizeWTPtr(p, 4), eNoErr);
    std::memcpy(p, "abcd", 4);
    ASSERT_EQ(Utils::ResizeWTPtr(p, 4096), eNoErr);
    void *before = p;
    EXPECT_EQ(Utils::ResizeWTPtr(p, kImpossible), eMemOutOfMemory);
    EXPECT_EQ(p, before);
    EXPECT_EQ(std::memcmp(p, "abcd", 4), 0);
    Utils::DisposeWTPtr(p);
    EXPECT_EQ(p, nullptr);
}

TEST(WUMemory, DuplicateAlwaysReturnsNoErrAndNullsWhenNothingIsCopied) {
    void *dest = reinterpret_cast<void *>(0x1);
    EXPECT_EQ(Utils::DuplicateWTPtr(nullptr, 10, dest), eNoErr);
    EXPECT_EQ(dest, nullptr);
    std::string big(16, 'x');
    EXPECT_EQ(Utils::DuplicateWTPtr(big.data(), kImpossible, dest), eNoErr);
    EXPECT_EQ(dest, nullptr);
    EXPECT_EQ(Utils::DuplicateWTPtr("abc", 3, dest), eNoErr);
    EXPECT_EQ(std::memcmp(dest, "abc", 3), 0);
    Utils::DisposeWTPtr(dest);
}

TEST(WCStMemObj, CopiesDuplicateAndCopyOfEmptyHoldsNull) {
    const WCStMemObj empty;
    const WCStMemObj emptyCopy(empty);
    EXPECT_EQ(emptyCopy.GetPtr(), nullptr);
    EXPECT_TRUE(emptyCopy.Empty());

    WCStMemObj a("hello", 5);
    WCStMemObj b(a);
    EXPECT_NE(a.GetPtr(), b.GetPtr());
    static_cast<char *>(b.GetPtr())[0] = 'j';
    EXPECT_EQ(Bytes(a), "hello");
    WCStMemObj c("x", 1);
    c = a;
    EXPECT_TRUE(c == a);
}

TEST(WCStMemObj, MoveTakesTheFieldsAndZeroesTheSource) {
    WCStMemObj a;
    ASSERT_EQ(a.AppendAndReserve("abc", 3), eNoErr);
    const void *block = a.GetPtr();
    WCStMemObj b(std::move(a));
    EXPECT_EQ(b.GetPtr(), block);
    EXPECT_EQ(b.GetCapacity(), 6u);
    EXPECT_EQ(a.GetPtr(), nullptr);
    EXPECT_EQ(a.GetSize() + a.GetCapacity(), 0u);
    WCStMemObj c("zz", 2);
    c = std::move(b);
    EXPECT_EQ(c.GetPtr(), block);
    EXPECT_EQ(Bytes(c), "abc");
    EXPECT_EQ(b.GetPtr(), nullptr);
}

TEST(WCStMemObj, ExactGrowthNeverShrinks) {
    WCStMemObj m;
    ASSERT_EQ(m.Assign("abcdef", 6), eNoErr);
    ASSERT_EQ(m.Append("gh", 2), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 8u);
    ASSERT_EQ(m.ResizePtr(3), eNoErr);
    EXPECT_EQ(Bytes(m), "abc");
    EXPECT_EQ(m.GetCapacity(), 8u);
    ASSERT_EQ(m.ReservePtr(20), eNoErr);
    ASSERT_EQ(m.ReservePtr(10), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 20u);
    ASSERT_EQ(m.ReserveHeadroom(30), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 33u);
    ASSERT_EQ(m.ResizePtrDelta(2), eNoErr);
    ASSERT_EQ(m.ResizePtrDelta(-4), eNoErr);
    EXPECT_EQ(Bytes(m), "a");
    EXPECT_EQ(m.Assign(nullptr, 10), eNoErr);
    EXPECT_TRUE(m.Empty());
    EXPECT_EQ(m.GetCapacity(), 33u);
}

TEST(WCStMemObj, GeometricGrowthDoublesTheNeededSize) {
    WCStMemObj m;
    ASSERT_EQ(m.AppendAndReserve("abc", 3), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 6u);
    ASSERT_EQ(m.AppendAndReserve("def", 3), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 6u);
    ASSERT_EQ(m.AppendAndReserve("g", 1), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 14u);
    char *place = static_cast<char *>(m.InPlaceAppendAndReserve(10));
    ASSERT_EQ(place, static_cast<char *>(m.GetPtr()) + 7);
    EXPECT_EQ(m.GetCapacity(), 34u);
    std::memcpy(place, "0123456789", 10);
    EXPECT_EQ(Bytes(m), "abcdefg0123456789");
}

TEST(WCStMemObj, FailedGrowthKeepsSizeCapacityAndBytes) {
    WCStMemObj m("abc", 3);
    const void *block = m.GetPtr();
    std::string source(8, 'z');
    EXPECT_EQ(m.ResizePtr(kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.ReserveHeadroom(~std::uint64_t(0)), eMemOutOfMemory);
    EXPECT_EQ(m.Append(source.data(), kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.AppendAndReserve(source.data(), kImpossible), eMemOutOfMemory);
    // Both the doubled and the exact size fail here; the object must survive the retry.
    EXPECT_EQ(m.InPlaceAppendAndReserve(std::uint64_t(1) << 61), nullptr);
    EXPECT_EQ(m.InPlaceAppendAndReserve(~std::uint64_t(0)), nullptr);
    EXPECT_EQ(m.GetPtr(), block);
    EXPECT_EQ(m.GetCapacity(), 3u);
    EXPECT_EQ(Bytes(m), "abc");

    const WTAssertHandler previous = SetAssertHandler(&RecordAssert);
    gAsserts = 0;
    EXPECT_EQ(m.ResizePtrDelta(-4), eOutOfRangeNumber);
    EXPECT_EQ(m.ResizePtrDelta(INT64_MIN), eOutOfRangeNumber);
    SetAssertHandler(previous);
    EXPECT_EQ(gAsserts, 2);
    EXPECT_EQ(Bytes(m), "abc");
}

TEST(WCStMemObj, AppendingOwnBytesSurvivesReallocation) {
    WCStMemObj m("abcd", 4);
    ASSERT_EQ(m.Append(static_cast<char *>(m.GetPtr()) + 1, 3), eNoErr);
    ASSERT_EQ(m.AppendAndReserve(m.GetPtr(), m.GetSize()), eNoErr);
    EXPECT_EQ(Bytes(m), "abcdbcdabcdbcd");
    ASSERT_EQ(m.Assign(static_cast<char *>(m.GetPtr()) + 7, 3), eNoErr);
    EXPECT_EQ(Bytes(m), "abc");
}

TEST(WCStMemObj, ResizeAlignPadsWithTheFillByte) {
    WCStMemObj m("abcde", 5);
    ASSERT_EQ(m.ResizePtrAlign(4, '.'), eNoErr);
    ASSERT_EQ(m.ResizePtrAlign(4, '!'), eNoErr);
    ASSERT_EQ(m.ResizePtrAlign(0, '!'), eNoErr);
    EXPECT_EQ(Bytes(m), "abcde...");
}

TEST(WCStMemObj, OwnershipHandOffs) {
    WCStMemObj a("abc", 3);
    void *ptr = nullptr;
    std::uint64_t size = 0;
    a.GiveAway(ptr, size);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(a.GetPtr(), nullptr);
    Utils::DisposeWTPtr(ptr);

    WCStMemObj b("xyz", 3);
    void *kept = b.GetPtr();
    b.Forget();
    EXPECT_EQ(b.GetPtr(), nullptr);
    Utils::DisposeWTPtr(kept);

    WCStMemObj c("old", 3), d("new!", 4);
    const void *block = d.GetPtr();
    c.TakeOver(d);
    c.TakeOver(c);
    EXPECT_EQ(c.GetPtr(), block);
    EXPECT_EQ(d.GetPtr(), nullptr);
    WCStMemObj::Swap(c, d);
    EXPECT_EQ(Bytes(d), "new!");
    EXPECT_TRUE(c.Empty());
}

TEST(WCStMemObj, EqualityIgnoresCapacityAndCompareUsesSizeDifferenceFirst) {
    WCStMemObj a("abc", 3), b;
    ASSERT_EQ(b.AppendAndReserve("abc", 3), eNoErr);
    EXPECT_TRUE(a == b);
    ASSERT_EQ(b.Append("d", 1), eNoErr);
    EXPECT_TRUE(a != b);

    const WCStConstMemObj abc("abc", 3), abd("abd", 3), ab("ab", 2), empty;
    EXPECT_EQ(WCStConstMemObj::Compare(abc, ab), 1);
    EXPECT_EQ(WCStConstMemObj::Compare(ab, abc), -1);
    EXPECT_EQ(WCStConstMemObj::Compare(abc, empty), 3);
    EXPECT_LT(WCStConstMemObj::Compare(abc, abd), 0);
    EXPECT_EQ(WCStConstMemObj::Compare(empty, WCStConstMemObj()), 0);

    a.Memset('z');
    EXPECT_EQ(Bytes(a), "zzz");
    EXPECT_EQ(a.GetPtrEnd(), static_cast<char *>(a.GetPtr()) + 3);
}
