// Frames of a GUI document: what a full frame, a minimal one and an idle one hold, and regions.

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCTestHome.h"

#include "Code/GUI/CStandardGUI_X.h"
#include "Code/GUI/WCGUIControl.h"
#include "Code/GUI/WCRegion.h"
#include "graphic_stream/WCGraphicStreamBinaryWriter.h"
#include "graphic_stream/WCGraphicStreamEngineBase.h"
#include "resources/ResourceManager.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using ml::CStandardGUI_X;

const char *kParamXML = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
  <Minimum>0</Minimum><Maximum>1</Maximum></Scale></Parameter></ParamXML>)";

// Three coloured controls: B overlaps A, C stands apart.
const char *kGUI = R"(<GUI version="5">
  <ViewRect_List><Rect top="0" left="0" width="300" height="100"/></ViewRect_List>
  <Background_Color red="1" green="2" blue="3"/>
  <Flag_List><NoAlwaysDraw/>%s</Flag_List>
  <Control_List>
    <cCONTROLLER Name="A"><Class Type="Slider"/><ControlRect top="10" left="10" width="40" height="40"/>
      <ControlColor red="200" green="0" blue="0"/></cCONTROLLER>
    <cCONTROLLER Name="B"><Class Type="Toggle"/><ControlRect top="30" left="40" width="40" height="40"/>
      <ControlColor red="0" green="200" blue="0"/></cCONTROLLER>
    <cCONTROLLER Name="C"><Class Type="VU"/><ControlRect top="10" left="200" width="40" height="40"/>
      <ControlColor red="0" green="0" blue="200"/></cCONTROLLER>
  </Control_List></GUI>)";

class WCPlugin : public mirel_test::WCSilentAlgorithm {
public:
    WCPlugin(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : WCSilentAlgorithm(info, container) {
        SetAlgName("Draw");
    }

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

// The records of a frame, one word each, remarks by their text.
class WCRecordList : public ml::miGS::WCGraphicStreamEngineBase {
public:
    std::vector<std::string> m_Records;

    int BeginStream(ml::miGS::SGSStream &) override { return Add("BSTM"); }
    int EndStream(ml::miGS::SGSCommandHeader &) override { return Add("ESTM"); }
    int BeginFrame(ml::miGS::SGSFrame &) override { return Add("BFRM"); }
    int ClipRect(ml::miGS::SGSClipRect &) override { return Add("clip"); }
    int ClipMultipleRects(ml::miGS::SGSClipMultipleRects &) override { return Add("clips"); }
    int DrawVertices(ml::miGS::SGSDrawVertices &) override { return Add("draw"); }
    int ResourcesBaseURL(ml::miGS::SGSData &) override { return Add("RURL"); }
    int Remark(ml::miGS::SGSData &data) override {
        return Add(
            std::string(static_cast<const char *>(GetDataPayload(data)), GetDataPayloadSize(data)));
    }

private:
    int Add(std::string record) {
        m_Records.push_back(std::move(record));
        return 0;
    }
};

class GUIFrames : public ::testing::Test {
protected:
    void Start(const char *flags = "") {
        const fs::path resources = m_Home.path() / "Draw.bundle/Contents/Resources";
        fs::create_directories(resources / "GUIXML");
        std::ofstream(resources / "resource_config.yaml") << "Extensions:\n  GUIXML: .xml\n";
        char text[4096];
        std::snprintf(text, sizeof text, kGUI, flags);
        std::ofstream(resources / "GUIXML/1000.xml") << text;
        ASSERT_EQ(ml::RM::OpenResContainer((m_Home.path() / "Draw.bundle").c_str(), 0, m_Container),
                  0);
        ml::MirelComponentInfo info;
        m_Alg = std::make_unique<WCPlugin>(info, m_Container);
        ASSERT_EQ(m_Alg->FinishCreate(), 0);
        ASSERT_EQ(m_Alg->CreateGuiAndAddToMap(nullptr, "1000", "Primary"), 0);
        m_GUI = m_Alg->GetGUIPtr("Primary");
    }
    void TearDown() override {
        m_Alg.reset();
        ml::RM::CloseResContainer(m_Container);
        ml::RM::Dispose();
    }
    std::vector<std::string> Frame() {
        ml::miGS::WCGraphicStreamBinaryWriter writer(0);
        writer.ActivateRemarks(true);
        EXPECT_EQ(m_GUI->GetDrawInstructions(writer), 0);
        WCRecordList records;
        if (writer.GetStreamSize() > 0) {
            EXPECT_EQ(records.ExecStream(static_cast<char *>(writer.GetStreamPtr()),
                                         writer.GetStreamSize()),
                      0);
        }
        return records.m_Records;
    }
    // Frames until nothing is left to paint.
    void Settle() {
        for (int i = 0; i < 4; ++i)
            Frame();
    }

    mirel_test::WCTestHome m_Home;
    ml::WTResContainerType *m_Container = nullptr;
    std::unique_ptr<WCPlugin> m_Alg;
    CStandardGUI_X *m_GUI = nullptr;
};

using Records = std::vector<std::string>;

TEST_F(GUIFrames, AFullFrameThenOnlyWhatChangedAndItsNeighboursClippedToIt) {
    ASSERT_NO_FATAL_FAILURE(Start());
    EXPECT_EQ(Frame(), (Records{"BSTM", "RURL", "clip", "draw", "Control \"A\" [Slider]", "BFRM",
                                "Slider background", "draw", "Control \"B\" [Toggle]", "BFRM",
                                "draw", "Control \"C\" [VU]", "BFRM", "draw", "ESTM"}));
    Settle();
    EXPECT_EQ(Frame(), (Records{"BSTM", "RURL", "clip", "ESTM"}))
        << "a frame with nothing dirty holds no more than the stream and its clip";

    m_GUI->GetControlPtrByName("A")->SetNeedToRedrawControl();
    EXPECT_EQ(Frame(), (Records{"BSTM", "RURL", "clip", "Control \"A\" [Slider] (R)", "BFRM",
                                "Slider background", "draw", "Control \"B\" [Toggle] (NR)",
                                "BFRM", "draw", "ESTM"}))
        << "B overlaps A, and its image fills its rect: it repaints whole";
    EXPECT_EQ(m_GUI->GetDirtyRects(), (std::vector<ml::WURect<short>>{{10, 10, 50, 50}}));

    // A hidden control writes no frame, even in a full frame.
    m_GUI->GetControlPtrByName("B")->Hide();
    m_GUI->SetNeedToRedrawGUI();
    const Records full = Frame();
    EXPECT_EQ(std::count(full.begin(), full.end(), "BFRM"), 2);
    EXPECT_EQ(std::count(full.begin(), full.end(), "Control \"B\" [Toggle]"), 0);
}

TEST_F(GUIFrames, NoImagesLeavesTheWriterEmpty) {
    ASSERT_NO_FATAL_FAILURE(Start("<NoImages/>"));
    ml::miGS::WCGraphicStreamBinaryWriter writer(0);
    EXPECT_EQ(m_GUI->GetDrawInstructions(writer), 0);
    EXPECT_EQ(writer.GetStreamSize(), 0u);
}

TEST_F(GUIFrames, AFrameIsWrittenToFilesOfTheFourFormatsAndNoOther) {
    ASSERT_NO_FATAL_FAILURE(Start());
    ml::miGS::WCGraphicStreamBinaryWriter writer(0);
    ASSERT_EQ(m_GUI->GetDrawInstructions(writer), 0);
    const fs::path folder = m_Home.path() / "dumps";
    m_GUI->SetGraphicStreamDumpFolder(folder.c_str());
    for (const char *format : {"gs", "yaml", "graph_data", "svg", "png"})
        EXPECT_EQ(m_GUI->WriteGraphicStreamToFile(writer, format, "frame"), 0) << format;
    EXPECT_EQ(fs::file_size(folder / "frame.gs"), writer.GetStreamSize());
    EXPECT_FALSE(fs::exists(folder / "frame.png")) << "an unknown format writes nothing";
    std::ifstream svg(folder / "frame.svg");
    const std::string text((std::istreambuf_iterator<char>(svg)), std::istreambuf_iterator<char>());
    EXPECT_NE(text.find("<svg"), std::string::npos);
    EXPECT_TRUE(fs::exists(folder / "frame.yaml"));
    EXPECT_TRUE(fs::exists(folder / "frame.graph_data"));
}

TEST(WCRegion, CombinesComparesAndFillsPolygons) {
    using Rect = ml::WURect<short>;
    EXPECT_TRUE(ml::WCRegion(std::vector<ml::WCPoint2D<short>>{{3, 3}}).IsNull())
        << "one point makes no region";
    ml::WCRegion region(Rect(0, 0, 10, 10));
    region += Rect(0, 10, 10, 20);
    EXPECT_EQ(region, ml::WCRegion(Rect(0, 0, 10, 20)));
    region -= Rect(0, 5, 10, 15);
    EXPECT_EQ(region.GetRects(), (std::vector<Rect>{{0, 0, 10, 5}, {0, 15, 10, 20}}));
    EXPECT_FALSE(region.IsIntersecting(Rect(0, 6, 10, 14)));
    EXPECT_TRUE(region.IsIntersecting(Rect(5, 4, 6, 6)));
    region.OffsetBy(10, 100);
    EXPECT_EQ(region.GetBounds(), Rect(100, 10, 110, 30));
    region.Scale(0.5, 2.0);
    EXPECT_EQ(region.GetBounds(), Rect(200, 5, 220, 15));
    // A right triangle of legs 10 covers about half of its square, all of it inside.
    const ml::WCRegion triangle(std::vector<ml::WCPoint2D<short>>{{0, 0}, {10, 0}, {0, 10}});
    int area = 0;
    for (const Rect &rect : triangle.GetRects()) {
        area += rect.Width() * rect.Height();
        EXPECT_LE(rect.right + rect.bottom, 11);
    }
    EXPECT_NEAR(area, 50, 6);
    EXPECT_TRUE(ml::WCRegion() == ml::WCRegion(std::vector<ml::WCPoint2D<short>>{}))
        << "a null region is empty";
}

} // namespace
