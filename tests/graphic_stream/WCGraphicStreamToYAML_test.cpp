#include "graphic_stream/WCGraphicStreamToYAML.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/WCGoldenFile.h"
#include <yaml-cpp/yaml.h>

#include "GSTestSupport.h"

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::miGS;

namespace {

void ExpectGolden(const std::string &actual, const char *name) {
    mirel_test::ExpectGoldenFile(actual, MIREL_GS_TEST_DATA, name);
}

struct WSDemo {
    WCGraphicStreamBinaryWriter m_Writer;
    WSDemo() { gs_test::WriteDemoStream(m_Writer); }
    char *Ptr() { return m_Writer.GetStreamPtr(); }
    std::uint64_t Size() { return m_Writer.GetStreamSize(); }
    std::vector<std::uint64_t> Checksums() {
        std::vector<std::uint64_t> checksums;
        EXPECT_EQ(WCGraphicStreamEngineBase::CollectRecordChecksums(Ptr(), Size(), checksums),
                  eNoErr);
        return checksums;
    }
};

} // namespace

TEST(WCGraphicStreamToYAML, CompactAndFullDumpsMatchTheReviewedFiles) {
    WSDemo demo;
    for (bool compact : {true, false}) {
        WCGraphicStreamToYAML yaml(compact);
        ASSERT_EQ(yaml.ExecStream(demo.Ptr(), demo.Size()), eNoErr);
        ExpectGolden(yaml.GetYamlStr() + "\n", compact ? "demo_compact.yaml" : "demo_full.yaml");
    }
    // The stream file that the command-line dump turns into the same YAML.
    ExpectGolden(std::string(demo.Ptr(), demo.Size()), "demo.gs");
}

TEST(WCGraphicStreamToYAML, PlainDumpIsValidYamlWithTheStreamAtItsTopAndNoChecksums) {
    WSDemo demo;
    WCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(demo.Ptr(), demo.Size()), eNoErr);
    EXPECT_EQ(yaml.GetYamlStr().find("checksum"), std::string::npos);
    EXPECT_EQ(yaml.GetCountEmits(), 0u);
    // Its fields are held by the reviewed files; here only that a YAML reader takes it.
    const YAML::Node document = YAML::Load(yaml.GetYamlStr());
    ASSERT_TRUE(document.IsSequence());
    EXPECT_EQ(document.size(), 1u);
    EXPECT_EQ(document[0]["contents"][3]["contents"].size(), 3u);
}

TEST(WCGraphicStreamToYAML, AsManyChecksumsAsRecordsAreAllShown) {
    WSDemo demo;
    const std::vector<std::uint64_t> checksums = demo.Checksums();
    WCGraphicStreamToYAML yaml;
    std::ostringstream report;
    yaml.SetReportStream(report);
    ASSERT_EQ(yaml.ExecStreamWithAllChecksums(demo.Ptr(), demo.Size(), checksums), eNoErr);
    EXPECT_EQ(yaml.GetCountMissing(), 0u);
    EXPECT_EQ(yaml.GetCountEmits() + yaml.GetCountSkips(), checksums.size());
    EXPECT_EQ(yaml.GetExecCommandsCount() - yaml.GetCountEndFrames(), checksums.size());
    EXPECT_EQ(report.str().find("not enough checksums"), std::string::npos);
    const std::string expectedFirst = std::to_string(yaml.GetExecCommandsCount()) +
                                      " WCGraphicStreamToYAML.m_ExecCommands_count\n";
    EXPECT_EQ(report.str().substr(0, expectedFirst.size()), expectedFirst);
    EXPECT_NE(report.str().find(std::to_string(checksums.size()) +
                                " m_ExecCommands_count (without end frames)\n"),
              std::string::npos);

    const YAML::Node document = YAML::Load(yaml.GetYamlStr());
    EXPECT_EQ(document[0]["stream"]["checksum"].as<std::uint64_t>(), checksums[0]);
    EXPECT_EQ(document[0]["contents"][0]["resources_base_url"]["checksum"].as<std::uint64_t>(),
              checksums[1]);
}

TEST(WCGraphicStreamToYAML, EachMissingChecksumIsReportedOnce) {
    WSDemo demo;
    std::vector<std::uint64_t> checksums = demo.Checksums();
    checksums.pop_back();
    WCGraphicStreamToYAML yaml;
    std::ostringstream report;
    yaml.SetReportStream(report);
    ASSERT_EQ(yaml.ExecStreamWithAllChecksums(demo.Ptr(), demo.Size(), checksums), eNoErr);
    EXPECT_EQ(yaml.GetCountMissing(), 1u);
    const std::string text = report.str();
    const auto first = text.find("not enough checksums\n");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(text.find("not enough checksums", first + 1), std::string::npos);
    EXPECT_NE(text.find("1 WCGraphicStreamToYAML.m_count_missing\n"), std::string::npos);

    // Each record beyond the list says so.
    checksums.resize(checksums.size() - 2);
    report.str("");
    ASSERT_EQ(yaml.ExecStreamWithAllChecksums(demo.Ptr(), demo.Size(), checksums), eNoErr);
    EXPECT_EQ(yaml.GetCountMissing(), 3u);
    const std::string line = "not enough checksums\n";
    EXPECT_EQ(report.str().rfind(line + line + line, 0), 0u);
    EXPECT_EQ(report.str().find(line + line + line + line), std::string::npos);
}

TEST(WCGraphicStreamToYAML, WalkStoppedByAFaultKeepsWhatWasWrittenAndItsCountsAddUp) {
    WSDemo demo;
    const std::vector<std::uint64_t> checksums = demo.Checksums();
    WCGraphicStreamToYAML yaml;
    std::ostringstream report;
    yaml.SetReportStream(report);
    // The closing record is cut off, after three frames have closed.
    ASSERT_EQ(yaml.ExecStreamWithAllChecksums(demo.Ptr(), demo.Size() - 8, checksums), -8);
    ASSERT_EQ(yaml.GetCountEndFrames(), 3u);
    EXPECT_NE(yaml.GetYamlStr().find("Demo Compressor"), std::string::npos);
    EXPECT_EQ(yaml.GetExecCommandsCount(), yaml.GetRecordCount());
    EXPECT_NE(report.str().find(std::to_string(yaml.GetRecordCount()) +
                                " WCGraphicStreamToYAML.m_ExecCommands_count\n"),
              std::string::npos);
    EXPECT_NE(report.str().find(std::to_string(yaml.GetRecordCount() - 3) +
                                " m_ExecCommands_count (without end frames)\n"),
              std::string::npos);
}

TEST(WCGraphicStreamToYAML, UnknownRecordsAndDataArePrintedNotDropped) {
    WCGraphicStreamBinaryWriter writer;
    {
        WCStGSStreamStructWriter stream(writer, SGSStream());
        const int raw[3] = {GSCode("new!"), 12, 7};
        writer.GetMemObj().Append(raw, sizeof raw);
        writer.GetMemObj().ResizePtrAlign(4, 0);
        const unsigned char bytes[4] = {1, 2, 3, 4};
        writer.DataHere(eGSPurposeResID, GSCode("blob"), bytes, 4);
        writer.CommandHeader(eGSIgnoreCommand);
        const char text[] = "far away";
        writer.DataPtrStr(text);
    }
    WCGraphicStreamToYAML yaml;
    ASSERT_EQ(yaml.ExecStream(writer.GetStreamPtr(), writer.GetStreamSize()), eNoErr);
    const YAML::Node contents = YAML::Load(yaml.GetYamlStr())[0]["contents"];
    ASSERT_EQ(contents.size(), 3u);
    EXPECT_EQ(contents[0]["Unknown GraphicStreamCommand !wen"]["size"].as<int>(), 12);
    EXPECT_EQ(contents[1]["DataHere"]["the_data"].as<std::string>(), "unknown data type");
    // A pointer of another process is not followed, so its data stay out.
    EXPECT_FALSE(contents[2]["DataPtr"]["the_data"].IsDefined());
    EXPECT_EQ(contents[2]["DataPtr"]["num_elements"].as<int>(), 8);
}
