#include "report/rules/curve.h"

#include <gtest/gtest.h>

#include <cmath>

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

Series SeriesFrom(int first, int count, float (*value)(int)) {
    Series series;
    series.first = first;
    for (int i = 0; i < count; ++i) series.values.push_back(value(i));
    return series;
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
}

// Worked by hand: flat lines have one pixel a column, steep ones one a row.
TEST(Curve, RunsOfALine) {
    const struct {
        const char* what;
        Point from, to;
        Runs runs;
    } kCases[] = {
        {"level", {0, 5}, {2, 5}, {{5, 5}, {5, 5}, {5, 5}}},
        {"diagonal", {0, 0}, {2, 2}, {{0, 0}, {1, 1}, {2, 2}}},
        {"down by one", {0, 0}, {3, 1}, {{0, 0}, {0, 0}, {0, 0}, {1, 1}}},
        {"up by one", {0, 1}, {3, 0}, {{1, 1}, {0, 0}, {0, 0}, {0, 0}}},
        {"steep down", {0, 0}, {1, 9}, {{0, 8}, {9, 9}}},
        {"steep up", {0, 9}, {1, 0}, {{1, 9}, {0, 0}}},
        {"upright", {0, 7}, {0, 3}, {{3, 7}}},
        {"a row in the middle of two columns", {0, 0}, {4, 7}, {{0, 1}, {2, 2}, {3, 4}, {5, 6}, {7, 7}}},
        {"two columns", {0, 0}, {2, 8}, {{0, 3}, {4, 7}, {8, 8}}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.runs, ColumnRunsOf({c.from, c.to}, c.to.x));
    }
    EXPECT_TRUE(ColumnRunsOf({}, 3).at(3).IsEmpty());
}

// Every frame a corner, against the few that are kept: the same pixels.
TEST(Curve, DroppedCornersPaintNothing) {
    const struct {
        const char* what;
        float (*value)(int);
    } kShapes[] = {
        {"waves", [](int i) { return 50 + 49 * std::sin(static_cast<float>(i) * 0.37F); }},
        {"noise", [](int i) { return static_cast<float>((i * 7919 + i % 1009 * (i % 97) * 31) % 101); }},
        {"steps", [](int i) { return i / 37 % 2 ? 80.0F : 20.0F; }},
        {"a ramp", [](int i) { return static_cast<float>(i) * 0.01F; }},
        {"spikes", [](int i) { return i % 501 == 0 ? 100.0F : 3.0F; }},
    };
    for (const auto& shape : kShapes) {
        for (const int frames : {2, 3, 50, 199, 200, 201, 999, 10'000}) {
            SCOPED_TRACE(testing::Message() << shape.what << ", " << frames);
            const Series series = SeriesFrom(0, frames, shape.value);
            const PlotScale scale = Scale(200, 150, 0, frames - 1);
            std::vector<Point> all;
            for (int i = 0; i < frames; ++i)
                all.push_back({scale.CurveX(i), scale.CurveY(series.values[static_cast<std::size_t>(i)])});
            const std::vector<Point> kept = CurveOf(series, scale);
            EXPECT_LE(kept.size(), 4u * 201);
            EXPECT_EQ(ColumnRunsOf(all, 200), ColumnRunsOf(kept, 200));
        }
    }
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
