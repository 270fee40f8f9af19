#include "Code/Algorithm/WCAlgorithmBroadcaster.h"

#include <array>
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
using ShellListener = WCStartedAlgorithm;

TEST_F(ShellListener, PresetEventsBecomeOperation36UntilTheAlgorithmIsDisposed) {
    m_Shell.ClearLog();
    ml::Preset::CPresetInfo info;
    info.m_Section = ml::Preset::ePresetSectionFactory;
    info.m_IndexInList = 4;
    m_Alg->Broadcaster()->PresetLoaded(info);
    info.m_Section = ml::Preset::ePresetSectionUser;
    m_Alg->Broadcaster()->PresetLoaded(info);
    m_Alg->Broadcaster()->PresetModified(ml::eSetupA);
    m_Alg->Broadcaster()->SetupTitleChanged(ml::eSetupB, ml::WCFixedString<15>("B"));
    m_Alg->Broadcaster()->ActiveSetupChanged(ml::eSetupB);
    m_Alg->Broadcaster()->ActiveSideChainChanged(true);
    // Loaded (a factory preset with its number, any other -1), modified, title; nothing else.
    std::vector<std::array<std::int64_t, 3>> calls;
    for (auto const &call : m_Shell.Calls())
        calls.push_back({call.op, call.arg1, call.arg2});
    EXPECT_EQ(calls, (decltype(calls){{36, 4, 0}, {36, -1, 0}, {36, -1, 1}, {36, -1, 2}}));
    m_Shell.ClearLog();
    m_Alg->Dispose();
    m_Alg->Broadcaster()->PresetModified(ml::eSetupA);
    EXPECT_TRUE(m_Shell.Calls().empty()) << "a disposed algorithm no longer tells the shell";
}

} // namespace
