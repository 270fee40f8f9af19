// The ports an LV2 host sees of a plug-in, laid out from the started algorithm, and the channels
// run() interleaves for the audio code and back.

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "hosts/lv2/WCLV2Plugin.h"
#include "hosts/lv2/WCLV2PortLayout.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;
using mirel_lv2::WCLV2PortLayout;
using mirel_lv2::WSLV2Port;

class WCDelayAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        const char *xml = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
          <Minimum>-24</Minimum><Maximum>12</Maximum></Scale></Parameter></ParamXML>)";
        return out.Assign(xml, std::strlen(xml));
    }
};

TEST(LV2PortLayout, AudioPortsComeFirstAndALatencyPortOnlyWithADelay) {
    ml::MirelComponentInfo info;
    ml::WTResContainerType *container = nullptr;
    WCDelayAlgorithm alg(info, container);
    ASSERT_EQ(alg.FinishCreate(), 0);
    WCLV2PortLayout layout;
    ASSERT_EQ(layout.Build(&alg, 1, 2), 0);
    ASSERT_GE(layout.Ports().size(), 3u);
    EXPECT_EQ(layout.Ports()[0].symbol, "in1");
    EXPECT_EQ(layout.Ports()[2].symbol, "out2");
    for (WSLV2Port const &port : layout.Ports())
        EXPECT_NE(port.kind, WSLV2Port::eLatency);

    alg.SetDelay(32);
    ASSERT_EQ(layout.Build(&alg, 1, 2), 0);
    WSLV2Port const &latency = layout.Ports().back();
    EXPECT_EQ(latency.kind, WSLV2Port::eLatency);
    EXPECT_EQ(latency.symbol, "latency");
    EXPECT_EQ(latency.index, layout.Ports().size() - 1);
    EXPECT_EQ(latency.value, 32.0);
    EXPECT_EQ(layout.Build(nullptr, 1, 2), ml::eMemNullPointer);
}

TEST(LV2PortLayout, SymbolsAreLowerCaseWordsThatStartWithNoDigit) {
    const struct {
        char const *name;
        char const *symbol;
    } cases[] = {{"Gain", "gain"},
                 {"Trim 1", "trim_1"},
                 {"2nd Stage", "_2nd_stage"},
                 {"", "_"},
                 {"Hi-Cut (Hz)", "hi_cut__hz_"}};
    for (auto const &c : cases)
        EXPECT_EQ(WCLV2PortLayout::Symbol(c.name), c.symbol) << c.name;
}

TEST(LV2Channels, InterleaveAndBackKeepEveryFrameOfEveryChannel) {
    // Channel counts with and without a fast path, frame counts with and without a tail.
    for (int count : {1, 2, 3}) {
        for (std::uint32_t frames : {0u, 3u, 8u, 13u}) {
            std::vector<std::vector<float>> in(count, std::vector<float>(frames));
            std::vector<float const *> inPointers;
            for (int c = 0; c < count; ++c) {
                for (std::uint32_t i = 0; i < frames; ++i)
                    in[c][i] = static_cast<float>(100 * c + i);
                inPointers.push_back(in[c].data());
            }
            std::vector<float> interleaved(count * frames + 1, -1.0f);
            mirel_lv2::WCLV2Plugin::Interleave(inPointers.data(), count, frames,
                                               interleaved.data());
            for (std::uint32_t i = 0; i < frames * count; ++i)
                ASSERT_EQ(interleaved[i], 100 * (i % count) + i / count) << count << " " << i;
            EXPECT_EQ(interleaved.back(), -1.0f) << "nothing written past the block";

            std::vector<std::vector<float>> out(count, std::vector<float>(frames + 1, -1.0f));
            std::vector<float *> outPointers;
            for (auto &channel : out)
                outPointers.push_back(channel.data());
            mirel_lv2::WCLV2Plugin::Deinterleave(interleaved.data(), count, frames,
                                                 outPointers.data());
            for (int c = 0; c < count; ++c) {
                EXPECT_EQ(std::vector<float>(out[c].begin(), out[c].end() - 1), in[c]);
                EXPECT_EQ(out[c].back(), -1.0f);
            }
        }
    }
}

TEST(LV2Channels, AnUnconnectedOutputIsLeftOut) {
    const float interleaved[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    std::vector<float> right(5, 0.0f);
    float *channels[] = {nullptr, right.data()};
    mirel_lv2::WCLV2Plugin::Deinterleave(interleaved, 2, 5, channels);
    EXPECT_EQ(right, (std::vector<float>{2, 4, 6, 8, 10}));
}

} // namespace
