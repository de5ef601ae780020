#pragma once

#include <utility>
#include <vector>

#include "kernels/gauss_ssim.h"
#include "kernels/plane.h"
#include "metric/metric_image.h"

namespace Metric {

/// SSIM's C1 = (0.01 peak)^2 and C2 = (0.03 peak)^2 for two images, whose peaks' product is the peak squared.
struct SSIMConstants {
    double c1;
    double c2;
};

SSIMConstants ConstantsOf(const std::vector<CMetricImage*>& images);

/// SSIM of two pictures around each pixel, under a Gaussian window of 11 by 11 with sigma 1.5.
///
/// Source   Wang, Bovik, Sheikh, Simoncelli, "Image quality assessment: from error visibility to structural
///          similarity", IEEE Trans. Image Processing 13(4), 2004.
/// Planes   pictures and maps of `width` by `height` floats, rows contiguous, no greater than at
///          construction. A map that nobody wants is null.
/// Threads  one at a time, whose call a team shares.
class GaussWindowSSIM {
public:
    using Pictures = std::pair<const float*, const float*>;

    /// `border`: what the windows see outside the pictures, black for `BorderConstant`.
    GaussWindowSSIM(int greatestWidth, int greatestHeight, Kernels::BorderKind border);

    /// SSIM whole; returns the map's mean.
    double Map(const Pictures& pictures, int width, int height, const SSIMConstants& constants, float* map);
    /// Its contrast and structure alone.
    double ContrastStructureMap(const Pictures& pictures, int width, int height,
                                const SSIMConstants& constants, float* map);

private:
    Kernels::BorderKind border;
    Kernels::BytePlane scratch;
};

}  // namespace Metric
