#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/PresetYAML.h"
#include "resources/ResourceManager.h"
#include "tests/Code/Presets/WCPresetTestAlgorithm.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using mirel_test::ReadFileText;
using namespace ml::Preset;
using mirel_test::WCPresetTestAlgorithm;
using ml::WCFourCC;

// A plug-in of its own type that also takes the presets of the types given.
class WCCompatibleAlg : public CPublicAlg {
public:
    WCCompatibleAlg(const ml::cALGORITHM &alg, std::vector<WCFourCC> types)
        : CPublicAlg(alg), m_Types(std::move(types)) {}
    std::vector<WCFourCC> GetPresetCompatibleTypes(WCFourCC) const override { return m_Types; }

private:
    std::vector<WCFourCC> m_Types;
};

void WriteText(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

// Name and flags of each entry, the form a menu shows.
std::vector<std::pair<std::string, std::uint32_t>> Entries(const WTPresetList &list) {
    std::vector<std::pair<std::string, std::uint32_t>> entries;
    for (const auto &info : list)
        entries.emplace_back(info->m_PresetName.c_str(), info->m_Flags);
    return entries;
}

// A factory file as a plug-in of type "XGai", sub-type "TsAl" meets it: its own presets, one of
// another type, titles, separators for it and for another sub-component, and a duplicate.
const char *kFactoryFile = R"(<PresetXMLTree version="2">
    <Preset Name="Warm" GenericType="XGai">
        <PresetData Setup="SETUP_A"><Parameters Type="RealWorld">1 2</Parameters></PresetData>
    </Preset>
    <Title>Mixing</Title>
    <Preset Name="Bright" GenericType="Othr"/>
    <Separator SubComp="Othr"/>
    <Separator/>
    <Preset Name="Any"/>
    <Preset Name="Subs" SubComp="Othr,TsAl"/>
    <Preset Name="NotSubs" SubComp="Othr"/>
    <Preset Name="Warm" GenericType="XGa2,XGai,"/>
</PresetXMLTree>
)";

const std::vector<std::pair<std::string, std::uint32_t>> kFactoryEntries = {
    {"Warm", 0}, {"Mixing", ePresetFlagDummyTitle}, {"Separator", ePresetFlagSeparator}, {"Any", 0},
    {"Subs", 0}, {"Warm", ePresetFlagDisabled}};

class CPresetAPITest : public ::testing::Test {
protected:
    void TearDown() override { ml::RM::Dispose(); }
    fs::path At(const char *name) const { return m_Dir.path() / name; }
    CPresetsFileInfo File(const fs::path &path) const {
        const ml::FM::WCStPath where(path.string());
        return CPresetsFileInfo(where, CPresetAPI::GetPresetFileFormat(m_Public, where));
    }

    mirel_test::WCTempDir m_Dir;
    WCPresetTestAlgorithm m_Alg{WCFourCC("XGai"), WCFourCC("TsAl")};
    CPublicAlg m_Public{m_Alg};
};

TEST_F(CPresetAPITest, CompatibilityTakesTypeListsCompatibleTypesAndSubComps) {
    const WCFourCC any = CPresetAPI::kAnyType;
    const struct {
        const char *m_Types;
        const char *m_SubComps;
        std::vector<WCFourCC> m_Compatible;
        bool m_Admitted;
    } cases[] = {
        {"", "", {}, true},
        {"", "TsAl", {}, true},
        {"", "Othr", {}, false},
        // Lists split at commas; a piece that is no code matches nothing, the rest still count.
        {"XGa2,XGai,", "Othr,TsAl,", {}, true},
        {"XGaiX", "", {}, false},
        {"XGaiX,XGai", "", {}, true},
        {"Othr", "", {}, false},
        {"Othr", "", {WCFourCC("Othr")}, true},
        {"Othr", "Else", {WCFourCC("Othr")}, false},
        // "****" admits any type and skips the sub-component test.
        {"Othr", "Else", {WCFourCC("Abcd"), any}, true},
    };
    for (const auto &c : cases) {
        CPresetAPI::WTFourCCList types, subComps;
        CPresetAPI::ParseToVector4CC(c.m_Types, types);
        CPresetAPI::ParseToVector4CC(c.m_SubComps, subComps);
        const WCCompatibleAlg alg(m_Alg, c.m_Compatible);
        EXPECT_EQ(CPresetAPI::IsPresetCompatible(alg, alg.GetAlgType(), true, types, subComps),
                  c.m_Admitted)
            << c.m_Types << " / " << c.m_SubComps;
        if (!c.m_Compatible.empty()) {
            EXPECT_FALSE(
                CPresetAPI::IsPresetCompatible(alg, alg.GetAlgType(), false, types, subComps))
                << "compatible types count only when asked: " << c.m_Types;
        }
    }
    CPresetAPI::WTFourCCList other{WCFourCC("Othr")}, ours{WCFourCC("Othr"), WCFourCC("TsAl")};
    EXPECT_TRUE(CPresetAPI::IsSeparatorSubCompCompatible(m_Public, {}));
    EXPECT_TRUE(CPresetAPI::IsSeparatorSubCompCompatible(m_Public, ours));
    EXPECT_FALSE(CPresetAPI::IsSeparatorSubCompCompatible(m_Public, other));
}

TEST_F(CPresetAPITest, FormatsAreKnownByExactExtensionOrByTheBundlesResource) {
    WriteText(At("Fx.bundle/Contents/Resources/Presets/1000.xml"), kFactoryFile);
    WriteText(At("Fx.bundle/Contents/Resources/resource_config.yaml"),
              "Extensions:\n  Presets: .xml\n");
    fs::create_directories(At("Empty.bundle/Contents/Resources"));
    const std::pair<const char *, EPresetsFormat> cases[] = {
        {"a.xps", ePresetsFormatXMLFile},      {"a.yps", ePresetsFormatYAMLFile},
        {"a.XPS", ePresetsFormatUnknown},      {"a.xml", ePresetsFormatUnknown},
        {"Fx.bundle", ePresetsFormatResource}, {"Empty.bundle", ePresetsFormatUnknown},
    };
    for (const auto &[name, format] : cases)
        EXPECT_EQ(CPresetAPI::GetPresetFileFormat(m_Public, ml::FM::WCStPath(At(name).string())),
                  format)
            << name;
}

TEST_F(CPresetAPITest, ListsShowWhatThePluginTakesInEveryFormAndFlagDuplicates) {
    WriteText(At("Factory.xps"), kFactoryFile);
    WriteText(At("Fx.bundle/Contents/Resources/Presets/1000.xml"), kFactoryFile);
    WriteText(At("Fx.bundle/Contents/Resources/resource_config.yaml"),
              "Extensions:\n  Presets: .xml\n");
    WSYAMLPresetHeader header;
    std::string yaml;
    ASSERT_EQ(PrepareYAMLPresetString(header, kFactoryFile, yaml), ml::eNoErr);
    WriteText(At("One.yps"), yaml);

    for (const char *name : {"Factory.xps", "Fx.bundle", "One.yps"}) {
        const CPresetsFileInfo file = File(At(name));
        WTPresetList list;
        ASSERT_EQ(CPresetAPI::GetPresetList(m_Public, file, list), ml::eNoErr) << name;
        EXPECT_EQ(Entries(list), kFactoryEntries) << name;
        ASSERT_EQ(CPresetAPI::GetPresetListWithPugi(m_Public, file, list), ml::eNoErr) << name;
        EXPECT_EQ(Entries(list), kFactoryEntries) << name << " through pugi";
    }
    WTPresetList all;
    ASSERT_EQ(CPresetAPI::ReadAllPresetsInfo(m_Public, File(At("Factory.xps")), all), ml::eNoErr);
    ASSERT_EQ(all[0]->m_Data.size(), 1u);
    EXPECT_EQ(all[0]->m_Data[0]->m_RealWorld, (std::vector<double>{1, 2}));
    EXPECT_EQ(all[0]->m_PresetVersion, "2");
}

TEST_F(CPresetAPITest, ABrokenFileGivesAProblemAndLeavesTheListAsItWas) {
    const char *broken[] = {"", "garbage", "<PresetXMLTree version=\"2\"><Preset Name=\"x\">",
                            "<Other><Preset Name=\"x\"/></Other>"};
    for (const char *text : broken) {
        WriteText(At("Broken.xps"), text);
        WTPresetList list;
        list.push_back(std::make_unique<CPresetInfo>());
        list[0]->m_PresetName = "kept";
        const CPresetsFileInfo file = File(At("Broken.xps"));
        EXPECT_EQ(CPresetAPI::GetPresetList(m_Public, file, list), ml::ePresetFileProblem) << text;
        EXPECT_EQ(CPresetAPI::GetPresetListWithPugi(m_Public, file, list), ml::ePresetFileProblem)
            << text;
        ASSERT_EQ(list.size(), 1u) << text;
        EXPECT_EQ(list[0]->m_PresetName, "kept");
        // An empty file has nothing to lose and takes a preset; any other is kept as it is.
        if (*text == 0)
            continue;
        CPresetInfo info(file);
        info.m_PresetName = "x";
        EXPECT_EQ(CPresetAPI::WritePresetInfo_XML(m_Public, info, file), ml::ePresetFileProblem)
            << "a file that cannot be read is not overwritten: " << text;
        EXPECT_EQ(ReadFileText(At("Broken.xps")), text);
    }
    WTPresetList list;
    EXPECT_EQ(CPresetAPI::GetPresetList(m_Public, File(At("Missing.xps")), list),
              ml::ePresetFileProblem);
}

TEST_F(CPresetAPITest, GroupsAreGatheredInTheOrderTheyFirstAppear) {
    const struct {
        std::vector<const char *> m_Groups;
        std::string m_Order;
        bool m_Moved;
    } cases[] = {
        {{"G1", "", "G2", "G1"}, "abdc", true},
        {{"G2", "G1", "G2", ""}, "acbd", true},
        {{"G1", "G1", "", "G2"}, "abcd", false},
    };
    for (const auto &c : cases) {
        WTPresetList list;
        for (const char *group : c.m_Groups) {
            list.push_back(std::make_unique<CPresetInfo>());
            list.back()->m_PresetName = std::string(1, char('a' + list.size() - 1)).c_str();
            list.back()->m_GroupName = group;
        }
        EXPECT_EQ(CPresetAPI::FixPresetOrderIfNeeded(list), c.m_Moved);
        std::string order;
        for (const auto &info : list)
            order += info->m_PresetName.c_str();
        EXPECT_EQ(order, c.m_Order);
    }
}

} // namespace
