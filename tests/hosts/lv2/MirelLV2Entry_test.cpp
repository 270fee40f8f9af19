// The wrapper as LV2 hosts load it: the example's LV2 bundle, an instance at 48 kHz with each
// kind of worker a host may offer, ports numbered as the bundle's description numbers them.

#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <string>
#include <vector>

#include "tests/support/WCLV2TestHost.h"

namespace {

using mirel_test::WCLV2TestHost;

// The example's control ports, as tests/hosts/lv2's lv2info check pins them.
enum : std::uint32_t { kGain = 4, kCutoff, kFilter, kSlope, kTrim1, kTrim2, kMode, kOutputMeter };
// Their defaults, the filter off so that the output is the input times the gain.
const std::vector<float> kControls = {0.0f, 1000.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, -60.0f};
constexpr std::uint32_t kFrames = 600; // more than one of the wrapper's interleaved chunks

double Decibels(double db) {
    return std::pow(10.0, db / 20.0);
}

std::string Open(WCLV2TestHost &host, WCLV2TestHost::EWorker worker) {
    return host.Open(MIREL_LV2_BUNDLE, "mirel_lv2.so", 48000.0, 2, 2, kControls, worker);
}

// A block of the same input, then the work it handed over: a change made before it has reached
// the audio code by the end of the next block, whatever the worker.
void Block(WCLV2TestHost &host, float level) {
    for (int channel = 0; channel < 2; ++channel)
        std::fill_n(host.In(channel).begin(), kFrames, level);
    host.Run(kFrames);
    host.DoWork();
}

class LV2Workers : public ::testing::TestWithParam<WCLV2TestHost::EWorker> {};

std::string WorkerName(::testing::TestParamInfo<WCLV2TestHost::EWorker> const &info) {
    static char const *const names[] = {"NoWorker", "BetweenBlocks", "WorkerThread"};
    return names[info.param];
}

INSTANTIATE_TEST_SUITE_P(Hosts, LV2Workers,
                         ::testing::Values(WCLV2TestHost::eNone, WCLV2TestHost::eBetweenBlocks,
                                           WCLV2TestHost::eThread),
                         WorkerName);

TEST_P(LV2Workers, AppliesAControlChangedBetweenBlocks) {
    WCLV2TestHost host;
    ASSERT_EQ(Open(host, GetParam()), "");
    Block(host, 0.5f);
    EXPECT_FLOAT_EQ(host.Out(0)[kFrames - 1], 0.5f);
    host.Control(kGain) = -6.0f;
    Block(host, 0.5f);
    Block(host, 0.5f);
    EXPECT_NEAR(host.Out(0)[0], 0.5 * Decibels(-6.0), 1e-6);
    EXPECT_NEAR(host.Out(1)[kFrames - 1], 0.5 * Decibels(-6.0), 1e-6);
}

TEST_P(LV2Workers, MetersTheOutputPeakInDecibels) {
    WCLV2TestHost host;
    ASSERT_EQ(Open(host, GetParam()), "");
    for (int i = 0; i < 8; ++i)
        Block(host, 0.5f);
    EXPECT_NEAR(host.Control(kOutputMeter), 20.0 * std::log10(0.5), 0.1);
}

// Two tones, so that the cutoff and the slope shape what comes out.
void Tones(WCLV2TestHost &host, std::uint32_t start) {
    for (int channel = 0; channel < 2; ++channel) {
        for (std::uint32_t i = 0; i < kFrames; ++i) {
            const double t = (start + i) / 48000.0;
            host.In(channel)[i] = static_cast<float>(0.3 * std::sin(2 * M_PI * 100 * t) +
                                                     0.3 * std::sin(2 * M_PI * 10000 * t));
        }
    }
}

// What `host` makes of the same tones after the same settling silence.
std::vector<float> Response(WCLV2TestHost &host) {
    for (int i = 0; i < 16; ++i)
        Block(host, 0.0f);
    std::vector<float> out;
    for (std::uint32_t block = 0; block < 4; ++block) {
        Tones(host, block * kFrames);
        host.Run(kFrames);
        out.insert(out.end(), host.Out(0).begin(), host.Out(0).begin() + kFrames);
        out.insert(out.end(), host.Out(1).begin(), host.Out(1).begin() + kFrames);
    }
    return out;
}

void ExpectSameSignal(std::vector<float> const &a, std::vector<float> const &b) {
    ASSERT_EQ(a.size(), b.size());
    double worst = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        worst = std::max(worst, std::fabs(double(a[i]) - b[i]));
    EXPECT_LT(worst, 1e-6);
}

class LV2State : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(Open(m_Saved, WCLV2TestHost::eThread), "");
        m_Saved.Control(kGain) = -6.0f;
        m_Saved.Control(kCutoff) = 500.0f;
        m_Saved.Control(kFilter) = 1.0f;
        m_Saved.Control(kSlope) = 1.0f;
        m_Saved.Control(kMode) = 2.0f;
        ASSERT_EQ(m_Saved.Save(m_State), LV2_STATE_SUCCESS); // before the changes: defaults
        m_Defaults = m_State;
        Block(m_Saved, 0.0f);
        Block(m_Saved, 0.0f);
        ASSERT_EQ(m_Saved.Save(m_State), LV2_STATE_SUCCESS);
        ASSERT_EQ(m_State.size(), 1u);
    }

    WCLV2TestHost m_Saved;
    WCLV2TestHost::WTState m_State;
    WCLV2TestHost::WTState m_Defaults;
};

TEST_F(LV2State, RestoredIntoAFreshInstanceGivesTheSameOutput) {
    // The fresh instance's ports stay at their defaults: the state alone carries the settings.
    WCLV2TestHost fresh;
    ASSERT_EQ(Open(fresh, WCLV2TestHost::eThread), "");
    ASSERT_EQ(fresh.Restore(m_State), LV2_STATE_SUCCESS);
    const std::vector<float> expected = Response(m_Saved);
    ExpectSameSignal(Response(fresh), expected);
    // And the settings matter: the defaults sound otherwise.
    WCLV2TestHost plain;
    ASSERT_EQ(Open(plain, WCLV2TestHost::eThread), "");
    ASSERT_EQ(plain.Restore(m_Defaults), LV2_STATE_SUCCESS);
    EXPECT_NE(Response(plain), expected);
}

TEST_F(LV2State, BothSetupsSurviveASession) {
    // The ports drive the active setup only; the other one travels in the state alone.
    std::vector<char> &bytes = m_State.begin()->second.second;
    std::string text(bytes.begin(), bytes.end());
    const std::regex other(R"((Setup="SETUP_B"[^>]*>\s*<Parameters Type="RealWorld">)\S+)");
    ASSERT_TRUE(std::regex_search(text, other));
    text = std::regex_replace(text, other, "$1-12");
    bytes.assign(text.begin(), text.end());
    WCLV2TestHost fresh;
    ASSERT_EQ(Open(fresh, WCLV2TestHost::eNone), "");
    ASSERT_EQ(fresh.Restore(m_State), LV2_STATE_SUCCESS);
    WCLV2TestHost::WTState again;
    ASSERT_EQ(fresh.Save(again), LV2_STATE_SUCCESS);
    std::vector<char> const &saved = again.begin()->second.second;
    std::smatch match;
    const std::string savedText(saved.begin(), saved.end());
    ASSERT_TRUE(std::regex_search(savedText, match, other));
    EXPECT_TRUE(match.str().ends_with(">-12")) << savedText;
}

TEST_F(LV2State, AControlMovedAfterARestoreWins) {
    WCLV2TestHost fresh;
    ASSERT_EQ(Open(fresh, WCLV2TestHost::eNone), "");
    ASSERT_EQ(fresh.Restore(m_State), LV2_STATE_SUCCESS);
    fresh.Control(kFilter) = 1.0f;
    fresh.Control(kGain) = 6.0f;
    m_Saved.Control(kGain) = 6.0f;
    ExpectSameSignal(Response(fresh), Response(m_Saved));
}

TEST_F(LV2State, ABrokenStateIsRefusedAndChangesNothing) {
    const LV2_URID key = m_State.begin()->first;
    const LV2_URID chunk = m_State.begin()->second.first;
    std::vector<char> const &good = m_State.begin()->second.second;
    const struct {
        char const *what;
        LV2_URID type;
        std::vector<char> bytes;
        LV2_State_Status expected;
    } broken[] = {
        {"not a chunk of the plug-in",
         chunk,
         {'n', 'o', 'i', 's', 'e', 0, 1, 2},
         LV2_STATE_ERR_UNKNOWN},
        {"cut in half",
         chunk,
         {good.begin(), good.begin() + good.size() / 2},
         LV2_STATE_ERR_UNKNOWN},
        {"of another type", chunk + 1000, good, LV2_STATE_ERR_BAD_TYPE},
    };
    const std::vector<float> before = Response(m_Saved);
    for (auto const &c : broken) {
        WCLV2TestHost::WTState state;
        state[key] = {c.type, c.bytes};
        EXPECT_EQ(m_Saved.Restore(state), c.expected) << c.what;
        ExpectSameSignal(Response(m_Saved), before);
    }
    EXPECT_EQ(m_Saved.Restore({}), LV2_STATE_ERR_NO_PROPERTY);
}

} // namespace
