#include "report/rules/curve.h"
#include "report/rules/plot_geometry.h"
#include "report/rules/value_axis.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <tuple>

using namespace Report;

namespace {

PlotScale Scale(int width, int height, int first, int last, ValueRange values) {
    PlotScale scale;
    scale.plot = {50, 10 + height, width, height};
    scale.rangeFirst = first;
    scale.rangeLast = last;
    scale.values = values;
    return scale;
}

TEST(PlotGeometry, FollowsWindowAndFont) {
    const PlotGeometry plot = PlotGeometry::In(840, 298, 6, 15);
    EXPECT_EQ(59, plot.left);     // 42 + 15 + 2
    EXPECT_EQ(263, plot.bottom);  // 298 - 30 - 5
    EXPECT_EQ(739, plot.width);   // 840 - 59 - 42
    EXPECT_EQ(248, plot.height);
    const PlotGeometry tiny = PlotGeometry::In(90, 20, 6, 15);
    EXPECT_EQ(0, tiny.width);
    EXPECT_EQ(0, tiny.height);
}

TEST(PlotScale, FramesAndValues) {
    // 100 pixels for 0 to 40 frames: 2.5 each. 50 pixels for 30 to 40: 5 for a unit.
    const PlotScale scale = Scale(100, 50, 200, 240, {30, 40});
    constexpr std::pair<int, int> kFrames[] = {{200, 0},   {201, 2},   {202, 5}, {239, 97},
                                               {240, 100}, {241, 100}, {199, 0}};
    for (const auto& [frame, x] : kFrames) {
        EXPECT_EQ(x, scale.CurveX(frame)) << frame;
        EXPECT_EQ(50 + x, scale.FrameX(frame)) << frame;
    }
    // Axis and curve cut to whole pixels from opposite ends: 33.33 lies 16.65 above one, 33.35 below the other.
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    constexpr std::tuple<float, int, int> kValues[] = {{30, 60, 50},  {33.33F, 44, 33}, {40, 10, 0},
                                                       {41, 10, 0},   {29, 60, 50},     {kInfinity, 10, 0},
                                                       {kNone, 60, 0}};
    for (const auto& [value, axisY, curveY] : kValues) {
        EXPECT_EQ(axisY, scale.ValueY(value)) << value;
        EXPECT_EQ(curveY, scale.CurveY(value)) << value;
    }
    constexpr std::pair<int, int> kPointer[] = {{50, 200},  {52, 200}, {53, 201}, {55, 202}, {150, 240},
                                                {149, 239}, {48, 200}, {40, 196}, {160, 244}};
    for (const auto& [x, frame] : kPointer) EXPECT_EQ(frame, scale.FrameAt(x)) << x;
    for (const int x : {50, 150}) EXPECT_TRUE(scale.HasX(x));
    for (const int x : {49, 151}) EXPECT_FALSE(scale.HasX(x));
}

TEST(PlotScale, WithoutExtent) {
    const PlotScale oneFrame = Scale(100, 50, 7, 7, {30, 40});
    EXPECT_EQ(50, oneFrame.FrameX(7)) << "the cursor of a single frame stands at the left";
    EXPECT_EQ(7, oneFrame.FrameAt(120));
    const PlotScale noRoom = Scale(0, 0, 0, 40, {30, 40});
    EXPECT_EQ(50, noRoom.FrameX(40));
    EXPECT_EQ(10, noRoom.ValueY(35));
    EXPECT_EQ(0, noRoom.CurveY(35));
    EXPECT_EQ(0, noRoom.FrameAt(60));
}

TEST(BandDrag, IsGrabbed) {
    // Of 300 pixels for the frames from 0 on: the last one, those of the band, and where it can be grabbed.
    constexpr std::array<int, 5> kCases[] = {
        {600, 200, 300, 100, 149},
        {600, 200, 206, 98, 104},               // thin
        {500'000, 249'500, 250'500, 146, 152},  // no wider than a pixel
        {500'000, 0, 1000, -3, 3},
    };
    for (const auto& [last, bandFirst, bandLast, firstX, lastX] : kCases) {
        SCOPED_TRACE(bandLast);
        const PlotScale scale = Scale(300, 50, 0, last, {30, 40});
        for (const int x : {firstX, lastX}) {
            BandDrag drag;
            EXPECT_TRUE(drag.Start(scale, bandFirst, bandLast, 50 + x));
            const int middle = drag.CentreAt(scale, bandFirst, bandLast, 50 + x);
            EXPECT_NEAR((bandFirst + bandLast) / 2, middle, last / 300 + 1) << "it stays where it is";
        }
        for (const int x : {firstX - 1, lastX + 1})
            EXPECT_FALSE(BandDrag().Start(scale, bandFirst, bandLast, 50 + x));
    }
}

TEST(BandDrag, FollowsThePointer) {
    for (const int first : {0, 1000}) {
        const PlotScale scale = Scale(300, 50, first, first + 600, {30, 40});
        BandDrag drag;
        ASSERT_TRUE(drag.Start(scale, first + 200, first + 300, 50 + 110));
        for (const auto& [x, centre] : {std::pair(110, 250), {130, 290}, {0, 30}})
            EXPECT_EQ(first + centre, drag.CentreAt(scale, first + 200, first + 300, 50 + x));
    }
}

TEST(Curve, Corners) {
    const Series series = {10, {0, 50, 100, 25}};
    const auto scale = [](int width, int first, int last) {
        return Scale(width, 100, first, last, {0, 100});
    };
    const std::tuple<const char*, PlotScale, std::vector<Point>> kCases[] = {
        {"all of it", scale(30, 10, 13), {{0, 100}, {10, 50}, {20, 0}, {30, 75}}},
        {"a part", scale(30, 11, 12), {{0, 50}, {30, 0}}},
        {"the series ends in the range", scale(30, 12, 15), {{0, 0}, {10, 75}}},
        {"no value at the start", scale(30, 9, 12), {}},
        {"behind the end", scale(30, 14, 16), {}},
        {"one frame is a line across", scale(30, 11, 11), {{0, 50}, {30, 50}}},
        {"one frame without a value", scale(30, 20, 20), {}},
        {"one column: in the order of the frames", scale(0, 10, 13), {{0, 100}, {0, 0}, {0, 75}}},
    };
    for (const auto& [what, scale, corners] : kCases) EXPECT_EQ(corners, CurveOf(series, scale)) << what;
    // However many frames a column has, four of its corners are kept.
    Series noise;
    for (int i = 0; i < 10'000; ++i) noise.values.push_back(static_cast<float>(i * 7919 % 101));
    EXPECT_LE(CurveOf(noise, scale(200, 0, 9999)).size(), 4u * 201);
}

TEST(Curve, Marks) {
    using Points = std::vector<Point>;
    std::vector<ColumnRun> runs(300, {40, 60});
    runs[144 + 48] = {};
    EXPECT_TRUE(MarksOn(runs, 0, 1).empty());
    EXPECT_EQ((Points{{48, 50}, {144, 50}, {240, 50}}), MarksOn(runs, 1, 1));
    EXPECT_EQ((Points{{72, 50}, {168, 50}, {264, 50}}), MarksOn(runs, 2, 1));
    EXPECT_EQ((Points{{96, 50}, {288, 50}}), MarksOn(runs, 1, 2)) << "twice as far on a finer screen";
    runs.resize(150);
    runs[144] = {};
    EXPECT_EQ((Points{{48, 50}}), MarksOn(runs, 1, 1)) << "none where the curve has ended";
}

TEST(ValueAxis, Steps) {
    constexpr std::tuple<ValueRange, float, float, int> kCases[] = {
        {{0, 100}, 15, 15, 3},  // 30 is halved for a third step
        {{0.90F, 0.98F}, 0.015625F, 0.90625F, 3},
        {{32.6F, 40.9F}, 1, 33, 1},
        {{0, 30}, 5, 5, 3},  // 10 is the last multiple of 5, halved for a third step
        {{0, 1000}, 165, 165, 3},
        {{1200, 1800}, 100, 1300, 0},  // four digits before the point
        {{-10, 10}, 5, -5, 2},         // cut toward zero: the first tick isn't the lowest one
        {{29.9F, 30}, 0.03125F, 29.90625F, 2},
    };
    for (const auto& [range, step, first, decimals] : kCases) {
        SCOPED_TRACE(range.max);
        const AxisSteps steps = StepsOf(range);
        EXPECT_EQ(step, steps.step);
        EXPECT_EQ(first, steps.first);
        EXPECT_EQ(decimals, AxisDecimals(range, steps.step));
    }
}

TEST(ValueAxis, EndsForEveryRange) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    for (const ValueRange range : {ValueRange{-kLargest, kLargest}, ValueRange{0, kLargest},
                                   ValueRange{1e9F, 1e9F + 64}, ValueRange{std::nextafter(1e9F, 0.0F), 1e9F},
                                   ValueRange{-1e30F, -1e30F + 1e24F}, ValueRange{16777216, 16777218}}) {
        const auto lines = ValueAxis(Scale(300, 250, 0, 0, range), 6, 15);
        EXPECT_GE(lines.size(), 1u);
        EXPECT_LT(lines.size(), 1000u);
        for (const AxisLine& line : lines) EXPECT_LE(line.label.size(), 9u);
    }
}

TEST(ValueAxis, Lines) {
    const auto lines = ValueAxis(Scale(700, 250, 0, 0, {0, 100}), 6, 15);
    constexpr std::pair<int, const char*> kLines[] = {{260, "0.000"},  {223, "15.000"}, {185, "30.000"},
                                                      {148, "45.000"}, {110, "60.000"}, {73, "75.000"},
                                                      {35, "90.000"},  {10, "100.000"}};
    ASSERT_EQ(std::size(kLines), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(kLines[i].first, lines[i].y);
        EXPECT_EQ(kLines[i].second, lines[i].label);
        EXPECT_EQ(i == 0 || i == 7, lines[i].isEnd);
        EXPECT_EQ(lines[i].y, lines[i].labelY);
        EXPECT_EQ(50 - 6 * (static_cast<int>(lines[i].label.size()) + 1), lines[i].labelX);
    }
}

TEST(ValueAxis, LabelsMoveUpOrAreLeftOut) {
    // 33.0 would stand 12 pixels above 32.6.
    const auto lines = ValueAxis(Scale(700, 250, 0, 0, {32.6F, 40.9F}), 6, 15);
    ASSERT_EQ("33.0", lines.at(1).label);
    EXPECT_EQ(248, lines[1].y);
    EXPECT_EQ(245, lines[1].labelY);
    EXPECT_EQ(lines[2].y, lines[2].labelY);
    // The last tick, 0.296875, reads as the largest value does.
    const auto repeating = ValueAxis(Scale(700, 250, 0, 0, {0, 0.29689F}), 6, 15);
    EXPECT_EQ("0.297", repeating.back().label);
    EXPECT_NE("0.297", repeating.at(repeating.size() - 2).label);
}

}  // namespace
