#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Metric {

/// The samples beside one line of the 8 by 8 block grid: four rows of floats along the line, two on either
/// side of it. In this form vertical and horizontal lines are the same. One object serves all lines of a
/// picture in turn; it allocates at construction only. One thread at a time.
///
/// The picture is given upside down, as the measure sees it: `bottomRow` is its first row, and each row
/// that follows lies `width` floats before the last.
class GridLine {
public:
    /// For pictures whose longer side is `longest`.
    explicit GridLine(int longest);

    /// The line behind column `x`, from 1 to width - 3; its places are the picture's `height` rows.
    void TakeVertical(const float* bottomRow, int width, int height, int x);
    /// The line behind row `y`, from 1 to the height minus 3; its places are the columns.
    void TakeHorizontal(const float* bottomRow, int width, int y);

    bool IsVertical() const { return vertical; }
    int Length() const { return length; }
    /// Row 0 to 3 across the line, which lies between 1 and 2. Places from -1 to `Length` can be read.
    const float* Row(int row) const { return rows[static_cast<std::size_t>(row)].data() + 1; }

private:
    float* Row(int row) { return rows[static_cast<std::size_t>(row)].data() + 1; }

    std::array<std::vector<float>, 4> rows;
    bool vertical = false;
    int length = 0;
};

/// How visible the grid is at each place of a line, as told at `CBlockingMetric`: an integer from 0, or -1
/// where the slope across the line is above `edgeLimit` and makes it a real edge. The line's length is a
/// multiple of 8. The same bits on every instruction set. Allocates nothing; any thread.
void MeasureStrengths(const GridLine& line, int edgeLimit, float* strengths);

}  // namespace Metric
