#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/PresetDocuments.h"
#include "tests/Code/Presets/WCPresetTestAlgorithm.h"
#include "tests/Code/Presets/WUDropPermissions.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using mirel_test::ReadFileText;
using namespace ml::Preset;
using mirel_test::DropFilePermissionOverrides;
using mirel_test::WCPresetTestAlgorithm;
using ml::WCFourCC;

void WriteText(const fs::path &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Another plug-in's preset shares a name with ours; a title and a preset of every type stand
// between.
const char *kUserFile = R"(<PresetXMLTree version="2">
    <Preset Name="Warm" GenericType="XGai">
        <PresetHeader><PluginVersion>10.0</PluginVersion></PresetHeader>
        <PresetData Setup="SETUP_A"><Parameters Type="RealWorld">1 2</Parameters></PresetData>
    </Preset>
    <Preset Name="Warm" GenericType="Othr,Oth2">
        <PresetData Setup="SETUP_A"><Parameters Type="RealWorld">7</Parameters></PresetData>
    </Preset>
    <Title>Mixing</Title>
    <Preset Name="Any"/>
</PresetXMLTree>
)";

CPresetInfo Preset(const CPresetsFileInfo &file, const char *name, std::vector<double> values) {
    CPresetInfo info(file);
    info.m_PresetName = name;
    info.m_GenericType = WCFourCC("XGai");
    auto &data = info.GetOrAddData(ml::eSetupA);
    data.m_DataType = ePresetDataRealWorld;
    data.m_NumParams = values.size();
    data.m_ValueKinds.assign(values.size(), ePresetValue);
    data.m_RealWorld = std::move(values);
    return info;
}

// Names of every entry of the file, whatever plug-in it is for, in file order.
std::vector<std::string> AllNames(const CPresetsFileInfo &file) {
    WTPresetList list;
    EXPECT_EQ(ReadPresetsFile(file, list, false), ml::eNoErr);
    std::vector<std::string> names;
    for (const auto &info : list)
        names.emplace_back(info->m_PresetName.c_str());
    return names;
}

class CPresetAPIWrite : public ::testing::Test {
protected:
    void SetUp() override {
        WriteText(m_Path, kUserFile);
        m_File = CPresetsFileInfo(ml::FM::WCStPath(m_Path.string()), ePresetsFormatXMLFile,
                                  ePresetSectionUser);
    }
    std::vector<double> ValuesOf(const CPublicAlg &alg, const char *name) {
        CPresetInfo info(m_File);
        info.m_PresetName = name;
        EXPECT_EQ(CPresetAPI::ReadPresetInfo(alg, info), ml::eNoErr) << name;
        return info.m_Data.empty() ? std::vector<double>{} : info.m_Data[0]->m_RealWorld;
    }

    mirel_test::WCTempDir m_Dir;
    fs::path m_Path = m_Dir.path() / "User.xps";
    CPresetsFileInfo m_File;
    WCPresetTestAlgorithm m_Alg{WCFourCC("XGai"), WCFourCC("TsAl")};
    CPublicAlg m_Public{m_Alg};
    WCPresetTestAlgorithm m_OtherAlg{WCFourCC("Othr"), WCFourCC("TsAl")};
    CPublicAlg m_Other{m_OtherAlg};
};

TEST_F(CPresetAPIWrite, SavingReplacesThePluginsSameNamedPresetLastAndKeepsEveryOtherEntry) {
    CPresetInfo warm = Preset(m_File, "Warm", {5, 6});
    ASSERT_EQ(CPresetAPI::WritePresetInfo(m_Public, warm), ml::eNoErr);
    CPresetInfo fresh = Preset(m_File, "New", {9});
    ASSERT_EQ(CPresetAPI::WritePresetInfo(m_Public, fresh), ml::eNoErr);

    EXPECT_EQ(AllNames(m_File), (std::vector<std::string>{"Warm", "Mixing", "Any", "Warm", "New"}));
    EXPECT_EQ(ValuesOf(m_Public, "Warm"), (std::vector<double>{5, 6}));
    EXPECT_EQ(ValuesOf(m_Other, "Warm"), (std::vector<double>{7}))
        << "the other plug-in's preset of that name is untouched";
    EXPECT_NE(ReadFileText(m_Path).find(R"(GenericType="Othr,Oth2")"), std::string::npos);
    struct stat info {};
    ASSERT_EQ(stat(m_Path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
}

TEST_F(CPresetAPIWrite, ReadRemoveAndEditReachOnlyThePluginsPreset) {
    const std::string before = ReadFileText(m_Path);
    CPresetInfo missing(m_File);
    missing.m_PresetName = "Nope";
    EXPECT_EQ(CPresetAPI::ReadPresetInfo(m_Public, missing), ml::ePresetInfoNotFound);
    EXPECT_TRUE(missing.m_Data.empty());
    EXPECT_EQ(CPresetAPI::RemovePresetInfo(m_Public, missing), ml::ePresetInfoNotFound);
    EXPECT_EQ(ReadFileText(m_Path), before);

    // A plug-in block edited in place: the values and the place in the file stay.
    CPresetInfo edit(m_File);
    edit.m_PresetName = "Warm";
    edit.GetOrAddData(ml::eSetupA);
    const char text[] = "notes";
    ASSERT_EQ(
        edit.AddPluginSpecifcData(text, sizeof(text) - 1, "Notes", 1, ePSBufferString, ml::eSetupA),
        ml::eNoErr);
    ASSERT_EQ(CPresetAPI::EditPresetSpecificInfo(m_Public, edit), ml::eNoErr);
    CPresetInfo read(m_File);
    read.m_PresetName = "Warm";
    ASSERT_EQ(CPresetAPI::ReadPresetInfo(m_Public, read), ml::eNoErr);
    ml::WCFixedString<63> notes;
    EXPECT_EQ(read.GetPluginSpecificData_Tag("Notes", ml::eSetupA, notes), ml::eNoErr);
    EXPECT_EQ(notes, "notes");
    EXPECT_EQ(read.m_Data[0]->m_RealWorld, (std::vector<double>{1, 2}));
    EXPECT_EQ(AllNames(m_File), (std::vector<std::string>{"Warm", "Warm", "Mixing", "Any"}));

    ASSERT_EQ(CPresetAPI::RemovePresetInfo(m_Public, read), ml::eNoErr);
    EXPECT_EQ(AllNames(m_File), (std::vector<std::string>{"Warm", "Mixing", "Any"}));
    EXPECT_EQ(ValuesOf(m_Other, "Warm"), (std::vector<double>{7}));

    CPresetInfo locked(m_File);
    locked.m_PresetName = "Any";
    locked.m_Flags |= ePresetFlagLocked;
    EXPECT_EQ(CPresetAPI::WritePresetInfo(m_Public, locked), ml::ePresetLockedProblem);
}

TEST_F(CPresetAPIWrite, ConversionBringsOnlyThePluginsPresetsUpToDate) {
    ASSERT_EQ(CPresetAPI::ConvertFileToCurrFormat(m_Public, m_File), ml::eNoErr);
    WTPresetList list;
    ASSERT_EQ(CPresetAPI::GetPresetList(m_Public, m_File, list), ml::eNoErr);
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0]->m_PluginName, "Gain");
    EXPECT_EQ(list[0]->m_PluginVersion, "12.5.1");
    EXPECT_EQ(ValuesOf(m_Public, "Warm"), (std::vector<double>{1, 2}));
    ASSERT_EQ(CPresetAPI::GetPresetList(m_Other, m_File, list), ml::eNoErr);
    EXPECT_TRUE(list[0]->m_PluginName.empty()) << "another plug-in's preset keeps its header";
    EXPECT_NE(ReadFileText(m_Path).find(R"(GenericType="Othr,Oth2")"), std::string::npos);
}

TEST_F(CPresetAPIWrite, ChunksOfAnotherTypeAreRefusedUnlessTheTypeIsCompatible) {
    CPresetInfo source = Preset(CPresetsFileInfo(), "Live", {3});
    source.m_GenericType = WCFourCC("Othr");
    ml::Utils::WCStMemObj chunk;
    ASSERT_EQ(WritePresetChunk(source, chunk), ml::eNoErr);

    CPresetInfo info;
    info.m_PresetName = "kept";
    EXPECT_EQ(CPresetAPI::SetPresetChunk(m_Public, info, chunk), ml::ePresetInfoNotFound);
    EXPECT_EQ(info.m_PresetName, "kept");
    EXPECT_EQ(m_Alg.SetChunk(kChunkWholeState, chunk), ml::ePresetInfoNotFound);

    struct WCTakesAll : CPublicAlg {
        using CPublicAlg::CPublicAlg;
        std::vector<WCFourCC> GetPresetCompatibleTypes(WCFourCC) const override {
            return {CPresetAPI::kAnyType};
        }
    } const takesAll(m_Alg);
    ASSERT_EQ(CPresetAPI::SetPresetChunk(takesAll, info, chunk), ml::eNoErr);
    EXPECT_EQ(info.m_PresetName, "Live");
    EXPECT_EQ(info.m_Format, ePresetsFormatXMLString);
    EXPECT_EQ(info.m_Data[0]->m_RealWorld, (std::vector<double>{3}));
}

// ---- failures half-way ----------------------------------------------------------------------

void KillSelf(int) {
    raise(SIGKILL);
}

enum class EFailure { eReadOnlyFolder, eDiskFull, eKilled };

// Runs `write` in a child process that meets `failure` while writing; answers the wait status.
// The child exits 0 when the write reported a failure. A file size limit makes the disk full
// at a fixed byte, and its signal, turned into SIGKILL, kills the writer there: never before the
// write began, never after it ended.
int RunWriterInChild(EFailure failure, const fs::path &folder, const std::function<int()> &write) {
    const pid_t child = fork();
    if (child != 0)
        return [child] {
            int status = -1;
            return waitpid(child, &status, 0) == child ? status : -1;
        }();
    if (failure == EFailure::eReadOnlyFolder) {
        if (!DropFilePermissionOverrides() || access(folder.c_str(), W_OK) == 0)
            _exit(3);
    } else {
        const rlimit limit{16 * 1024, 16 * 1024};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            _exit(3);
        signal(SIGXFSZ, failure == EFailure::eKilled ? KillSelf : SIG_IGN);
    }
    _exit(write() != ml::eNoErr ? 0 : 1);
}

TEST_F(CPresetAPIWrite, AWriteThatFailsHalfWayLeavesTheOldFileWhole) {
    const std::string before = ReadFileText(m_Path);
    // About 400 KB of text: far past the size limit of the children.
    CPresetInfo huge = Preset(m_File, "Huge", std::vector<double>(20000, 0.123456789012345));
    fs::permissions(m_Path, fs::perms(0666));
    for (const EFailure failure :
         {EFailure::eReadOnlyFolder, EFailure::eDiskFull, EFailure::eKilled}) {
        SCOPED_TRACE(static_cast<int>(failure));
        if (failure == EFailure::eReadOnlyFolder)
            fs::permissions(m_Dir.path(), fs::perms(0555));
        const int status = RunWriterInChild(
            failure, m_Dir.path(), [&] { return CPresetAPI::WritePresetInfo(m_Public, huge); });
        fs::permissions(m_Dir.path(), fs::perms(0755));
        if (failure == EFailure::eKilled)
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
        else
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        EXPECT_EQ(ReadFileText(m_Path), before);
        EXPECT_EQ(AllNames(m_File), (std::vector<std::string>{"Warm", "Warm", "Mixing", "Any"}));
    }
    // Whatever a killed writer left behind does not stand in the way of the next save.
    ASSERT_EQ(CPresetAPI::WritePresetInfo(m_Public, huge), ml::eNoErr);
    EXPECT_EQ(AllNames(m_File),
              (std::vector<std::string>{"Warm", "Warm", "Mixing", "Any", "Huge"}));
}

} // namespace
