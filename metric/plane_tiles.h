#pragma once

#include "metric/metric_image.h"
#include "metric/sample_plane.h"

namespace Metric {

/// A component's plane, read piece by piece into buffers that stay in the cache. It isn't made for this where
/// the frame's samples are all that it is made of, or where nobody else needs it. Good until the image is
/// filled anew.
class PlaneTiles {
public:
    /// Makes the plane if it has to be, with the threads of the next parallel level.
    PlaneTiles(CMetricImage& image, int component);

    /// The plane, if it is there anyhow: rows of the picture's width. Else null.
    const float* Plane() const { return plane; }

    /// Fills `tile`, rows of `width` floats without gaps, with the pixels from (`x`, `y`) on. `x` is even and
    /// within the picture, as is `y`. Beyond it the last column and then the last row are repeated. Any
    /// number of threads at once.
    void Read(int x, int y, int width, int height, float* tile) const;

private:
    const CMetricImage& image;
    int component;
    const SamplePlane* samples;
    const float* plane = nullptr;
    int pictureWidth;
    int pictureHeight;
};

}  // namespace Metric
