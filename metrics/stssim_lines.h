#pragma once

#include <vector>

#include "kernels/plane.h"
#include "kernels/space_time_ssim.h"
#include "metrics/motion/motion_estimator.h"

namespace Metric {

/// Along which lines stSSIM compares the pixels of a frame: along their motion since the frame before, where
/// it has a direction.
///
/// Motion   from the frames' first sequence in bytes, with 16 by 16 blocks down to 4 by 4 ones.
/// Lines    of a vector that is longer across than down the horizontal one, the other way round the vertical
///          one, of a diagonal vector both; where nothing moves those and the two diagonals.
class MotionLines {
public:
    /// Pictures as `Push` gets them; the lines are told for multiples of 16 of both sizes.
    MotionLines(int pictureWidth, int pictureHeight);

    /// Takes in a frame without gaps between the rows, limited to bytes.
    void Push(const float* frame);

    /// The lines of the last frame against the one before, of 4 by 4 pixels each, in rows of `AlignedWidth` /
    /// 4.
    const Kernels::LineSet* Find();

    int AlignedWidth() const { return alignedWidth; }

private:
    MotionPicture PictureIn(const Kernels::BytePlane& plane) const;

    int width;
    int height;
    int alignedWidth;  ///< multiples of 16
    int alignedHeight;
    MotionEstimator motion;
    Kernels::BytePlane bytes;     ///< the frame alone
    Kernels::BytePlane current;   ///< the frame as the estimator wants it: aligned, with a margin
    Kernels::BytePlane previous;  ///< the one before
    std::vector<Kernels::LineSet> lines;
};

}  // namespace Metric
