#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Code/Algorithm/WCAlgorithmBroadcaster.h"
#include "Code/Presets/CPresetAPI.h"
#include "Code/Presets/CPresetsManager.h"
#include "resources/ResourceManager.h"
#include "tests/Code/Presets/WUDropPermissions.h"
#include "tests/support/WCSilentAlgorithm.h"
#include "tests/support/WCTestHome.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
namespace fs = std::filesystem;
using namespace ml::Preset;
using ml::EPluginSetup;

// Gain, Mix, a host-only parameter, one presets never reach, and one added after old presets.
const char *kParamXML = R"(<ParamXML>
  <Parameter Name="Gain"><Scale><ScaleType Type="linear"/><Minimum>-24</Minimum>
    <Maximum>12</Maximum></Scale><InitialValue>0</InitialValue></Parameter>
  <Parameter Name="Mix"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum>
    <Maximum>100</Maximum></Scale><InitialValue>50</InitialValue></Parameter>
  <Parameter Name="HostOnly"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum>
    <Maximum>10</Maximum></Scale><Flags><LoadFromHostOnly value="true"/></Flags>
    <InitialValue>1</InitialValue></Parameter>
  <Parameter Name="Fixed"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum>
    <Maximum>10</Maximum></Scale><Flags><DontReadFromPreset value="true"/></Flags>
    <InitialValue>2</InitialValue></Parameter>
  <Parameter Name="Extra"><Scale><ScaleType Type="linear"/><Minimum>0</Minimum>
    <Maximum>10</Maximum></Scale><InitialValue>3</InitialValue></Parameter>
</ParamXML>)";

std::string Preset(const char *name, const char *values, const char *setup = "CURRENT") {
    return std::string("<Preset Name=\"") + name + "\"><PresetData Setup=\"" + setup +
           "\"><Parameters Type=\"RealWorld\">" + values + "</Parameters></PresetData></Preset>";
}

const std::string kFactory = "<PresetXMLTree version=\"2\">" + Preset("Default", "-6 40 5 7 8") +
                             "<Title>Mixing</Title>" + Preset("Warm", "-3 60 5 7 8") +
                             "<Separator/>" + Preset("Bright", "3 70 5 7 8") + "</PresetXMLTree>";

void WriteText(const fs::path &path, const std::string &text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string FileText(const fs::path &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// A plug-in in a bundle that holds its factory presets, logging each preset hook it meets.
class WCPresetsPlugin : public mirel_test::WCSilentAlgorithm, public ml::WCAlgorithmListener {
public:
    WCPresetsPlugin(ml::MirelComponentInfo const &info, ml::WTResContainerType *&container)
        : WCSilentAlgorithm(info, container) {
        SetAlgName("Gain");
        SetAlgTypes(ml::WCFourCC("XGai"), ml::WCFourCC("TsAl"));
        Broadcaster()->insert(this);
    }
    ~WCPresetsPlugin() override { Broadcaster()->remove(this); }

    std::vector<std::string> m_Hooks;
    int m_PostLoadResult = 0;

    void UpdatePresetDataBeforeLoad(Preset::sPresetData &) override { Log("UpdateData"); }
    void PresetLoaded(CPresetInfo const &info) override {
        Log(std::string("PresetLoaded ") + info.m_PresetName.c_str());
    }
    void ActiveSetupChanged(EPluginSetup setup) override {
        Log("ActiveSetupChanged " + std::to_string(setup));
    }
    double Value(std::uint64_t id, EPluginSetup setup = ml::eCurrentSetup) const {
        return GetParam(id)->GetRealWorld(ml::SetupSlot(GetAbsoluteSetup(setup)));
    }

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
    bool ShouldClearMidiControlsAttachment(CPresetInfo const &) override {
        return Log("ShouldClear"), true;
    }
    int PreLoadFromPreset(CPresetInfo const &) override { return Log("PreLoad"), 0; }
    int LoadMidiFromPresetSelf(CPresetInfo const &) override { return Log("LoadMidi"), 0; }
    bool GetLoadSpecificXMLPreset() const override { return true; }
    int LoadSpecificXMLFromPresetSelf(ml::XML::CXMLElement const &, bool, EPluginSetup s) override {
        return Log("SpecificXML " + std::to_string(s)), 0;
    }
    int LoadFromPresetSelf(CPresetInfo const &, Preset::sPresetData const &,
                           EPluginSetup) override {
        return Log("Blocks"), 0;
    }
    bool ShouldLoadParamsFromPresetSelf(Preset::sPresetData const &) override {
        return Log("LoadParams"), true;
    }
    int PostLoadFromPreset(CPresetInfo const &) override {
        return Log("PostLoad"), m_PostLoadResult;
    }

private:
    // Hooks run on the host's thread too.
    void Log(std::string hook) const {
        std::lock_guard<std::mutex> lock(m_LogMutex);
        const_cast<WCPresetsPlugin *>(this)->m_Hooks.push_back(std::move(hook));
    }
    mutable std::mutex m_LogMutex;
};

int RefusingExec(int op, std::int64_t, void *, void *, void *) {
    return op == ml::eExecNewBuffer ? ml::eMemOutOfMemory : ml::eNotImplemented;
}

class PresetsManager : public ::testing::Test {
protected:
    void SetUp() override {
        WriteText(m_Home.path() / "Gain.bundle/Contents/Resources/Presets/1000.xps", kFactory);
        WriteText(m_Home.path() / "Gain.bundle/Contents/Resources/resource_config.yaml",
                  "Extensions:\n  Presets: .xps\n");
        m_Alg = Start();
    }
    void TearDown() override {
        Stop(m_Alg);
        ml::RM::Dispose();
    }
    WCPresetsPlugin *Start() {
        ml::WTResContainerType *&container = m_Containers.emplace_back(nullptr);
        EXPECT_EQ(ml::RM::OpenResContainer((m_Home.path() / "Gain.bundle").c_str(), 0, container),
                  0);
        ml::MirelComponentInfo info;
        info.m_ComponentType = ml::WCFourCC("Nati");
        info.m_ComponentSubType = ml::WCFourCC("TsAl");
        info.m_ExternalVersion.ReadFromString("13.1.0");
        auto *alg = new WCPresetsPlugin(info, container);
        alg->SetMainThreadRef();
        alg->SetExecCallBack(&RefusingExec, 0);
        alg->InitProcessCode();
        EXPECT_EQ(alg->FinishCreate(), 0);
        alg->InitData();
        EXPECT_EQ(alg->InitInstanceData(), 0);
        return alg;
    }
    static void Stop(WCPresetsPlugin *alg) {
        alg->Dispose();
        delete alg;
    }
    CPresetsManager &Manager() { return *m_Alg->GetPresetsManager(); }
    ml::Preset::CPublicAlg Public() { return ml::Preset::CPublicAlg(*m_Alg); }
    std::vector<double> Values(EPluginSetup setup = ml::eCurrentSetup) {
        std::vector<double> values;
        for (std::uint64_t id = 0; id < 5; ++id)
            values.push_back(m_Alg->Value(id, setup));
        return values;
    }
    CPresetInfo Parsed(const std::string &preset) {
        CPresetInfo info;
        const std::string text =
            "<PresetChunkXMLTree version=\"2\">" + preset + "</PresetChunkXMLTree>";
        ml::Utils::WCStMemObj chunk;
        chunk.Assign(text.data(), text.size());
        EXPECT_EQ(CPresetAPI::SetPresetChunk(Public(), info, chunk), 0);
        info.m_Section = ePresetSectionExternalFile;
        return info;
    }
    fs::path Settings(const char *suffix) {
        return m_Home.path() / ".config/Mirel Audio/Preferences/Plug-In Settings" /
               (std::string("Gain") + suffix);
    }

    mirel_test::WCTestHome m_Home;
    std::vector<ml::WTResContainerType *> m_Containers = std::vector<ml::WTResContainerType *>(0);
    WCPresetsPlugin *m_Alg = nullptr;
};

TEST_F(PresetsManager, StartsWithTheDefaultInBothSetupsAndTheUserFilesInTheTemporaryHome) {
    // The factory preset named "Default" (host-only and never-read parameters kept).
    EXPECT_EQ(Values(ml::eSetupA), (std::vector<double>{-6, 40, 1, 2, 8}));
    EXPECT_EQ(Values(ml::eSetupB), Values(ml::eSetupA));
    EXPECT_STREQ(m_Alg->GetCurrentPresetInfo().m_PresetName.c_str(), "Default");
    EXPECT_TRUE(fs::is_regular_file(Settings(" Settings.xps")));
    EXPECT_TRUE(
        fs::is_directory(m_Home.path() / ".local/share/Mirel Audio/Presets/Gain User Presets"));

    // The user's own default wins over the factory's at the next start, host-only values too.
    m_Alg->UpdateParamRealWorld(0, 9.0);
    m_Alg->UpdateParamRealWorld(2, 7.0);
    ASSERT_EQ(Manager().SaveAsDefaultPreset(Public()), 0);
    WCPresetsPlugin *second = Start();
    EXPECT_EQ(second->Value(0, ml::eSetupB), 9.0);
    EXPECT_EQ(second->Value(2, ml::eSetupA), 7.0);
    EXPECT_STREQ(second->GetCurrentPresetInfo().m_PresetName.c_str(), "My Default Preset");
    Stop(second);

    // Overwriting a default asks first; a refusal keeps the file.
    const std::string before = FileText(Settings(" Startup Preset.xps"));
    Manager().SetAlertResponder([](const char *title, const char *, const char *) {
        return std::string(title) != "Set As Default Preset";
    });
    m_Alg->UpdateParamRealWorld(0, -1.0);
    EXPECT_EQ(Manager().SaveAsDefaultPreset(Public()), ml::eUserCanceled);
    EXPECT_EQ(FileText(Settings(" Startup Preset.xps")), before);
}

TEST_F(PresetsManager, LoadRunsTheHooksInOrderAndAnswersTheLastOne) {
    const CPresetInfo info = Parsed(
        "<Preset Name=\"Two\"><PresetHeader><ActiveSetup>SETUP_B</ActiveSetup></PresetHeader>"
        "<PresetData Setup=\"SETUP_A\"><Parameters Type=\"RealWorld\">1 2</Parameters></PresetData>"
        "<PresetData Setup=\"SETUP_B\"><Parameters Type=\"RealWorld\">3 4</Parameters></PresetData>"
        "</Preset>");
    m_Alg->m_Hooks.clear();
    m_Alg->m_PostLoadResult = 77;
    // The switch to setup B still names B's preset as it stood; the load then names its own.
    EXPECT_EQ(Manager().LoadPresetToPlugin(Public(), info, true), 77);
    EXPECT_EQ(m_Alg->m_Hooks,
              (std::vector<std::string>{"ShouldClear", "PreLoad", "UpdateData", "SpecificXML 0",
                                        "Blocks", "LoadParams", "UpdateData", "SpecificXML 1",
                                        "Blocks", "LoadParams", "ActiveSetupChanged 1",
                                        "PresetLoaded Default", "PresetLoaded Two", "PostLoad"}));
    EXPECT_EQ(m_Alg->GetActiveSetup(), ml::eSetupB);
    EXPECT_EQ(m_Alg->Value(0, ml::eSetupA), 1.0);
    EXPECT_EQ(m_Alg->Value(0, ml::eSetupB), 3.0);

    // A MIDI map moves no parameter: its controls and the MIDI hook only.
    m_Alg->m_Hooks.clear();
    const std::vector<double> before = Values();
    EXPECT_EQ(m_Alg->LoadFromPreset(Parsed(Preset("Map [MIDI]", "9 9 9 9 9")), true), 0);
    EXPECT_EQ(Values(), before);
    EXPECT_EQ(m_Alg->m_Hooks, (std::vector<std::string>{"ShouldClear", "PreLoad", "LoadMidi"}));
}

TEST_F(PresetsManager, WhatAPresetReachesDependsOnWhereItCameFrom) {
    struct WSCase {
        const char *what;
        const char *values;
        EPresetSection section;
        std::vector<double> expected;
    };
    // Starting from the default: -6 40 1 2 8.
    const WSCase cases[] = {
        {"a file keeps host-only and never-read values",
         "1 2 9 9 9",
         ePresetSectionExternalFile,
         {1, 2, 1, 2, 9}},
        {"a host chunk sets host-only values",
         "1 2 9 9 9",
         ePresetSectionHostPresetChunk,
         {1, 2, 9, 2, 9}},
        {"an old preset's missing values take their defaults",
         "4",
         ePresetSectionExternalFile,
         {4, 50, 1, 2, 3}},
        {"the default file sets host-only values", "4 5 6", ePresetSectionStartup, {4, 5, 6, 2, 3}},
    };
    for (const WSCase &c : cases) {
        CPresetInfo info = Parsed(Preset("P", c.values));
        info.m_Section = c.section;
        m_Alg->UpdateParamRealWorld(2, 1.0);
        ASSERT_EQ(m_Alg->LoadFromPreset(info, true), 0) << c.what;
        EXPECT_EQ(Values(), c.expected) << c.what;
    }
}

TEST_F(PresetsManager, FactoryUserAndExternalPresetsLoadAndSaveInTheirSections) {
    ASSERT_EQ(m_Alg->LoadFactoryPresetToPluginByName("Warm"), 0);
    EXPECT_EQ(m_Alg->GetCurrentPresetInfo().m_Section, ePresetSectionFactory);
    EXPECT_FALSE(Manager().FindChangedPreset(Public()));
    m_Alg->UpdateParamRealWorld(1, 65.0);
    EXPECT_TRUE(Manager().FindChangedPreset(Public()));

    ASSERT_EQ(Manager().SaveMenu_SaveAsUserMenuPreset(Public(), "Mine"), 0);
    m_Alg->UpdateParamRealWorld(1, 10.0);
    ASSERT_EQ(Manager().LoadUserMenuPresetToPluginByName(Public(), "Mine"), 0);
    EXPECT_EQ(m_Alg->Value(1), 65.0);
    EXPECT_EQ(m_Alg->GetCurrentPresetInfo().m_Section, ePresetSectionUser);

    // A file saved into the user folder joins the user section under its file's name.
    const fs::path folder = m_Home.path() / ".local/share/Mirel Audio/Presets/Gain User Presets";
    ASSERT_EQ(Manager().SavePresetFromRedis(Public(), "Live/Stage"), 0);
    EXPECT_TRUE(fs::is_regular_file(folder / "Live/Stage.xps"));
    std::vector<std::string> user;
    for (const auto &info : Manager().GetUserMenuPresets())
        user.push_back(info->m_PresetName.c_str());
    EXPECT_EQ(user, (std::vector<std::string>{"Mine", "Stage"}));

    // An external file of one preset shows, and loads, under the file's name.
    const fs::path external = m_Home.path() / "Elsewhere.xps";
    m_Alg->UpdateParamRealWorld(0, 5.0);
    ASSERT_EQ(Manager().SaveMenu_SaveToNewFile(Public(), ml::FM::WCStPath(external.string()), "X"),
              0);
    EXPECT_NE(Manager().SaveMenu_SaveToNewFile(Public(), ml::FM::WCStPath(external.string())), 0);
    m_Alg->UpdateParamRealWorld(0, 0.0);
    ASSERT_EQ(
        Manager().UserExternalPresetFile_Open(Public(), ml::FM::WCStPath(external.string()), true),
        0);
    EXPECT_STREQ(Manager().GetUserExternalPresets().front()->m_PresetName.c_str(), "Elsewhere");
    EXPECT_EQ(m_Alg->Value(0), 5.0);
    EXPECT_EQ(m_Alg->GetCurrentPresetInfo().m_Section, ePresetSectionExternalFile);

    // A host session restores the state on its own thread; the external file it names reopens
    // on the main thread's next idle tick.
    ml::Utils::WCStMemObj chunk;
    ASSERT_EQ(m_Alg->GetChunk(ml::WCFourCC("XPst"), chunk, true), 0);
    WCPresetsPlugin *restored = Start();
    ASSERT_EQ(restored->SetChunk(ml::WCFourCC("XPst"), chunk), 0);
    EXPECT_EQ(restored->Value(0), 5.0);
    EXPECT_TRUE(restored->GetPresetsManager()->GetUserExternalPresets().empty());
    restored->DoIdle(0);
    EXPECT_EQ(restored->GetPresetsManager()->GetUserExternalPresets().size(), 1u);
    EXPECT_EQ(restored->GetPresetsManager()->GetUserMenuPresets().size(), 2u);
    Stop(restored);
}

TEST_F(PresetsManager, NextAndPreviousWrapAndSkipTitlesAndSeparators) {
    struct WSStep {
        bool next;
        const char *expected;
    };
    // From "Default": the list is Default, [Mixing], Warm, [separator], Bright.
    const WSStep steps[] = {
        {true, "Warm"}, {true, "Bright"}, {true, "Default"}, {false, "Bright"}, {false, "Warm"}};
    for (const WSStep &step : steps) {
        ASSERT_EQ(Manager().LoadPresetFromCurrentPresetSection(Public(), step.next), 0);
        EXPECT_STREQ(m_Alg->GetCurrentPresetInfo().m_PresetName.c_str(), step.expected);
    }
    EXPECT_EQ(m_Alg->Value(0), -3.0);
}

TEST_F(PresetsManager, AReadOnlyUserFolderOrFileRefusesTheSaveAndLosesNoPreset) {
    ASSERT_EQ(Manager().SaveMenu_SaveAsUserMenuPreset(Public(), "Mine"), 0);
    const fs::path file = Settings(" Settings.xps");
    const std::string before = FileText(file);
    for (const fs::path &locked : {file.parent_path(), file}) {
        SCOPED_TRACE(locked);
        fs::permissions(locked, fs::perms(0555));
        // Root writes anywhere: the save runs in a child that gave up that right.
        const pid_t child = fork();
        if (child == 0) {
            _exit(mirel_test::DropFilePermissionOverrides()
                      ? Manager().SaveMenu_SaveAsUserMenuPreset(Public(), "Other") ==
                                ml::ePresetLockedProblem
                            ? 0
                            : 1
                      : 3);
        }
        int status = -1;
        waitpid(child, &status, 0);
        fs::permissions(locked, fs::perms(0755));
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        EXPECT_EQ(FileText(file), before);
    }
    ASSERT_EQ(Manager().UserMenuPresets_LoadPresets(Public()), 0);
    ASSERT_EQ(Manager().GetUserMenuPresets().size(), 1u);
    EXPECT_STREQ(Manager().GetUserMenuPresets().front()->m_PresetName.c_str(), "Mine");
}

TEST_F(PresetsManager, InstalledPresetsAreDynamicFactoryPresetsInListOrder) {
    const fs::path folder = m_Home.path() / "usr/share/Mirel Audio/Gain/Presets";
    WriteText(folder / "Drums.xps", "<PresetXMLTree>" + Preset("Kick", "1") + "</PresetXMLTree>");
    WriteText(folder / "Bass.xps",
              "<PresetXMLTree>" + Preset("Sub", "2") + Preset("Sub", "3") + "</PresetXMLTree>");
    WriteText(folder / "Broken.xps", "<PresetXMLTree><Preset Name=");
    WriteText(folder / "List Order.txt", "List Order: [Drums.xps, Bass.xps]\n");
    ASSERT_EQ(Manager().ScanForDynamicFactoryPresets(Public()), 0);
    std::vector<std::string> names;
    for (const auto &info : Manager().GetDynamicFactoryPresets())
        names.push_back(std::string(info->m_PresetName.c_str()) + (info->IsDisabled() ? "-" : ""));
    // A broken file hides nothing else; a duplicate within a file is listed disabled.
    EXPECT_EQ(names, (std::vector<std::string>{"Kick", "Sub", "Sub-"}));
    EXPECT_EQ(Manager().GetDynamicFactoryGroups().size(), 2u);
    ASSERT_EQ(Manager().LoadFactoryPresetToPluginByName(Public(), "Sub"), 0);
    EXPECT_EQ(m_Alg->Value(0), 2.0);
    EXPECT_EQ(m_Alg->GetCurrentPresetInfo().m_Section, ePresetSectionDynamicFactory);
}

// Run under ThreadSanitizer by the test script: the host saves and restores chunks on its
// thread while the main thread loads presets and ticks.
TEST_F(PresetsManager, HostChunksOnTheirThreadMeetMainThreadLoadsSafely) {
    ml::Utils::WCStMemObj chunk;
    ASSERT_EQ(m_Alg->GetChunk(ml::WCFourCC("XPst"), chunk, true), 0);
    std::thread host([&] {
        for (int i = 0; i < 40; ++i) {
            ml::Utils::WCStMemObj saved;
            EXPECT_EQ(m_Alg->SetChunk(ml::WCFourCC("XPst"), chunk), 0);
            EXPECT_EQ(m_Alg->GetChunk(ml::WCFourCC("XPst"), saved, true), 0);
        }
    });
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(Manager().LoadPresetFromCurrentPresetSection(Public(), true), 0);
        m_Alg->ToggleActiveSetup(ml::eCurrentSetup);
        m_Alg->DoIdle(0);
    }
    host.join();
}

TEST(PresetsManagerNames, CountersCountOnAndNamesStayUnique) {
    const std::pair<const char *, const char *> cases[] = {
        {"Name", "Name 1"}, {"Name 7", "Name 8"}, {"Take 09", "Take 10"}, {"99", "100"}};
    for (const auto &[from, to] : cases) {
        ml::WCFixedString<63> name(from);
        CPresetsManager::IncrementNameCounter(name);
        EXPECT_STREQ(name.c_str(), to) << from;
    }
    WTPresetList list;
    for (const char *taken : {"Untitled Preset", "Untitled Preset 1"}) {
        list.push_back(std::make_unique<CPresetInfo>());
        list.back()->m_PresetName = taken;
    }
    ml::WCFixedString<63> name;
    CPresetsManager::CreateNextUniqueName("", list, name);
    EXPECT_STREQ(name.c_str(), "Untitled Preset 2");
}

} // namespace
