// The ports an LV2 host sees of a plug-in, laid out from the started algorithm.

#include <gtest/gtest.h>

#include <cstring>

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

} // namespace
