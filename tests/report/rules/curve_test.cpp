#include "report/rules/curve.h"

#include <gtest/gtest.h>

namespace Report {

namespace {

using Runs = std::vector<ColumnRun>;

PlotScale Scale(int width, int height, int first, int last, ValueRange values = {0, 100}) {
    PlotScale scale;
    scale.plot = {0, height, width, height};
    scale.rangeFirst = first;
    scale.rangeLast = last;
    scale.values = values;
    return scale;
}

TEST(Curve, Corners) {
    const Series series = {10, {0, 50, 100, 25}};
    const struct {
        const char* what;
        PlotScale scale;
        std::vector<Point> corners;
    } kCases[] = {
        {"all of it", Scale(30, 100, 10, 13), {{0, 100}, {10, 50}, {20, 0}, {30, 75}}},
        {"a part", Scale(30, 100, 11, 12), {{0, 50}, {30, 0}}},
        {"the series ends in the range", Scale(30, 100, 12, 15), {{0, 0}, {10, 75}}},
        {"no value at the start", Scale(30, 100, 9, 12), {}},
        {"behind the end", Scale(30, 100, 14, 16), {}},
        {"one frame is a line across", Scale(30, 100, 11, 11), {{0, 50}, {30, 50}}},
        {"one frame without a value", Scale(30, 100, 20, 20), {}},
        {"one column: in the order of the frames", Scale(0, 100, 10, 13), {{0, 100}, {0, 0}, {0, 75}}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.corners, CurveOf(series, c.scale));
    }
    // However many frames a column has, four of its corners are kept.
    Series noise;
    for (int i = 0; i < 10'000; ++i) noise.values.push_back(static_cast<float>(i * 7919 % 101));
    EXPECT_LE(CurveOf(noise, Scale(200, 150, 0, 9999)).size(), 4u * 201);
}

TEST(Curve, Marks) {
    Runs runs(300, {40, 60});
    runs[144 + 48] = {};
    EXPECT_TRUE(MarksOn(runs, 0, 1).empty());
    EXPECT_EQ((std::vector<Point>{{48, 50}, {144, 50}, {240, 50}}), MarksOn(runs, 1, 1));
    EXPECT_EQ((std::vector<Point>{{72, 50}, {168, 50}, {264, 50}}), MarksOn(runs, 2, 1));
    EXPECT_EQ((std::vector<Point>{{96, 50}, {288, 50}}), MarksOn(runs, 1, 2))
        << "twice as far on a finer screen";
    runs.resize(150);
    runs[144] = {};
    EXPECT_EQ((std::vector<Point>{{48, 50}}), MarksOn(runs, 1, 1)) << "none where the curve has ended";
}

}  // namespace

}  // namespace Report
