#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "kernels/plane.h"
#include "metrics/msssim_levels.h"

namespace Metric {

/// The levels of a multi-scale SSIM of pictures of `width` by `height`, maps of 1 all over. From level to
/// level the sides are halved, an odd column or row being dropped, as long as neither falls below
/// `smallestSide`, at least 1, and there are weights. At least one level.
std::vector<LevelMap> MakeLevels(int width, int height, int smallestSide);

/// The two pictures of each level behind the first, their pixels the means of 2 by 2 of the level before.
class HalvedPictures {
public:
    /// Rows contiguous.
    using Pictures = std::pair<const float*, const float*>;

    explicit HalvedPictures(const std::vector<LevelMap>& levels);

    /// The pictures of `level`, above 0, made from those of the level before. The next frame overwrites them.
    Pictures Halve(const Pictures& pictures, std::size_t level);

private:
    struct Planes {
        int sourceWidth;
        int sourceHeight;
        std::array<Kernels::FloatPlane, 2> halves;
    };

    std::vector<Planes> halved;
};

}  // namespace Metric
