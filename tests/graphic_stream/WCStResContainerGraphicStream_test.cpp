#include "graphic_stream/WCStResContainerGraphicStream.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"
#include "graphic_stream/WCStGSFrameStructWriter.h"
#include "resources/ResourceManager.h"
#include "tests/support/WCTestHome.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

namespace fs = std::filesystem;

// A painter that loads the image of every image record, as a real one does.
class WCImageLoader : public WCGraphicStreamEngineBase {
public:
    std::vector<int> m_Codes;
    std::vector<std::string> m_Bytes;

    int DrawImage(SGSDrawImage &image) override {
        WTResourceType *resource = nullptr;
        m_Codes.push_back(GetImageResource(image.ResID, resource));
        m_Bytes.push_back(resource != nullptr
                              ? std::string(static_cast<const char *>(resource->m_Data.m_pData),
                                            resource->m_Data.m_DataSize)
                              : std::string());
        return 0;
    }
};

// Two plug-in bundles with images in a temporary home; the resource manager goes with the test.
class WCStResContainerGraphicStreamTest : public ::testing::Test {
protected:
    void TearDown() override { RM::Dispose(); }

    std::string Bundle(const char *name) const {
        return (m_Home.path() / "Plugins" / name).string() + "/";
    }
    // Images are files of the extension the bundle's configuration gives their type.
    void PutImage(const char *bundle, const char *file, const std::string &bytes) const {
        const fs::path resources = fs::path(Bundle(bundle)) / "Contents" / "Resources";
        fs::create_directories(resources / "PNG_");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  PNG_: .png\n";
        std::ofstream(resources / "PNG_" / file, std::ios::binary) << bytes;
    }
    // A stream of the bundle's images: one in the stream, the others in a frame.
    static void Write(WCGraphicStreamBinaryWriter &writer, const std::string &folder,
                      std::vector<short> images) {
        WCStGSStreamStructWriter stream(writer, SGSStream(),
                                        folder.empty() ? nullptr : folder.c_str());
        writer.DrawPNG(images.front());
        SGSFrame frame;
        frame.rect.size = {10, 10};
        WCStGSFrameStructWriter guard(writer, frame);
        for (std::size_t i = 1; i < images.size(); ++i)
            writer.DrawPNG(images[i]);
    }
    // -1 when the container is not open.
    static std::int32_t RetainCount(const std::string &bundle) {
        return RM::GetRetainCount(FM::WCStPath(bundle));
    }

    mirel_test::WCTestHome m_Home;
};

} // namespace

TEST_F(WCStResContainerGraphicStreamTest, ImagesAreTakenByNumberFromTheFolderTheStreamNames) {
    PutImage("Knob.bundle", "7.png", "seven");
    PutImage("Knob.bundle", "12.png", "twelve");
    WCGraphicStreamBinaryWriter writer;
    Write(writer, Bundle("Knob.bundle"), {7, 12, 8});
    WCImageLoader painter;
    ASSERT_EQ(painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    EXPECT_EQ(painter.m_Bytes, (std::vector<std::string>{"seven", "twelve", ""}));
    EXPECT_EQ(painter.m_Codes, (std::vector<int>{eNoErr, eNoErr, eRMResNotFound}));
}

TEST_F(WCStResContainerGraphicStreamTest, ImagesWithoutAFolderOrNumberAreRefused) {
    PutImage("Knob.bundle", "7.png", "seven");
    struct {
        const char *name;
        std::string folder;
        short image;
        int code;
    } const table[] = {
        {"no folder named", std::string(), 7, eRMContainerNotFound},
        {"folder is no bundle", m_Home.path().string() + "/", 7, eRMInvalidResContainer},
        {"negative number", Bundle("Knob.bundle"), -5, eRMInvalidResID},
    };
    for (const auto &row : table) {
        WCGraphicStreamBinaryWriter writer;
        Write(writer, row.folder, {row.image});
        WCImageLoader painter;
        ASSERT_EQ(painter.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
        EXPECT_EQ(painter.m_Codes, std::vector<int>{row.code}) << row.name;
    }
}

TEST_F(WCStResContainerGraphicStreamTest, ContainerStaysOpenWhileNamedAndClosesWhenNoLonger) {
    PutImage("Knob.bundle", "7.png", "seven");
    PutImage("Meter.bundle", "7.png", "meter");
    WCGraphicStreamBinaryWriter knob, meter;
    Write(knob, Bundle("Knob.bundle"), {7, 7});
    Write(meter, Bundle("Meter.bundle"), {7});
    {
        WCImageLoader painter;
        for (int repaint = 0; repaint < 3; ++repaint)
            ASSERT_EQ(painter.ExecStream(knob.GetStreamPtr(), knob.GetStreamSize()), eNoErr);
        // Opened once, however often the stream is walked.
        EXPECT_EQ(RetainCount(Bundle("Knob.bundle")), 1);
        EXPECT_EQ(painter.GetNumResContainers(), 1u);

        ASSERT_EQ(painter.ExecStream(meter.GetStreamPtr(), meter.GetStreamSize()), eNoErr);
        EXPECT_EQ(painter.m_Bytes.back(), "meter");
        EXPECT_EQ(RetainCount(Bundle("Knob.bundle")), -1);
        EXPECT_EQ(RetainCount(Bundle("Meter.bundle")), 1);
        EXPECT_EQ(painter.GetNumResContainers(), 1u);
    }
    EXPECT_EQ(RetainCount(Bundle("Meter.bundle")), -1);
}
