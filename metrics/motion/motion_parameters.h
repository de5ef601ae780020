#pragma once

#include <algorithm>

namespace Metric {

/// How the motion estimator works. What its data layout fixes are constants.
struct MotionParameters {
    int searchRangeX = 32;  ///< greatest length of a vector, whole pixels
    int searchRangeY = 32;
    bool vectorPenalty = true;  ///< a cost includes the vector's length

    float meanStart = 1500;  ///< running mean of the block costs: first value and weight of a new frame
    float meanRate = 0.3f;
    float deviationStart = 500;  ///< the same for their deviation
    float deviationRate = 0.3f;

    static constexpr int shiftX = 2;  ///< vectors count in units of 1 / 4 pixel
    static constexpr int shiftY = 2;
    static constexpr int blockSize = 16;     ///< side of the top-level block, pixels
    static constexpr int smallestBlock = 4;  ///< side of the smallest one

    /// Pixels that a reference picture needs on each side: a block at the border is moved by the whole range.
    int Margin() const { return (std::max(searchRangeX, searchRangeY) + 31) / 16 * 16; }
};

}  // namespace Metric
