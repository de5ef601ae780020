#pragma once

#include "metrics/motion/motion_field.h"
#include "metrics/motion/motion_parameters.h"

namespace Metric {

/// Block costs, measured on 16 by 16 pixels, above or below which the estimator changes its ways.
struct CostThresholds {
    float split;       ///< a greater cost of a whole block makes it try the quadrants
    float quadrant;    ///< a greater cost of a quadrant, on its own 8 by 8 pixels, its 4 by 4 blocks
    float projection;  ///< a vector of a smaller cost is handed on to the next frame
};

/// Running mean and deviation of the block costs. One frame of great costs between others, as at a scene cut,
/// doesn't raise them: the smaller of two successive frames counts.
class CostStatistics {
public:
    CostStatistics() : CostStatistics(MotionParameters{}) {}
    explicit CostStatistics(const MotionParameters& motionParameters);

    CostThresholds Thresholds() const;

    /// Takes in a finished frame. The deviation is the root of the sum of squares, divided by the number of
    /// costs. A frame without a cost above 0 changes nothing.
    void Update(const MotionField& field);

private:
    struct Moments {
        float mean = 0;
        float deviation = 0;
    };

    MotionParameters parameters;
    Moments running;
    Moments previous;
    bool hasPrevious = false;
};

}  // namespace Metric
