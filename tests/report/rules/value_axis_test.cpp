#include "report/rules/value_axis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Report {

namespace {

TEST(ValueAxis, Steps) {
    const struct {
        const char* what;
        ValueRange range;
        float step, first;
        int decimals;
    } kCases[] = {
        {"0 to 100: 30 is halved for a third step", {0, 100}, 15, 15, 3},
        {"0.90 to 0.98", {0.90F, 0.98F}, 0.015625F, 0.90625F, 3},
        {"a PSNR", {32.6F, 40.9F}, 1, 33, 1},
        {"0 to 30: 10 is the last multiple of 5, halved for a third step", {0, 30}, 5, 5, 3},
        {"up to 1000", {0, 1000}, 165, 165, 3},
        {"four digits before the point", {1200, 1800}, 100, 1300, 0},
        {"below 0", {-10, 10}, 5, -5, 2},  // cut toward zero: the first tick isn't the lowest one
        {"0.1 high", {29.9F, 30}, 0.03125F, 29.90625F, 2},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const AxisSteps steps = StepsOf(c.range);
        EXPECT_EQ(c.step, steps.step);
        EXPECT_EQ(c.first, steps.first);
        EXPECT_EQ(c.decimals, AxisDecimals(c.range, steps.step));
    }
}

TEST(ValueAxis, EndsForEveryRange) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    for (const ValueRange range : {ValueRange{-kLargest, kLargest}, ValueRange{0, kLargest},
                                   ValueRange{1e9F, 1e9F + 64}, ValueRange{std::nextafter(1e9F, 0.0F), 1e9F},
                                   ValueRange{-1e30F, -1e30F + 1e24F}, ValueRange{16777216, 16777218}}) {
        PlotScale scale;
        scale.plot = {50, 260, 300, 250};
        scale.values = range;
        const auto lines = ValueAxis(scale, 6, 15);
        EXPECT_GE(lines.size(), 1u);
        EXPECT_LT(lines.size(), 1000u);
        for (const AxisLine& line : lines) EXPECT_LE(line.label.size(), 9u);
    }
}

TEST(ValueAxis, Lines) {
    PlotScale scale;
    scale.plot = {59, 260, 700, 250};
    scale.values = {0, 100};
    const auto lines = ValueAxis(scale, 6, 15);
    const struct {
        int y;
        const char* label;
    } kLines[] = {{260, "0.000"},  {223, "15.000"}, {185, "30.000"}, {148, "45.000"},
                  {110, "60.000"}, {73, "75.000"},  {35, "90.000"},  {10, "100.000"}};
    ASSERT_EQ(std::size(kLines), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(kLines[i].y, lines[i].y);
        EXPECT_EQ(kLines[i].label, lines[i].label);
        EXPECT_EQ(i == 0 || i == 7, lines[i].isEnd);
        EXPECT_EQ(lines[i].y, lines[i].labelY);
        EXPECT_EQ(59 - 6 * (static_cast<int>(lines[i].label.size()) + 1), lines[i].labelX);
    }
}

TEST(ValueAxis, LabelsMoveUpOrAreLeftOut) {
    PlotScale scale;
    scale.plot = {59, 260, 700, 250};
    scale.values = {32.6F, 40.9F};  // 33.0 would stand 12 pixels above 32.6
    const auto lines = ValueAxis(scale, 6, 15);
    ASSERT_EQ("33.0", lines.at(1).label);
    EXPECT_EQ(248, lines[1].y);
    EXPECT_EQ(245, lines[1].labelY);
    EXPECT_EQ(lines[2].y, lines[2].labelY);

    // The last tick, 0.296875, reads as the largest value does.
    scale.values = {0, 0.29689F};
    const auto repeating = ValueAxis(scale, 6, 15);
    EXPECT_EQ("0.297", repeating.back().label);
    EXPECT_NE("0.297", repeating.at(repeating.size() - 2).label);
}

}  // namespace

}  // namespace Report
