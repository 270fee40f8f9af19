#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "Code/Presets/PresetDocuments.h"
#include "Code/Presets/PresetYAML.h"
#include "files/WCStCachePath.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using mirel_test::ReadFileText;
using namespace ml::Preset;

std::string Text(const ml::Utils::WCStConstMemObj &data) {
    return std::string(static_cast<const char *>(data.GetPtr()), data.GetSize());
}

CPresetInfo ChunkPreset() {
    CPresetInfo info;
    info.m_PresetName = "Live";
    info.m_Category = ePresetSectionUser;
    info.m_Flags = ePresetFlagReadOnly;
    info.m_ExternalFilePath = ml::FM::WCStPath("/presets/Live.xps");
    auto &data = info.GetOrAddData(ml::eCurrentSetup);
    data.m_DataType = ePresetDataRealWorld;
    data.m_RealWorld = {0.5, -3};
    data.m_ValueKinds = {0, 0};
    return info;
}

TEST(PresetChunk, CarriesThePresetAsTextWithoutDeclarationByChunkId) {
    const CPresetInfo info = ChunkPreset();
    ml::Utils::WCStMemObj chunk;
    ASSERT_EQ(GetChunkFromPreset(kChunkWholeState, info, chunk), ml::eNoErr);
    mirel_test::ExpectGoldenFile(Text(chunk), MIREL_PRESET_TEST_DATA, "live_chunk.xml");
    for (const ml::WCFourCC id : {kChunkWholeState, kChunkCurrentSetup}) {
        CPresetInfo read;
        ASSERT_EQ(SetChunkToPreset(id, chunk, read), ml::eNoErr);
        EXPECT_TRUE(CPresetInfo::IsSamePreset(read, info));
        EXPECT_EQ(read.m_Category, ePresetSectionUser);
        EXPECT_EQ(read.m_ExternalFilePath.GetPathString(), "/presets/Live.xps");
        EXPECT_TRUE(read.m_Data[0]->LoadParams());
    }

    // 'pref' is always empty and ignored; an unknown id is refused either way.
    ml::Utils::WCStMemObj pref(chunk);
    EXPECT_EQ(GetChunkFromPreset(kChunkPreferences, info, pref), ml::eNoErr);
    EXPECT_EQ(pref.GetSize(), 0u);
    CPresetInfo untouched = ChunkPreset();
    EXPECT_EQ(SetChunkToPreset(kChunkPreferences, chunk, untouched), ml::eNoErr);
    EXPECT_EQ(SetChunkToPreset(ml::WCFourCC("abcd"), chunk, untouched), kErrUnknownChunkID);
    EXPECT_EQ(GetChunkFromPreset(ml::WCFourCC("abcd"), info, pref), kErrUnknownChunkID);
    EXPECT_TRUE(CPresetInfo::IsSamePreset(untouched, info));
}

TEST(PresetChunk, RefusesBrokenChunksAndKeepsThePreset) {
    const std::string cases[] = {
        "",
        "<PresetChunkXMLTree version=\"2\"><Preset Name=\"x\">",
        "<PresetChunkXMLTree version=\"2\"/>",
        "<Preset Name=\"x\"/>",
        std::string("\0\0\0\0", 4),
    };
    for (const auto &text : cases) {
        SCOPED_TRACE(text);
        CPresetInfo info = ChunkPreset();
        const ml::Utils::WCStConstMemObj chunk(text.data(), text.size());
        EXPECT_NE(SetChunkToPreset(kChunkWholeState, chunk, info), ml::eNoErr);
        EXPECT_EQ(info.m_PresetName, "Live");
        EXPECT_TRUE(CPresetInfo::IsSamePreset(info, ChunkPreset()));
    }
}

TEST(PresetYAML, WritesKeysInOrderWithTheChunkAsALiteralBlock) {
    WSYAMLPresetHeader header;
    header.m_GenericType = ml::WCFourCC("XGai");
    header.m_PluginName = "GainFilter";
    header.m_PluginSubComp = "GnFl";
    header.m_PluginVersion = ml::WCVersion(13, 1, 0, 186);
    header.m_PluginKeys = {{"Colour", "blue"}};
    const std::string chunk = "<PresetChunkXMLTree version=\"2\">\n\n    <Preset Name=\"a\"/>\n"
                              "</PresetChunkXMLTree>\n";
    std::string text;
    ASSERT_EQ(PrepareYAMLPresetString(header, chunk, text), ml::eNoErr);
    mirel_test::ExpectGoldenFile(text, MIREL_PRESET_TEST_DATA, "keys_in_order.yps");

    std::string read;
    WSYAMLPresetHeader readHeader;
    ASSERT_EQ(GetDataChunkFromYAMLPresetText(text, read, &readHeader), ml::eNoErr);
    EXPECT_EQ(read, chunk);
    EXPECT_EQ(readHeader.m_GenericType, header.m_GenericType);
    EXPECT_EQ(readHeader.m_PluginVersion, header.m_PluginVersion);
    ASSERT_EQ(readHeader.m_PluginKeys.size(), 1u);
    EXPECT_EQ(readHeader.m_PluginKeys[0].second, "blue");
}

TEST(PresetYAML, CreatesFilesReadableAndWritableByAll) {
    mirel_test::WCTempDir dir;
    const ml::FM::WCStPath path((dir.path() / "Preset-Clipboard.yps").string());
    const mode_t old = umask(0);
    const WTErr error = WriteYAMLPresetFile(path, "VendorName: Mirel\nChunkData: x\n");
    umask(old);
    ASSERT_EQ(error, ml::eNoErr);
    struct stat info {};
    ASSERT_EQ(stat(path.GetPathString().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0666u);
    std::string chunk;
    EXPECT_EQ(GetDataChunkFromYAMLPresetFile(path, chunk), ml::eNoErr);
    EXPECT_EQ(chunk, "x");
}

TEST(PresetYAML, RefusesForeignAndBrokenFilesAndKeepsTheChunk) {
    const struct {
        std::string m_Text;
        WTErr m_Error;
    } cases[] = {
        {"VendorName: Other\nChunkData: x\n", kErrForeignPresetVendor},
        {"VendorName: mirel\nChunkData: x\n", kErrForeignPresetVendor},
        {"VendorName: Mirel\n", ePresetFileProblem},
        {"VendorName: Mirel\nChunkData: [a, b]\n", ePresetFileProblem},
        {"ChunkData: x\n", ePresetFileProblem},
        {"- VendorName: Mirel\n", ePresetFileProblem},
        {"", ePresetFileProblem},
        {"{VendorName: Mirel, ChunkData: [" + std::string(100000, '[') + "]}", ePresetFileProblem},
        {"a: &x [*x, *x]\nVendorName: Mirel\n", ePresetFileProblem},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.m_Text.substr(0, 60));
        std::string chunk = "kept";
        EXPECT_EQ(GetDataChunkFromYAMLPresetText(c.m_Text, chunk), c.m_Error);
        EXPECT_EQ(chunk, "kept");
    }
}

// A preset file "Song.xps" in a folder, with a block whose data lives in side files.
class PresetSideFiles : public ::testing::Test {
protected:
    void SetUp() override {
        m_Preset.m_PresetName = "Song";
        const int values[] = {1, 2, 3};
        m_Preset.AddPluginSpecifcData(values, sizeof(values), "Table", 9, ePSBufferLong,
                                      ml::eSetupA);
        sPluginSpecific *block = m_Preset.FindPluginSpecific_Tag("Table", ml::eSetupA);
        block->m_StorageFlags = sPluginSpecific::eHasDataFile | sPluginSpecific::eHasCacheFile;
        block->m_DataFileName = "data_table.txt";
        block->m_CacheFileName = "data.cache";
        ASSERT_EQ(WritePresetsFile(m_File, {&m_Preset}), ml::eNoErr);
    }

    WTErr ReadTable(std::vector<int> &values) {
        WTPresetList list;
        const WTErr error =
            ReadPresetsFile(CPresetsFileInfo(m_File, ePresetsFormatXMLFile), list, true);
        if (error != ml::eNoErr)
            return error;
        ml::Utils::WCStMemObj data;
        const WTErr got = list.at(0)->GetPluginSpecificData_Tag("Table", ml::eSetupA, data);
        values.assign(static_cast<const int *>(data.GetPtr()),
                      static_cast<const int *>(data.GetPtr()) + data.GetSize() / sizeof(int));
        return got;
    }

    static void SetAge(const fs::path &path, int secondsAgo) {
        fs::last_write_time(path,
                            fs::file_time_type::clock::now() - std::chrono::seconds(secondsAgo));
    }

    mirel_test::WCTempDir m_Dir;
    fs::path m_FilePath = m_Dir.path() / "Song.xps";
    ml::FM::WCStPath m_File{m_FilePath.string()};
    CPresetInfo m_Preset;
};

TEST_F(PresetSideFiles, KeepsBlockDataBesideThePresetAndAFreshCacheInTheUserCache) {
    // The element stays empty; the data file takes the preset's base name for "data".
    EXPECT_NE(ReadFileText(m_FilePath).find("<Data file=\"data_table.txt\" cache=\"data.cache\"/>"),
              std::string::npos);
    const fs::path dataFile = m_Dir.path() / "Song_table.txt";
    EXPECT_EQ(ReadFileText(dataFile), "1 2 3");
    const fs::path cacheFile(
        ml::FM::WCStCachePath(ml::FM::WCStPath((m_Dir.path() / "Song.cache").string()))
            .GetPathString()
            .c_str());
    EXPECT_FALSE(fs::exists(cacheFile));

    std::vector<int> values;
    ASSERT_EQ(ReadTable(values), ml::eNoErr);
    EXPECT_EQ(values, (std::vector<int>{1, 2, 3}));
    ASSERT_TRUE(fs::exists(cacheFile)) << cacheFile;

    // A cache newer than the preset and the data file stands for them.
    const int cached[] = {7, 8};
    std::ofstream(cacheFile, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char *>(cached), sizeof(cached));
    SetAge(m_FilePath, 20);
    SetAge(dataFile, 20);
    ASSERT_EQ(ReadTable(values), ml::eNoErr);
    EXPECT_EQ(values, (std::vector<int>{7, 8}));

    // A data file changed after the cache wins and refreshes the cache.
    std::ofstream(dataFile, std::ios::trunc) << "4 5";
    SetAge(cacheFile, 40);
    ASSERT_EQ(ReadTable(values), ml::eNoErr);
    EXPECT_EQ(values, (std::vector<int>{4, 5}));
    SetAge(m_FilePath, 60);
    SetAge(dataFile, 60);
    std::ofstream(dataFile, std::ios::trunc) << "6";
    SetAge(dataFile, 60);
    ASSERT_EQ(ReadTable(values), ml::eNoErr);
    EXPECT_EQ(values, (std::vector<int>{4, 5}));
}

TEST_F(PresetSideFiles, AMissingDataFileFailsTheRead) {
    fs::remove(m_Dir.path() / "Song_table.txt");
    std::vector<int> values{42};
    EXPECT_EQ(ReadTable(values), ePresetFileProblem);
    EXPECT_EQ(values, (std::vector<int>{42}));
}

} // namespace
