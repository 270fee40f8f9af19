// A value change runs during drags and automation, so the update pipeline and the idle refresh
// that follows it allocate nothing on the library's side.

#include <cstring>

#include <gtest/gtest.h>

#include "core/WCStMemObj.h"
#include "tests/support/WCCountingAllocator.h"
#include "tests/support/WCSilentAlgorithm.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

const char *kParamXML = R"(<ParamXML><Parameter Name="Gain"><Scale><ScaleType Type="linear"/>
  <Minimum>-24</Minimum><Maximum>12</Maximum><Resolution>0.1</Resolution></Scale>
  <Flags><Drag value="true"/></Flags><DisplayFunction>DisplayGainWithDB</DisplayFunction>
  </Parameter></ParamXML>)";

class WCOneParamAlgorithm : public mirel_test::WCSilentAlgorithm {
public:
    using WCSilentAlgorithm::WCSilentAlgorithm;

protected:
    int ReadParamXML(ml::Utils::WCStMemObj &out) const override {
        return out.Assign(kParamXML, std::strlen(kParamXML));
    }
};

TEST(UpdatePipelineAllocations, ChangesAndTheirDisplayAllocateNothing) {
    ml::MirelComponentInfo info;
    ml::WTResContainerType *container = nullptr;
    WCOneParamAlgorithm alg(info, container);
    ASSERT_EQ(alg.FinishCreate(), 0);
    ASSERT_EQ(alg.GetNumParams(), 1u);
    ml::cALGORITHM::ETranslateTextRetType ret{};
    const long count = mirel_test::CountAllocations([&] {
        for (int step = 0; step < 100; ++step) {
            alg.UpdateParamRequestState(0, 10.0 * step);
            alg.DragParam(0, 5.0 * step);
            alg.FinishDragParam(0);
            alg.UpdateParamRequestRealWorld(0, -0.1 * step);
            alg.UpdateParamFromText(0, "-6 dB", ret);
            alg.DoIdle(0);
        }
    });
    EXPECT_EQ(count, 0);
    EXPECT_STREQ(alg.GetParam(0)->GetValueString().c_str(), "-6.0 dB");
}

} // namespace
