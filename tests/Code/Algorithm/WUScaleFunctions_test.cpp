#include "Code/Algorithm/WUScaleFunctions.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace ml = MIREL_NAMESPACE_NAME;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct ScalePoint {
    const char *what;
    double input;
    double expected;
};

void ExpectPoints(ml::WTScaleFunction func, ml::sSCALE_INFO scale,
                  std::vector<ScalePoint> const &points) {
    for (auto const &p : points)
        EXPECT_NEAR(func(p.input, &scale), p.expected, 1e-9)
            << p.what << " (input " << p.input << ")";
}

ml::sSCALE_INFO Lin(double min, double max, double res) {
    ml::sSCALE_INFO scale;
    ml::SetScaleLin(scale, min, max, res);
    return scale;
}

ml::sSCALE_INFO Log(double min, double max, double res) {
    ml::sSCALE_INFO scale;
    ml::SetScaleLog(scale, min, max, res);
    return scale;
}

ml::sSCALE_INFO Table(std::vector<double> states, std::vector<double> values) {
    ml::sSCALE_INFO scale;
    scale.statePoints = std::move(states);
    scale.realWorldPoints = std::move(values);
    return scale;
}

TEST(RoundToResolution, RoundsOnlyTheFraction) {
    const auto half = Lin(0, 10, 0.5);
    EXPECT_DOUBLE_EQ(ml::RoundToResolution(3.26, &half), 3.5);
    EXPECT_DOUBLE_EQ(ml::RoundToResolution(3.24, &half), 3.0);
    EXPECT_DOUBLE_EQ(ml::RoundToResolution(-3.26, &half), -3.5) << "floor of -3.26 is -4";
    const auto whole = Lin(0, 10, 1.0);
    EXPECT_DOUBLE_EQ(ml::RoundToResolution(3.49, &whole), 3.0);
    EXPECT_DOUBLE_EQ(ml::RoundToResolution(3.5, &whole), 4.0);
}

TEST(LinearScale, MapsTheStateAxisOntoTheRangeWithRounding) {
    ExpectPoints(ml::LinearScale, Lin(-12, 12, 0.1),
                 {{"bottom", 0, -12},
                  {"middle", 500, 0},
                  {"top", 1000, 12},
                  {"fraction rounded to 0.1", 520, 0.5},
                  {"between steps", 502, 0.0}});
    ExpectPoints(ml::LinearScale, Lin(0, 10, 0.5), {{"3.26 becomes 3.5", 326, 3.5}});
}

TEST(LinearScale, InverseOfAFlatRangeIsZero) {
    auto flat = Lin(5, 5, 1.0);
    EXPECT_EQ(ml::InverseLinearScale(5, &flat), 0.0);
    EXPECT_EQ(ml::InverseLinearScale(100, &flat), 0.0);
    ExpectPoints(ml::InverseLinearScale, Lin(-12, 12, 0.1),
                 {{"bottom", -12, 0}, {"top", 12, 1000}, {"above range is not clamped", 24, 1500}});
}

TEST(LinearScale, ExtendedResolutionRoundsTheWholeValue) {
    ExpectPoints(ml::ExtendedResLinearScale, Lin(0, 1000, 10),
                 {{"exact", 500, 500}, {"down", 504, 500}, {"up", 505, 510}, {"top", 1000, 1000}});
}

TEST(LogScale, FollowsTheGeometricCurve) {
    ExpectPoints(ml::LogScale, Log(20, 20000, 1.0),
                 {{"bottom", 0, 20}, {"middle", 500, 632}, {"top", 1000, 20000}});
    ExpectPoints(ml::InverseLogScale, Log(20, 20000, 1.0),
                 {{"bottom", 20, 0}, {"top", 20000, 1000}, {"negative", -5, 0}, {"zero", 0, 0}});
    ExpectPoints(ml::ExtendedResLogScale, Log(20, 20000, 10),
                 {{"middle to tens", 500, 630}, {"top", 1000, 20000}});
}

// The inverse divides by a logarithm of the factor taken when the scale is set. Whatever set the
// factor last (a new range, another kind, a hand-written value), the result must be the one the
// formula gives for the factor the record holds now, to the last bit.
TEST(LogScale, InverseFollowsTheFactorTheRecordHoldsNow) {
    auto scale = Log(20, 20000, 1.0);
    auto expectFormula = [&scale](const char *after) {
        for (double value : {25.0, 632.0, 20000.0})
            EXPECT_EQ(ml::InverseLogScale(value, &scale),
                      std::log(value / scale.base) / std::log(scale.factor))
                << after << ", value " << value;
    };
    expectFormula("first range");
    ml::SetScaleLog(scale, 10, 1000, 1.0);
    expectFormula("a new range");
    ml::SetScaleLin(scale, 1, 5000, 1.0);
    expectFormula("a linear range over it");
    scale.factor = 1.002;
    expectFormula("a factor written by hand");
    auto copy = Log(50, 500, 1.0);
    scale = copy;
    expectFormula("a copied record");
}

TEST(FrqScale, HitsTheFixedCurvePoints) {
    ml::sSCALE_INFO scale = Lin(0, 1, 1.0);
    ExpectPoints(
        ml::FrqScale, scale,
        {{"20 Hz", 0, 20}, {"200 Hz", 250, 200}, {"5 kHz", 750, 5000}, {"20 kHz", 1000, 20000}});
    ExpectPoints(ml::InverseFrqScale, scale,
                 {{"20 Hz", 20, 0},
                  {"200 Hz", 200, 250},
                  {"5 kHz", 5000, 750},
                  {"20 kHz", 20000, 1000},
                  {"below 20 clamps", 1, 0},
                  {"above clamps", 1e9, 1000},
                  {"zero", 0, 0},
                  {"negative", -1, 0}});
}

TEST(FrqScale, RoundTripsEveryWholeState) {
    ml::sSCALE_INFO scale = Lin(0, 1, 0.0001);
    for (int state = 0; state <= 1000; state += 25)
        EXPECT_NEAR(ml::InverseFrqScale(ml::FrqScale(state, &scale), &scale), state, 0.01);
}

TEST(ToggleScale, TakesTheIntegerStateModuloTheCount) {
    ml::sSCALE_INFO scale;
    ml::SetScaleToggle(scale, 2);
    ExpectPoints(ml::ToggleScale, scale,
                 {{"zero", 0, 0},
                  {"one", 1, 1},
                  {"1500 with two", 1500, 0},
                  {"fraction", 1.9, 1},
                  {"nan", kNaN, 0},
                  {"huge", 1e300, 0}});
    ml::SetScaleToggle(scale, 0);
    EXPECT_EQ(ml::ToggleScale(5, &scale), 0.0) << "no states, no division by zero";
}

TEST(ToggleRangesScale, PicksThePointByIndexAndTheNearestBack) {
    const auto table = Table({}, {1, 2, 4, 8});
    ExpectPoints(ml::ToggleRangesScale, table,
                 {{"first", 0, 1}, {"third", 2, 4}, {"wraps", 5, 2}, {"nan", kNaN, 1}});
    ExpectPoints(ml::InverseToggleRangesScale, table,
                 {{"below first", 0, 0},
                  {"exact", 4, 2},
                  {"nearer lower", 2.9, 1},
                  {"half gap goes up", 3, 2},
                  {"at last", 8, 3},
                  {"above last", 100, 3},
                  {"nan", kNaN, 0}});
    const auto single = Table({}, {7});
    ExpectPoints(ml::InverseToggleRangesScale, single,
                 {{"one point, below", 1, 0}, {"one point, at", 7, 0}, {"one point, above", 9, 0}});
    ExpectPoints(ml::ToggleRangesScale, Table({}, {}), {{"no points", 3, 0}});
}

TEST(ToggleMapScale, MatchesExactlyOrGivesZero) {
    const auto table = Table({0, 500, 1000}, {10, 20, 30});
    ExpectPoints(ml::ToggleMapScale, table,
                 {{"first", 0, 10}, {"middle", 500, 20}, {"no match", 499, 0}});
    ExpectPoints(ml::InverseToggleMapScale, table,
                 {{"exact", 30, 1000}, {"not nearest, zero", 29.9, 0}, {"nan", kNaN, 0}});
}

TEST(LinearRangesScale, InterpolatesBetweenPointsAndClamps) {
    auto table = Table({0, 500, 1000}, {0, 10, 100});
    table.resolution = table.inverseResolution = 1.0;
    ExpectPoints(ml::LinearRangesScale, table,
                 {{"bottom", 0, 0},
                  {"first segment", 250, 5},
                  {"knee", 500, 10},
                  {"second segment", 750, 55},
                  {"below clamps", -50, 0},
                  {"above clamps", 2000, 100}});
    ExpectPoints(ml::InverseLinearRangesScale, table,
                 {{"below range", -1, 0},
                  {"above range", 101, 1000},
                  {"exact knee", 10, 500},
                  {"interpolated", 55, 750}});
}

TEST(LinearRangesScale, DescendingTablesStillClampToTheAxisEnds) {
    const auto table = Table({0, 1000}, {100, 0});
    ExpectPoints(ml::LinearRangesScale, table, {{"start", 0, 100}, {"middle", 500, 50}});
    ExpectPoints(ml::InverseLinearRangesScale, table,
                 {{"below the lowest value", -5, 0},
                  {"above the highest value", 150, 1000},
                  {"inside", 25, 750},
                  {"end point", 0, 1000}});
    ExpectPoints(ml::InverseLinearRangesScaleWithRounding, table, {{"rounded", 25.04, 750}});
}

TEST(LinearRangesScale, WithRoundingRoundsTheState) {
    const auto table = Table({0, 1000}, {0, 3});
    ExpectPoints(ml::InverseLinearRangesScale, table, {{"a third, unrounded", 1, 1000.0 / 3}});
    ExpectPoints(ml::InverseLinearRangesScaleWithRounding, table,
                 {{"a third rounds down", 1, 333}, {"two thirds round up", 2, 667}});
}

} // namespace
