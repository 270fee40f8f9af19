#include "Code/Algorithm/WCParam_Base.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Code/Algorithm/WUDisplayFunctions.h"
#include "Code/Algorithm/WUScaleFunctions.h"
#include "Code/Algorithm/sCONTROL_PARAM.h"

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

double TwiceState(double state, ml::sSCALE_INFO *) {
    return state * 2.0;
}
double HalfValue(double value, ml::sSCALE_INFO *) {
    return value * 0.5;
}

struct KindCase {
    const char *type;
    double res;
    ml::WTScaleFunction forward;
    ml::WTScaleFunction inverse;
};

TEST(SetScale, ChoosesTheFunctionsByTypeName) {
    const KindCase cases[] = {
        {"linear", 1.0, ml::LinearScale, ml::InverseLinearScale},
        {"linear", 10.0, ml::ExtendedResLinearScale, ml::InverseLinearScale},
        {"logarithmic", 1.0, ml::LogScale, ml::InverseLogScale},
        {"logarithmic", 2.0, ml::ExtendedResLogScale, ml::InverseLogScale},
        {"toggle", 1.0, ml::ToggleScale, nullptr},
        {"linearRanges", 1.0, ml::LinearRangesScale, ml::InverseLinearRangesScale},
        {"linearRangesWithRounding", 1.0, ml::LinearRangesScale,
         ml::InverseLinearRangesScaleWithRounding},
        {"toggleRanges", 1.0, ml::ToggleRangesScale, ml::InverseToggleRangesScale},
        {"toggleMap", 1.0, ml::ToggleMapScale, ml::InverseToggleMapScale},
        {"STDFreq", 1.0, ml::FrqScale, ml::InverseFrqScale},
    };
    for (auto const &c : cases) {
        ml::WCParam_Base param;
        param.SetScale(1, 100, c.res, 0, 0, c.type, nullptr, nullptr, {1, 2}, {0, 1000});
        EXPECT_EQ(param.GetForwardFunction(), c.forward) << c.type << " res " << c.res;
        EXPECT_EQ(param.GetInverseFunction(), c.inverse) << c.type << " res " << c.res;
    }
}

TEST(SetScale, UserKindsComeFromTheMapAndUnknownKindsFromTheCaller) {
    ml::WTScaleFunctionsMap map;
    map[ml::WCFixedString<127>("double")] = {TwiceState, HalfValue};
    ml::WCParam_Base user;
    user.SetScale(0, 1, 1, 0, 0, "double", nullptr, nullptr, {}, {}, &map);
    EXPECT_EQ(user.StateToRealWorld(21), 42);
    EXPECT_EQ(user.RealWorldToState(42), 21);

    ml::WCParam_Base given;
    given.SetScale(0, 1, 1, 0, 0, "mine", TwiceState, nullptr, {}, {}, &map);
    EXPECT_EQ(given.StateToRealWorld(3), 6);
    EXPECT_EQ(given.RealWorldToState(6), 0.0) << "a missing inverse gives 0";

    ml::WCParam_Base nothing;
    nothing.SetScale(0, 1, 1, 0, 0, "mine", nullptr, nullptr);
    EXPECT_EQ(nothing.StateToRealWorld(3), 3) << "the do-nothing forward passes the value";
}

TEST(SetScale, MapKindsCountTheirPointsAndAreDiscrete) {
    ml::WCParam_Base param;
    param.SetScale(0, 1, 0.01, 7, 0, "toggleRanges", nullptr, nullptr, {1, 2, 4});
    EXPECT_EQ(param.GetNumStates(), 3);
    EXPECT_TRUE(param.IsDiscrete());
    EXPECT_EQ(param.GetScaleInfo().resolution, 1.0);
    EXPECT_DOUBLE_EQ(param.GetStateStep(), 1.0) << "the state is an index into the points";
    EXPECT_EQ(param.StateToRealWorld(param.QuantizeState(2.2)), 4);

    ml::WCParam_Base toggle;
    toggle.SetScale(0, 3, 1, 4, 0, "toggle", nullptr, nullptr);
    EXPECT_DOUBLE_EQ(toggle.QuantizeState(2.0), 2.0);
    EXPECT_EQ(toggle.StateToRealWorld(toggle.QuantizeState(2.0)), 2);

    ml::WCParam_Base map;
    map.SetScale(0, 1, 1, 0, 0, "toggleMap", nullptr, nullptr, {10, 20, 30}, {0, 500, 1000});
    EXPECT_DOUBLE_EQ(map.GetStateStep(), 500.0) << "map states are state points on the axis";
}

TEST(SetScale, NumberOfStatesSetsTheStep) {
    ml::WCParam_Base param;
    param.SetScale(0, 2, 1, 3, 0, "linear", nullptr, nullptr);
    EXPECT_TRUE(param.IsDiscrete());
    EXPECT_DOUBLE_EQ(param.GetStateStep(), 500.0);
    EXPECT_DOUBLE_EQ(param.QuantizeState(333.4), 500.0);
    EXPECT_DOUBLE_EQ(param.QuantizeState(249.9), 0.0);
    EXPECT_DOUBLE_EQ(param.QuantizeState(1000.0), 1000.0);

    ml::WCParam_Base continuous;
    continuous.SetScale(0, 2, 1, 0, 0, "linear", nullptr, nullptr);
    EXPECT_FALSE(continuous.IsDiscrete());
    EXPECT_EQ(continuous.QuantizeState(333.4), 333.4);
}

TEST(SetScale, AbsurdNumbersNeverGiveANonFiniteValue) {
    const char *types[] = {"linear",       "logarithmic", "toggle", "linearRanges",
                           "toggleRanges", "toggleMap",   "STDFreq"};
    const double absurd[] = {kNaN, kInf, -kInf, 0.0, -1.0, 1e308, -1e308};
    for (const char *type : types) {
        for (double a : absurd) {
            for (double b : absurd) {
                ml::WCParam_Base param;
                param.SetScale(a, b, a, 3, b, type, nullptr, nullptr, {a, b}, {b, a});
                param.SetScaleDefaults(a, ml::eParamValueRealWorld, b, ml::eParamValueState);
                for (double probe : {0.0, 500.0, 1000.0, a, b}) {
                    EXPECT_TRUE(std::isfinite(param.StateToRealWorld(probe))) << type;
                    EXPECT_TRUE(std::isfinite(param.RealWorldToState(probe))) << type;
                }
                param.InitRealWorldAndUpdate(0);
                EXPECT_TRUE(std::isfinite(param.GetState(0))) << type << " " << a << " " << b;
                EXPECT_GE(param.GetState(0), 0.0);
                EXPECT_LE(param.GetState(0), 1000.0);
                EXPECT_TRUE(std::isfinite(param.GetResetValue()));
            }
        }
    }
}

TEST(SetScaleDefaults, ConvertsEachKindOfValue) {
    ml::WCParam_Base param;
    param.SetScale(0, 10, 1.0, 0, 0, "linear", nullptr, nullptr);
    param.SetScaleDefaults(3.3, ml::eParamValueRealWorld, 3.3, ml::eParamValueRealWorldExact);
    EXPECT_DOUBLE_EQ(param.GetResetValue(), 3.0) << "passed through the scale";
    EXPECT_DOUBLE_EQ(param.GetInitialValue(), 3.3) << "kept as written";
    param.SetScaleDefaults(500, ml::eParamValueState, 2000, ml::eParamValueState);
    EXPECT_DOUBLE_EQ(param.GetResetValue(), 5.0);
    EXPECT_DOUBLE_EQ(param.GetInitialValue(), 10.0) << "a state past the axis is clamped";
}

TEST(WCParam_Base, InitialValueFillsStateAndRealWorld) {
    ml::WCParam_Base param;
    param.SetScale(20, 20000, 1.0, 0, 0, "logarithmic", nullptr, nullptr);
    param.SetScaleDefaults(1000, ml::eParamValueRealWorld, 632, ml::eParamValueRealWorld);
    param.InitRealWorldAndUpdate(1);
    EXPECT_DOUBLE_EQ(param.GetRealWorld(1), 632.0);
    EXPECT_NEAR(param.GetState(1), 500.0, 0.2);
    EXPECT_EQ(param.GetState(0), 0.0) << "the other setup is untouched";
    EXPECT_EQ(param.GetUpdateFlags(), 3u);
}

TEST(DefaultMouseDelta, DependsOnAccelerationAndType) {
    ml::sCONTROL_PARAM param;
    param.SetScale(0, 1, 1, 0, 0, "linear", nullptr, nullptr);
    EXPECT_EQ(param.DefaultMouseDelta(37.0), 37.0);
    param.SetScale(0, 8, 1, 9, 0, "linear", nullptr, nullptr);
    EXPECT_EQ(param.DefaultMouseDelta(2.0), 6.0) << "times the root of nine states";
    EXPECT_EQ(param.DefaultMouseDelta(50.0), 30.0) << "clamped to 10 first";
    EXPECT_EQ(param.DefaultMouseDelta(-50.0), -30.0);
    param.m_MouseAcceleration = 0.5;
    EXPECT_EQ(param.DefaultMouseDelta(50.0), 25.0);
}

struct DisplayCase {
    const char *name;
    double realWorld;
    const char *text;
};

TEST(DisplayFunctions, BuiltInsWriteTheirExactTexts) {
    ml::WTDisplayFunctionsMap map;
    ml::DisplayFunctions::AddBuiltIns(map);
    const DisplayCase cases[] = {
        {"DisplayFloat0", 2.5, "2"},
        {"DisplayFloat1", -0.04, "0.0"},
        {"DisplayFloat2", 1.005, "1.00"},
        {"DisplayFloat3", 1.0, "1.000"},
        {"DisplayFloat4", 0.12345, "0.1235"},
        {"DisplayVuHold", -3.25, "-3.2"},
        {"DisplayVuHold", -99.9, "-Inf"},
        {"DisplayVuHold", -120, "-Inf"},
        {"DisplayOnOff", 1, "On"},
        {"DisplayOnOff", 0, "Off"},
        {"DisplayOnOff", -1, "Off"},
        {"DisplayInOut", 0.5, "In"},
        {"DisplayInOut", 0, "Out"},
        {"DisplayInOutDefaultOut", 0.7, "Out"},
        {"DisplayInOutDefaultOut", 2, "In"},
        {"DisplayInOutDefaultIn", 0, "In"},
        {"DisplayInOutDefaultIn", 1, "Out"},
        {"DisplayGainWithDB", -6.02, "-6.0 dB"},
        {"DisplayFloat0WithHz", 440.4, "440 Hz"},
        {"DisplayFloat1WithHz", 12.25, "12.2 Hz"},
        {"DisplayFloat0WithKHz", 2.4, "2 KHz"},
        {"DisplayFloat1WithKHz", 1500, "1500.0 KHz"},
        {"DisplayRatioFloat2", 4, "4.00:1"},
        {"DisplayPhaseDefaultPlus", 1, "-"},
        {"DisplayPhaseDefaultPlus", 0, "+"},
        {"DisplayNothing", 5, ""},
        {"DisplayInOutDefaultOut", kNaN, "In"},
        {"DisplayFloat1", kInf, "Inf"},
    };
    for (auto const &c : cases) {
        auto found = map.find(ml::WTParamMapKey(c.name));
        ASSERT_NE(found, map.end()) << c.name;
        ml::WCFixedString<127> out("previous");
        found->second(0.0, c.realWorld, out);
        EXPECT_STREQ(out.c_str(), c.text) << c.name << " " << c.realWorld;
    }
}

TEST(DisplayFunctions, TheSameKeepsTheTextAndRealWorldStringIndexesTheTable) {
    ml::WTDisplayFunctionsMap map;
    ml::DisplayFunctions::AddBuiltIns(map);
    ml::WCFixedString<127> out("typed by hand");
    map[ml::WTParamMapKey("DisplayTheSame")](0, 3, out);
    EXPECT_STREQ(out.c_str(), "typed by hand");

    auto table = ml::DisplayFunctions::MakeRealWorldString(
        {ml::WCFixedString<127>("Low"), ml::WCFixedString<127>("High")});
    table(0, 1, out);
    EXPECT_STREQ(out.c_str(), "High");
    for (double outside : {2.0, -1.0, kNaN, 1e300}) {
        out = "x";
        table(0, outside, out);
        EXPECT_STREQ(out.c_str(), "") << outside;
    }
}

TEST(WCParam_Base, NoDisplayFlagKeepsTheValueString) {
    ml::WTDisplayFunctionsMap map;
    ml::DisplayFunctions::AddBuiltIns(map);
    ml::WCParam_Base param;
    param.SetScale(0, 10, 1, 0, 0, "linear", nullptr, nullptr);
    param.SetDisplayFunction(map[ml::WTParamMapKey("DisplayFloat1")]);
    param.SetRealWorldValue(0, 2.5);
    param.UpdateValueString(0);
    EXPECT_STREQ(param.GetValueString().c_str(), "2.5");
    param.SetFlag(ml::eParamFlag_NoDisplay, true);
    param.SetRealWorldValue(0, 7.0);
    param.UpdateValueString(0);
    EXPECT_STREQ(param.GetValueString().c_str(), "2.5");
}

TEST(ParamFlags, WordsAndBitsAgree) {
    unsigned int bit = 0;
    ASSERT_TRUE(ml::ParamFlags::BitFromWord("Drag", bit));
    EXPECT_EQ(bit, 3u);
    ASSERT_TRUE(ml::ParamFlags::BitFromWord("SetupsCommon", bit));
    EXPECT_EQ(bit, 18u);
    EXPECT_FALSE(ml::ParamFlags::BitFromWord("drag", bit)) << "words are case-sensitive";
    EXPECT_STREQ(ml::ParamFlags::WordFromBit(3), "DontUpdateWhileDrag");
    EXPECT_EQ(ml::ParamFlags::WordFromBit(8), nullptr);
}

} // namespace
