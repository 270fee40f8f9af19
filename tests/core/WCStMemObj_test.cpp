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

// Boundary checks that fire on purpose are recorded instead of aborting.
int gAsserts = 0;
void RecordAssert(const char *, int, const char *) {
    ++gAsserts;
}

class ScopedAssertRecorder {
public:
    ScopedAssertRecorder() : m_previous(SetAssertHandler(&RecordAssert)) { gAsserts = 0; }
    ~ScopedAssertRecorder() { SetAssertHandler(m_previous); }

private:
    WTAssertHandler m_previous;
};

} // namespace

// ---- raw blocks ----

TEST(WUMemory, ZeroSizeGivesNull) {
    EXPECT_EQ(Utils::NewWTPtr(0), nullptr);
    EXPECT_EQ(Utils::NewWTPtrClear(0), nullptr);
}

TEST(WUMemory, ClearBlocksAreZeroAndDisposeNullsThePointer) {
    char *p = static_cast<char *>(Utils::NewWTPtrClear(64));
    ASSERT_NE(p, nullptr);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(p[i], 0);
    Utils::DisposeWTPtr(p);
    EXPECT_EQ(p, nullptr);
    Utils::DisposeWTPtr(p); // a null pointer is fine
}

TEST(WUMemory, ResizeAllocatesGrowsAndReportsFailureWithoutLosingTheBlock) {
    void *p = nullptr;
    ASSERT_EQ(Utils::ResizeWTPtr(p, 4), eNoErr);
    ASSERT_NE(p, nullptr);
    std::memcpy(p, "abcd", 4);
    ASSERT_EQ(Utils::ResizeWTPtr(p, 4096), eNoErr);
    EXPECT_EQ(std::memcmp(p, "abcd", 4), 0);

    void *before = p;
    EXPECT_EQ(Utils::ResizeWTPtr(p, kImpossible), eMemOutOfMemory);
    EXPECT_EQ(p, before);
    EXPECT_EQ(std::memcmp(p, "abcd", 4), 0);

    EXPECT_EQ(Utils::ResizeWTPtr(p, 0), eNoErr);
    EXPECT_EQ(p, nullptr);
}

TEST(WUMemory, DuplicateAlwaysSucceedsAndNullsOnNothingToCopy) {
    void *dest = reinterpret_cast<void *>(0x1);
    EXPECT_EQ(Utils::DuplicateWTPtr(nullptr, 10, dest), eNoErr);
    EXPECT_EQ(dest, nullptr);
    dest = reinterpret_cast<void *>(0x1);
    EXPECT_EQ(Utils::DuplicateWTPtr("abc", 0, dest), eNoErr);
    EXPECT_EQ(dest, nullptr);
    EXPECT_EQ(Utils::DuplicateWTPtr("abc", 3, dest), eNoErr);
    ASSERT_NE(dest, nullptr);
    EXPECT_EQ(std::memcmp(dest, "abc", 3), 0);
    Utils::DisposeWTPtr(dest);
    std::string big(16, 'x');
    EXPECT_EQ(Utils::DuplicateWTPtr(big.data(), kImpossible, dest), eNoErr);
    EXPECT_EQ(dest, nullptr);
}

// ---- copies and moves ----

TEST(WCStMemObj, CopyOfEmptyHoldsNullAndIsEmpty) {
    const WCStMemObj empty;
    const WCStMemObj copy(empty);
    EXPECT_EQ(copy.GetPtr(), nullptr);
    EXPECT_TRUE(copy.Empty());
    const WCStConstMemObj constCopy(empty);
    EXPECT_EQ(constCopy.GetPtr(), nullptr);
    EXPECT_TRUE(constCopy.Empty());
}

TEST(WCStMemObj, CopyDuplicatesTheBytes) {
    WCStMemObj a("hello", 5);
    WCStMemObj b(a);
    EXPECT_NE(a.GetPtr(), b.GetPtr());
    EXPECT_EQ(Bytes(b), "hello");
    static_cast<char *>(b.GetPtr())[0] = 'j';
    EXPECT_EQ(Bytes(a), "hello");

    WCStMemObj c("x", 1);
    c = a;
    EXPECT_EQ(Bytes(c), "hello");
    EXPECT_TRUE(c == a);
}

TEST(WCStMemObj, MoveTakesTheFieldsAndZeroesTheSource) {
    WCStMemObj a;
    ASSERT_EQ(a.AppendAndReserve("abc", 3), eNoErr);
    const void *block = a.GetPtr();
    const std::uint64_t capacity = a.GetCapacity();

    WCStMemObj b(std::move(a));
    EXPECT_EQ(b.GetPtr(), block);
    EXPECT_EQ(b.GetSize(), 3u);
    EXPECT_EQ(b.GetCapacity(), capacity);
    EXPECT_EQ(a.GetPtr(), nullptr);
    EXPECT_EQ(a.GetSize(), 0u);
    EXPECT_EQ(a.GetCapacity(), 0u);

    WCStMemObj c("zz", 2);
    c = std::move(b);
    EXPECT_EQ(c.GetPtr(), block);
    EXPECT_EQ(b.GetPtr(), nullptr);
    EXPECT_EQ(Bytes(c), "abc");
}

// ---- growth ----

TEST(WCStMemObj, ExactGrowthNeverShrinks) {
    WCStMemObj m;
    ASSERT_EQ(m.Assign("abcdef", 6), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 6u);
    ASSERT_EQ(m.Append("gh", 2), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 8u);
    EXPECT_EQ(Bytes(m), "abcdefgh");

    ASSERT_EQ(m.ResizePtr(3), eNoErr);
    EXPECT_EQ(m.GetSize(), 3u);
    EXPECT_EQ(m.GetCapacity(), 8u);
    EXPECT_EQ(Bytes(m), "abc");

    ASSERT_EQ(m.ReservePtr(20), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 20u);
    ASSERT_EQ(m.ReservePtr(10), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 20u);
    ASSERT_EQ(m.ReserveHeadroom(30), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 33u);
    EXPECT_EQ(m.GetSize(), 3u);

    ASSERT_EQ(m.ResizePtrDelta(2), eNoErr);
    EXPECT_EQ(m.GetSize(), 5u);
    ASSERT_EQ(m.ResizePtrDelta(-4), eNoErr);
    EXPECT_EQ(Bytes(m), "a");
}

TEST(WCStMemObj, AssignWithNothingOnlyEmpties) {
    WCStMemObj m("abc", 3);
    EXPECT_EQ(m.Assign(nullptr, 10), eNoErr);
    EXPECT_TRUE(m.Empty());
    EXPECT_EQ(m.GetCapacity(), 3u);
    EXPECT_EQ(m.Assign("x", 0), eNoErr);
    EXPECT_TRUE(m.Empty());
}

TEST(WCStMemObj, GeometricGrowthDoublesTheNeededSize) {
    WCStMemObj m;
    ASSERT_EQ(m.AppendAndReserve("abc", 3), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 6u);
    ASSERT_EQ(m.AppendAndReserve("def", 3), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 6u);
    ASSERT_EQ(m.AppendAndReserve("g", 1), eNoErr);
    EXPECT_EQ(m.GetCapacity(), 14u);
    EXPECT_EQ(Bytes(m), "abcdefg");

    char *place = static_cast<char *>(m.InPlaceAppendAndReserve(10));
    ASSERT_NE(place, nullptr);
    EXPECT_EQ(place, static_cast<char *>(m.GetPtr()) + 7);
    EXPECT_EQ(m.GetSize(), 17u);
    EXPECT_EQ(m.GetCapacity(), 34u);
    std::memcpy(place, "0123456789", 10);
    EXPECT_EQ(Bytes(m), "abcdefg0123456789");
}

TEST(WCStMemObj, FailedGrowthKeepsSizeCapacityAndBytes) {
    WCStMemObj m("abc", 3);
    const void *block = m.GetPtr();
    EXPECT_EQ(m.ResizePtr(kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.ReservePtr(kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.ReserveHeadroom(kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.ReserveHeadroom(~std::uint64_t(0)), eMemOutOfMemory);
    EXPECT_EQ(m.InPlaceAppendAndReserve(kImpossible), nullptr);
    EXPECT_EQ(m.InPlaceAppendAndReserve(~std::uint64_t(0)), nullptr);
    std::string source(8, 'z');
    EXPECT_EQ(m.Append(source.data(), kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.AppendAndReserve(source.data(), kImpossible), eMemOutOfMemory);
    EXPECT_EQ(m.GetPtr(), block);
    EXPECT_EQ(m.GetSize(), 3u);
    EXPECT_EQ(m.GetCapacity(), 3u);
    EXPECT_EQ(Bytes(m), "abc");
}

TEST(WCStMemObj, InPlaceAppendFallsBackToTheExactSize) {
    // Doubling 2^61 + 3 bytes cannot succeed on any heap, and neither can the exact size; what
    // matters is that the object survives both attempts untouched.
    WCStMemObj m("abc", 3);
    EXPECT_EQ(m.InPlaceAppendAndReserve((std::uint64_t(1) << 61)), nullptr);
    EXPECT_EQ(Bytes(m), "abc");
    // A modest request after a failure still doubles.
    ASSERT_NE(m.InPlaceAppendAndReserve(1), nullptr);
    EXPECT_EQ(m.GetCapacity(), 8u);
}

TEST(WCStMemObj, AppendingOwnBytesSurvivesReallocation) {
    WCStMemObj m("abcd", 4);
    ASSERT_EQ(m.Append(static_cast<char *>(m.GetPtr()) + 1, 3), eNoErr);
    EXPECT_EQ(Bytes(m), "abcdbcd");
    ASSERT_EQ(m.AppendAndReserve(m.GetPtr(), m.GetSize()), eNoErr);
    EXPECT_EQ(Bytes(m), "abcdbcdabcdbcd");
    ASSERT_EQ(m.Assign(static_cast<char *>(m.GetPtr()) + 7, 3), eNoErr);
    EXPECT_EQ(Bytes(m), "abc");
}

TEST(WCStMemObj, ResizeAlignPadsWithTheFillByte) {
    WCStMemObj m("abcde", 5);
    ASSERT_EQ(m.ResizePtrAlign(4, '.'), eNoErr);
    EXPECT_EQ(Bytes(m), "abcde...");
    ASSERT_EQ(m.ResizePtrAlign(4, '!'), eNoErr);
    EXPECT_EQ(Bytes(m), "abcde...");
    ASSERT_EQ(m.ResizePtrAlign(0, '!'), eNoErr);
    ASSERT_EQ(m.ResizePtrAlign(1, '!'), eNoErr);
    EXPECT_EQ(m.GetSize(), 8u);
    WCStMemObj empty;
    ASSERT_EQ(empty.ResizePtrAlign(16, 'x'), eNoErr);
    EXPECT_TRUE(empty.Empty());
}

TEST(WCStMemObj, ShrinkingBelowZeroIsRefused) {
    ScopedAssertRecorder recorder;
    WCStMemObj m("abc", 3);
    EXPECT_EQ(m.ResizePtrDelta(-4), eOutOfRangeNumber);
    EXPECT_EQ(gAsserts, 1);
    EXPECT_EQ(Bytes(m), "abc");
    EXPECT_EQ(m.ResizePtrDelta(INT64_MIN), eOutOfRangeNumber);
    EXPECT_EQ(Bytes(m), "abc");
}

// ---- ownership hand-offs ----

TEST(WCStMemObj, ForgetGiveAwayAndTakeOver) {
    WCStMemObj a("abc", 3);
    void *ptr = nullptr;
    std::uint64_t size = 0;
    a.GiveAway(ptr, size);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(std::memcmp(ptr, "abc", 3), 0);
    EXPECT_EQ(a.GetPtr(), nullptr);
    EXPECT_EQ(a.GetCapacity(), 0u);
    Utils::DisposeWTPtr(ptr);

    WCStMemObj b("xyz", 3);
    void *kept = b.GetPtr();
    b.Forget();
    EXPECT_TRUE(b.Empty());
    EXPECT_EQ(b.GetPtr(), nullptr);
    Utils::DisposeWTPtr(kept);

    WCStMemObj c("old", 3);
    WCStMemObj d("new!", 4);
    const void *block = d.GetPtr();
    c.TakeOver(d);
    EXPECT_EQ(c.GetPtr(), block);
    EXPECT_EQ(Bytes(c), "new!");
    EXPECT_EQ(d.GetPtr(), nullptr);
    c.TakeOver(c);
    EXPECT_EQ(Bytes(c), "new!");

    WCStMemObj::Swap(c, d);
    EXPECT_TRUE(c.Empty());
    EXPECT_EQ(Bytes(d), "new!");
    d.DisposePtr();
    EXPECT_EQ(d.GetPtr(), nullptr);
    EXPECT_EQ(d.GetCapacity(), 0u);
}

// ---- comparing and filling ----

TEST(WCStMemObj, EqualityIgnoresCapacity) {
    WCStMemObj a("abc", 3);
    WCStMemObj b;
    ASSERT_EQ(b.AppendAndReserve("abc", 3), eNoErr);
    EXPECT_NE(a.GetCapacity(), b.GetCapacity());
    EXPECT_TRUE(a == b);
    ASSERT_EQ(b.Append("d", 1), eNoErr);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(WCStMemObj() == WCStMemObj());
}

TEST(WCStMemObj, CompareUsesSizeDifferenceThenBytes) {
    const WCStConstMemObj abc("abc", 3), abd("abd", 3), ab("ab", 2), empty;
    EXPECT_EQ(WCStConstMemObj::Compare(abc, ab), 1);
    EXPECT_EQ(WCStConstMemObj::Compare(ab, abc), -1);
    EXPECT_EQ(WCStConstMemObj::Compare(abc, empty), 3);
    EXPECT_LT(WCStConstMemObj::Compare(abc, abd), 0);
    EXPECT_GT(WCStConstMemObj::Compare(abd, abc), 0);
    EXPECT_EQ(WCStConstMemObj::Compare(abc, WCStConstMemObj("abc", 3)), 0);
    EXPECT_EQ(WCStConstMemObj::Compare(empty, WCStConstMemObj()), 0);
}

TEST(WCStMemObj, MemsetFillsTheSizeAndEndPointsPastIt) {
    WCStMemObj m("abcd", 4);
    m.Memset('z');
    EXPECT_EQ(Bytes(m), "zzzz");
    EXPECT_EQ(m.GetPtrEnd(), static_cast<char *>(m.GetPtr()) + 4);
    EXPECT_EQ(WCStMemObj().GetPtrEnd(), nullptr);
    WCStMemObj().Memset('x');
}
