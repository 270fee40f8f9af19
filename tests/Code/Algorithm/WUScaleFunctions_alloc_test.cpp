// Counts the global allocator's calls (mirel_counting_allocator), so it is a program of its own.
#include <gtest/gtest.h>

#include "Code/Algorithm/WCParam_Base.h"
#include "Code/Algorithm/WUDisplayFunctions.h"
#include "tests/support/WCCountingAllocator.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

TEST(ScaleFunctions, AllocateNothingOnTheUpdatePath) {
    const char *types[] = {
        "linear",       "logarithmic", "toggle", "linearRanges", "linearRangesWithRounding",
        "toggleRanges", "toggleMap",   "STDFreq"};
    ml::WTDisplayFunctionsMap map;
    ml::DisplayFunctions::AddBuiltIns(map);
    for (const char *type : types) {
        for (double res : {0.1, 1.0, 10.0}) {
            ml::WCParam_Base param;
            param.SetScale(20, 20000, res, 0, 0, type, nullptr, nullptr, {20, 200, 2000, 20000},
                           {0, 250, 750, 1000});
            param.SetDisplayFunction(map[ml::WTParamMapKey("DisplayFloat1WithHz")]);
            const mirel_test::WCAllocationCounter counter;
            double sink = 0;
            for (int state = 0; state <= 1000; state += 7) {
                const double rw = param.StateToRealWorld(param.QuantizeState(state));
                sink += param.RealWorldToState(rw);
                param.SetStateValue(0, state);
                param.UpdateRealWorldFromState(0);
                param.UpdateStateFromRealWorld(0);
                param.UpdateValueString(0);
            }
            const long allocations = counter.OnAllThreads();
            EXPECT_EQ(allocations, 0) << type << " res " << res;
            EXPECT_GE(sink, 0.0);
        }
    }
}

} // namespace
