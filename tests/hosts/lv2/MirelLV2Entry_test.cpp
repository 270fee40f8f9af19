// The wrapper as an LV2 host loads it: its library descriptor from the example's LV2 bundle,
// an instance at 48 kHz, ports connected as the bundle's description numbers them.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <lv2/core/lv2.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

// The example's port indices, as tests/hosts/lv2's lv2info check pins them.
enum : std::uint32_t { kIn1 = 0, kIn2, kOut1, kOut2, kGain, kCutoff, kFilter, kOutputMeter = 11 };
constexpr std::uint32_t kPorts = 12;
constexpr std::uint32_t kFrames = 600; // more than one of the wrapper's interleaved chunks

class LV2Wrapper : public ::testing::Test {
protected:
    void SetUp() override {
        m_Library = dlopen(MIREL_LV2_BUNDLE "/mirel_lv2.so", RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(m_Library, nullptr) << dlerror();
        m_GetLib = reinterpret_cast<LV2_Lib_Descriptor_Function>(
            dlsym(m_Library, "lv2_lib_descriptor"));
        ASSERT_NE(m_GetLib, nullptr);
        m_Lib = m_GetLib(MIREL_LV2_BUNDLE "/", nullptr);
        ASSERT_NE(m_Lib, nullptr);
        m_Plugin = m_Lib->get_plugin(m_Lib->handle, 0);
        ASSERT_NE(m_Plugin, nullptr);
        m_Instance = m_Plugin->instantiate(m_Plugin, 48000.0, MIREL_LV2_BUNDLE "/", nullptr);
        ASSERT_NE(m_Instance, nullptr);
        m_In.assign(kFrames, 0.5f);
        m_Out[0].assign(kFrames, 0.0f);
        m_Out[1].assign(kFrames, 0.0f);
        m_Controls = {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1000.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f};
        for (std::uint32_t port = kGain; port < kPorts; ++port)
            m_Plugin->connect_port(m_Instance, port, &m_Controls[port]);
        m_Plugin->connect_port(m_Instance, kIn1, m_In.data());
        m_Plugin->connect_port(m_Instance, kIn2, m_In.data());
        m_Plugin->connect_port(m_Instance, kOut1, m_Out[0].data());
        m_Plugin->connect_port(m_Instance, kOut2, m_Out[1].data());
    }
    void TearDown() override {
        if (m_Instance != nullptr)
            m_Plugin->cleanup(m_Instance);
        if (m_Lib != nullptr)
            m_Lib->cleanup(m_Lib->handle);
        if (m_Library != nullptr)
            dlclose(m_Library);
    }

    void *m_Library = nullptr;
    LV2_Lib_Descriptor_Function m_GetLib = nullptr;
    LV2_Lib_Descriptor const *m_Lib = nullptr;
    LV2_Descriptor const *m_Plugin = nullptr;
    LV2_Handle m_Instance = nullptr;
    std::vector<float> m_In;
    std::array<std::vector<float>, 2> m_Out;
    std::array<float, kPorts> m_Controls{};
};

TEST_F(LV2Wrapper, AppliesAControlChangedBetweenBlocks) {
    // With the filter off the output is the input times the gain.
    m_Plugin->run(m_Instance, kFrames);
    EXPECT_FLOAT_EQ(m_Out[0][kFrames - 1], 0.5f);
    m_Controls[kGain] = -6.0f;
    m_Plugin->run(m_Instance, kFrames);
    EXPECT_NEAR(m_Out[0][0], 0.5 * std::pow(10.0, -6.0 / 20.0), 1e-6);
    EXPECT_NEAR(m_Out[1][kFrames - 1], 0.5 * std::pow(10.0, -6.0 / 20.0), 1e-6);
}

TEST_F(LV2Wrapper, MetersTheOutputPeakInDecibels) {
    m_Plugin->run(m_Instance, kFrames);
    EXPECT_NEAR(m_Controls[kOutputMeter], 20.0 * std::log10(0.5), 0.1);
}

TEST_F(LV2Wrapper, DescribesNoPluginForAFolderThatIsNoLV2Bundle) {
    EXPECT_EQ(m_GetLib("/tmp/GainFilter/", nullptr), nullptr);
}

} // namespace
