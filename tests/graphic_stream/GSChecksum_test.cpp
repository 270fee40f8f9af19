#include "graphic_stream/GSChecksum.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

using namespace MIREL_NAMESPACE_NAME::miGS;

TEST(MurmurHash64A, ShortInputIsItsOwnLittleEndianValue) {
    unsigned char const bytes[] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(MurmurHash64A(bytes, 3, 0), 0x030201u);
    EXPECT_EQ(MurmurHash64A(bytes, 3, 17), 0x030201u);
    EXPECT_EQ(MurmurHash64A(bytes, 3, 0xFFFFFFFFFFFFFFFFull), 0x030201u);
    EXPECT_EQ(MurmurHash64A(bytes, 8, 5), 0x0807060504030201ull);
    EXPECT_EQ(MurmurHash64A(bytes, 0, 17), 0u);
}

TEST(MurmurHash64A, LongInputFollowsThePublishedAlgorithm) {
    // Values of an independent implementation of the published function.
    EXPECT_EQ(MurmurHash64A("0123456789abcdef", 16, 17), 0xb19d325f5cc5469aull);
    EXPECT_EQ(MurmurHash64A("0123456789abcdef", 16, 0), 0x93a92d1a91a24bc7ull);
    EXPECT_EQ(MurmurHash64A("The quick brown fox", 19, 17), 0xa284dc3f51c9668full);
    unsigned char const nine[] = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(MurmurHash64A(nine, 9, 17), 0xb0e09a2e9237849aull);
}

TEST(GSStructChecksum, CoversTheBytesBehindTheHeader) {
    SGSClipRect clip;
    clip.rect.location.x = 3;
    clip.rect.size.width = 40;
    std::uint64_t const before = GSStructChecksum(clip.header);
    EXPECT_EQ(before, MurmurHash64A(reinterpret_cast<char const *>(&clip) + 8, 16, 17));
    clip.rect.size.height = 1;
    EXPECT_NE(GSStructChecksum(clip.header), before);
    // The header itself is not part of it.
    clip.header.command = eGSIgnoreCommand;
    EXPECT_NE(GSStructChecksum(clip.header), before);
    SGSFrameRotate rotate;
    rotate.header.command = eGSClipRect;
    std::uint64_t const rotated = GSStructChecksum(rotate.header);
    rotate.header.command = eGSRotateFrame;
    EXPECT_EQ(GSStructChecksum(rotate.header), rotated);
}

TEST(GSStructChecksum, DataHereAndDataPtrOfSameContentAgree) {
    short const points[] = {10, 20, 30, 40, 50, 60};
    std::vector<unsigned char> here(sizeof(SGSData) + sizeof(points));
    SGSData header;
    header.type = eGSTypeInt16;
    header.purpose = eGSPurposePoint2D;
    header.num_elements = 6;
    header.header.size = static_cast<std::int32_t>(here.size());
    std::memcpy(here.data(), &header, sizeof header);
    std::memcpy(here.data() + sizeof header, points, sizeof points);

    SGSData ptr = header;
    ptr.header.command = eGSDataPtr;
    ptr.header.size = 28;
    ptr.data_ptr = reinterpret_cast<std::uintptr_t>(points);

    auto const *inlineRecord = reinterpret_cast<SGSData const *>(here.data());
    EXPECT_EQ(GSStructChecksum(*inlineRecord), GSStructChecksum(ptr));
    EXPECT_EQ(GSStructChecksum(ptr, points), GSStructChecksum(ptr));

    short const other[] = {10, 20, 30, 40, 50, 61};
    EXPECT_NE(GSStructChecksum(ptr, other), GSStructChecksum(ptr));
    // Without its payload only the type, purpose and count remain.
    EXPECT_EQ(GSStructChecksum(ptr, nullptr),
              MurmurHash64A(reinterpret_cast<char const *>(&ptr) + 8, 12, 17));
}
