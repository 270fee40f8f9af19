#include "Code/GUI/WCBaseImage.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>
#include <webp/encode.h>

#include "Code/GUI/WCAnimation.h"
#include "Code/GUI/WUImageDecoder.h"
#include "Utilities/XML/Code/CXMLElement.h"
#include "resources/ResourceManager.h"
#include "resources/WCStRes.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using ml::ImageDecoder::Decode;

// A 3 x 2 picture whose top-left pixel is transparent and the rest opaque.
std::vector<std::uint8_t> Pixels() {
    std::vector<std::uint8_t> rgba(3 * 2 * 4, 0xFF);
    std::fill(rgba.begin(), rgba.begin() + 4, 0); // WebP keeps no colour under alpha 0
    return rgba;
}

std::string MakePNG() {
    auto rgba = Pixels();
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = 3;
    image.height = 2;
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, rgba.data(), 0, nullptr);
    std::string bytes(size, '\0');
    EXPECT_NE(png_image_write_to_memory(&image, bytes.data(), &size, 0, rgba.data(), 0, nullptr),
              0);
    bytes.resize(size);
    return bytes;
}

std::string MakeWebP() {
    auto rgba = Pixels();
    std::uint8_t *out = nullptr;
    const std::size_t size = WebPEncodeLosslessRGBA(rgba.data(), 3, 2, 3 * 4, &out);
    std::string bytes(reinterpret_cast<const char *>(out), size);
    WebPFree(out);
    return bytes;
}

TEST(ImageDecoder, DecodesPNGAndWebPAndRefusesBrokenBytesWithoutTouchingTheTarget) {
    const std::string png = MakePNG(), webp = MakeWebP();
    const struct {
        const char *what;
        std::string bytes;
        int code;
    } cases[] = {
        {"png", png, 0},
        {"webp", webp, 0},
        {"truncated png", png.substr(0, png.size() / 2), ml::eGMInvalidImage},
        {"png signature only", png.substr(0, 8), ml::eGMInvalidImage},
        {"png with a broken header", png.substr(0, 12) + std::string(40, 'x'), ml::eGMInvalidImage},
        {"truncated webp", webp.substr(0, webp.size() - 6), ml::eGMInvalidImage},
        {"webp header only", webp.substr(0, 12), ml::eGMInvalidImage},
        {"gif", "GIF89a\x03\x00\x02\x00", ml::eGMUnsupportedImageFormat},
        {"nothing", "", ml::eGMUnsupportedImageFormat},
    };
    for (const auto &row : cases) {
        ml::WSDecodedImage image;
        image.m_Width = 77;
        EXPECT_EQ(Decode(row.bytes.data(), row.bytes.size(), image), row.code) << row.what;
        if (row.code != 0) {
            EXPECT_EQ(image.m_Width, 77) << row.what;
            continue;
        }
        EXPECT_EQ(image.m_Width, 3) << row.what;
        EXPECT_EQ(image.m_Height, 2) << row.what;
        EXPECT_EQ(image.m_Pixels, Pixels()) << row.what;
    }
}

// A bundle with a PNG, a WebP, a truncated PNG and a text under image types.
class WCBaseImageBundle : public ::testing::Test {
protected:
    void SetUp() override {
        m_Bundle = m_Dir.path() / "Images.bundle";
        Write("PNG_/5", MakePNG());
        Write("Webp/6", MakeWebP());
        const std::string png = MakePNG();
        Write("PNG_/7", png.substr(0, png.size() - 20));
        Write("PNG_/8", "not an image at all");
        ASSERT_EQ(ml::RM::OpenResContainer(m_Bundle.c_str(), 0, m_Container), 0);
    }
    void TearDown() override { ml::RM::CloseResContainer(m_Container); }
    void Write(const std::string &name, const std::string &bytes) {
        const fs::path path = m_Bundle / "Contents" / "Resources" / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }
    mirel_test::WCTempDir m_Dir;
    fs::path m_Bundle;
    ml::WTResContainerType *m_Container = nullptr;
};

TEST_F(WCBaseImageBundle, ASecondHolderDecodesNothingAgain) {
    const std::uint64_t before = ml::ImageDecoder::GetNumDecodes();
    ml::WCBaseImage first(5), second(5);
    ASSERT_EQ(first.LoadFromResource(m_Container), 0);
    EXPECT_STREQ(first.GetResType().c_str(), "PNG_");
    ASSERT_EQ(second.LoadFromResource(m_Container), 0);
    EXPECT_EQ(ml::ImageDecoder::GetNumDecodes(), before + 1);
    EXPECT_EQ(first.GetPixels(), second.GetPixels());
    EXPECT_EQ(first.GetDefaultImageSize(), ml::WCPoint2D<short>(3, 2));
    {
        // A copy shares the decoding too.
        const auto copy = first.Clone();
        EXPECT_EQ(copy->GetPixels(), first.GetPixels());
    }
    first.Clear();
    second.Clear();
    ml::WCBaseImage third(5);
    ASSERT_EQ(third.LoadFromResource(m_Container), 0);
    EXPECT_EQ(ml::ImageDecoder::GetNumDecodes(), before + 2) << "released with its last holder";

    // The raw bytes stay what other users of the key get.
    ml::RM::WCStRes raw(m_Container, ml::WCResKey("PNG_", short(5)));
    ASSERT_TRUE(raw.IsValid());
    EXPECT_EQ(std::memcmp(raw.GetResData(), "\x89PNG", 4), 0);
}

TEST_F(WCBaseImageBundle, LoadsWebPAndAnswersTransparency) {
    ml::WCBaseImage image(6);
    ASSERT_EQ(image.LoadFromResource(m_Container), 0);
    EXPECT_STREQ(image.GetResType().c_str(), "Webp");
    EXPECT_TRUE(image.IsPixelTransparent({0, 0}));
    EXPECT_FALSE(image.IsPixelTransparent({1, 0}));
    EXPECT_TRUE(image.IsPixelTransparent({3, 0})) << "outside the picture";
    EXPECT_TRUE(image.IsPixelTransparent({-1, 1}));
}

TEST_F(WCBaseImageBundle, BrokenOrMissingImagesGiveCodesAndStayUnloaded) {
    const struct {
        short id;
        int code;
    } cases[] = {{7, ml::eGMInvalidImage},
                 {8, ml::eGMUnsupportedImageFormat},
                 {9, ml::eRMResNotFound},
                 {-1, ml::eRMInvalidResID}};
    for (const auto &row : cases) {
        ml::WCBaseImage image(row.id);
        EXPECT_EQ(image.LoadFromResource(m_Container), row.code) << row.id;
        EXPECT_FALSE(image.IsLoaded()) << row.id;
        EXPECT_FALSE(image.IsPixelTransparent({0, 0})) << "without pixels nothing is transparent";
    }
}

TEST(WCAnimation, FramesFollowTheClockAndTellTheListener) {
    struct WCSteppedAnimation : ml::WCAnimation {
        double m_Now = 1000.0;
        double GetMillisecondsNow() const override { return m_Now; }
    } animation;
    struct WCCounter : ml::WCNeedToDrawListener {
        int m_Calls = 0;
        void SetNeedToRedrawControl() override { ++m_Calls; }
    } listener;
    EXPECT_EQ(animation.StartAnimation(), -1) << "no frames";
    for (short id : {10, 11, 12, 13})
        animation.GetImages().AddImage(std::make_unique<ml::WCBaseImage>(id));
    EXPECT_EQ(animation.UpdateTimer(), -1) << "not started";
    animation.SetListener(&listener);
    ml::XML::CXMLElement xml("Animation");
    xml.push_back(new ml::XML::CXMLElement("Time", 400));
    ASSERT_EQ(animation.ReadFromXML(&xml), 0) << "a period without a list keeps the frames";
    ASSERT_EQ(animation.StartAnimation(), 0);
    const struct {
        double step;
        short frame;
        int calls;
    } steps[] = {{50, 10, 0}, {60, 11, 1}, {100, 12, 2}, {250, 10, 3}, {0, 10, 3}};
    for (const auto &row : steps) {
        animation.m_Now += row.step;
        EXPECT_EQ(animation.UpdateTimer(), 0);
        EXPECT_EQ(animation.GetResID(), row.frame) << row.step;
        EXPECT_EQ(listener.m_Calls, row.calls) << row.step;
    }
}

} // namespace
