#include "Code/Algorithm/WCAlgorithmBroadcaster.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Code/Algorithm/WCTestAlgorithm.h"

namespace {

using namespace mirel_test;

class WCLoggingListener : public ml::WCAlgorithmListener {
public:
    WCLoggingListener(std::vector<std::string> &log, char const *name) : m_log(log), m_name(name) {}
    void PresetModified(ml::EPluginSetup setup) override {
        m_log.push_back(m_name + " modified " + std::to_string(setup));
    }
    void ActiveSideChainChanged(bool active) override {
        m_log.push_back(m_name + (active ? " side on" : " side off"));
    }

private:
    std::vector<std::string> &m_log;
    std::string m_name;
};

TEST(WCAlgorithmBroadcaster, ForwardsToEveryListenerInInsertionOrderOnce) {
    std::vector<std::string> log;
    WCLoggingListener first(log, "first"), second(log, "second");
    ml::WCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&first);
    broadcaster.insert(&second);
    broadcaster.insert(&first);
    broadcaster.insert(nullptr);
    EXPECT_EQ(broadcaster.size(), 2u);
    broadcaster.PresetModified(ml::eSetupB);
    broadcaster.ActiveSideChainChanged(true);
    EXPECT_EQ(log, (std::vector<std::string>{"first modified 1", "second modified 1",
                                             "first side on", "second side on"}));
    broadcaster.remove(&first);
    log.clear();
    broadcaster.ActiveSideChainChanged(false);
    EXPECT_EQ(log, (std::vector<std::string>{"second side off"}));
}

TEST(WCAlgorithmBroadcaster, ListenerMayRemoveItselfWhileBeingTold) {
    struct WCLeaving : ml::WCAlgorithmListener {
        ml::WCAlgorithmBroadcaster *from = nullptr;
        int told = 0;
        void ActiveSetupChanged(ml::EPluginSetup) override {
            ++told;
            from->remove(this);
        }
    } a, b;
    ml::WCAlgorithmBroadcaster broadcaster;
    a.from = b.from = &broadcaster;
    broadcaster.insert(&a);
    broadcaster.insert(&b);
    broadcaster.ActiveSetupChanged(ml::eSetupA);
    EXPECT_EQ(a.told, 1);
    EXPECT_EQ(b.told, 1);
    EXPECT_EQ(broadcaster.size(), 0u);
}

// The shell listener of a running algorithm turns preset events into exec operation 36.
class ShellListener : public WCStartedAlgorithm {
protected:
    void SetUp() override {
        WCStartedAlgorithm::SetUp();
        m_Shell.ClearLog();
    }
    std::vector<mirel_shell::WSExecCall> const &Calls() { return m_Shell.Calls(); }
};

TEST_F(ShellListener, FactoryPresetLoadedCarriesItsNumber) {
    ml::Preset::CPresetInfo info;
    info.m_Section = ml::Preset::ePresetSectionFactory;
    info.m_IndexInList = 4;
    m_Alg->Broadcaster()->PresetLoaded(info);
    info.m_Section = ml::Preset::ePresetSectionUser;
    m_Alg->Broadcaster()->PresetLoaded(info);
    ASSERT_EQ(Calls().size(), 2u);
    EXPECT_EQ(Calls()[0].op, 36);
    EXPECT_EQ(Calls()[0].arg1, 4);
    EXPECT_EQ(Calls()[0].arg2, 0);
    EXPECT_EQ(Calls()[1].arg1, -1) << "not a factory preset";
}

TEST_F(ShellListener, ModifiedAndTitleEventsAndNothingElse) {
    m_Alg->Broadcaster()->PresetModified(ml::eSetupA);
    m_Alg->Broadcaster()->SetupTitleChanged(ml::eSetupB, ml::WCFixedString<15>("B"));
    m_Alg->Broadcaster()->ActiveSetupChanged(ml::eSetupB);
    m_Alg->Broadcaster()->ActiveSideChainChanged(true);
    ASSERT_EQ(Calls().size(), 2u);
    EXPECT_EQ(Calls()[0].arg1, -1);
    EXPECT_EQ(Calls()[0].arg2, 1);
    EXPECT_EQ(Calls()[1].arg1, -1);
    EXPECT_EQ(Calls()[1].arg2, 2);
}

TEST_F(ShellListener, DisposedAlgorithmNoLongerTellsTheShell) {
    m_Alg->Dispose();
    m_Alg->Broadcaster()->PresetModified(ml::eSetupA);
    EXPECT_TRUE(Calls().empty());
}

} // namespace
