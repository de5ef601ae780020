#include "report/rules/curve.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace Report {

namespace {

constexpr int kMarkDistance = 96;
constexpr int kMarkShift = 24;

/// The corners of one column, in the order of their frames.
class ColumnCorners {
public:
    void Take(Point corner) {
        if (count == 0) first = lowest = highest = {corner, 0};
        last = {corner, count};
        if (corner.y < highest.corner.y) highest = last;
        if (corner.y > lowest.corner.y) lowest = last;
        ++count;
    }

    void MoveTo(std::vector<Point>& corners) {
        if (count == 0) return;
        const auto [earlier, later] =
            std::minmax(lowest, highest, [](const Corner& a, const Corner& b) { return a.order < b.order; });
        int written = -1;
        for (const Corner& corner : {first, earlier, later, last}) {
            if (corner.order > written) corners.push_back(corner.corner);
            written = std::max(written, corner.order);
        }
        count = 0;
    }

private:
    struct Corner {
        Point corner;
        int order = 0;
    };

    Corner first, lowest, highest, last;
    int count = 0;
};

/// Fixed-point numbers with 16 bits behind the point.
constexpr int kFraction = 16;

int Pixel(std::int64_t fixed) {
    return static_cast<int>(fixed >> kFraction);
}

/// A rising number is taken in the middle of its pixel, rounded up, a falling one at its start.
std::int64_t Start(std::int64_t step) {
    return step > 0 ? step - step / 2 : 0;
}

/// A line that is at least as wide as high: one pixel for each column.
void AddFlatLine(Point from, Point to, std::vector<ColumnRun>& runs) {
    const std::int64_t step = (std::int64_t{to.y - from.y} << kFraction) / (to.x - from.x);
    std::int64_t y = (std::int64_t{from.y} << kFraction) + Start(step);
    for (int x = from.x; x <= to.x; ++x, y += step) runs[static_cast<std::size_t>(x)].Take(Pixel(y));
}

/// A line that is higher than wide: one pixel for each row, from the top.
void AddSteepLine(Point from, Point to, std::vector<ColumnRun>& runs) {
    if (from.y > to.y) std::swap(from, to);
    const std::int64_t step = (std::int64_t{to.x - from.x} << kFraction) / (to.y - from.y);
    if (step == 0) {
        runs[static_cast<std::size_t>(from.x)].Take(from.y);
        runs[static_cast<std::size_t>(from.x)].Take(to.y);
        return;
    }
    std::int64_t x = (std::int64_t{from.x} << kFraction) + Start(step);
    for (int y = from.y; y <= to.y; ++y, x += step) runs[static_cast<std::size_t>(Pixel(x))].Take(y);
}

}  // namespace

std::vector<Point> CurveOf(const Series& series, const PlotScale& scale) {
    float value = 0;
    if (!series.ValueAt(scale.rangeFirst, value)) return {};
    if (scale.rangeFirst == scale.rangeLast) {
        const int y = scale.CurveY(value);
        return {{0, y}, {scale.plot.width, y}};
    }

    std::vector<Point> corners;
    ColumnCorners column;
    int columnX = 0;
    for (int frame = scale.rangeFirst; frame <= scale.rangeLast; ++frame) {
        if (!series.ValueAt(frame, value)) break;
        const Point corner = {scale.CurveX(frame), scale.CurveY(value)};
        if (corner.x != columnX) column.MoveTo(corners);
        columnX = corner.x;
        column.Take(corner);
    }
    column.MoveTo(corners);
    return corners;
}

std::vector<ColumnRun> ColumnRunsOf(const std::vector<Point>& corners, int width) {
    std::vector<ColumnRun> runs(static_cast<std::size_t>(width) + 1);
    for (const Point& corner : corners) runs[static_cast<std::size_t>(corner.x)].Take(corner.y);
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const Point from = corners[i - 1];
        const Point to = corners[i];
        if (from.x == to.x) continue;  // what lies between two corners of a column is in its run
        const bool isFlat = to.x - from.x >= std::abs(to.y - from.y);
        (isFlat ? AddFlatLine : AddSteepLine)(from, to, runs);
    }
    return runs;
}

std::vector<Point> MarksOn(const std::vector<ColumnRun>& runs, int file, double pixelsPerUnit) {
    std::vector<Point> marks;
    if (file == 0) return marks;
    for (int unit = kMarkShift * (file + 1);; unit += kMarkDistance) {
        const auto x = static_cast<int>(std::lround(unit * pixelsPerUnit));
        if (x >= static_cast<int>(runs.size())) return marks;
        const ColumnRun& run = runs[static_cast<std::size_t>(x)];
        if (!run.IsEmpty()) marks.push_back({x, (run.top + run.bottom) / 2});
    }
}

}  // namespace Report
