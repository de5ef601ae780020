#pragma once

#include <optional>

#include "metric/sample_plane.h"

class rkVideoImage;

namespace Metric {

/// The planes of a frame of 8-bit samples that can be read where they lie: the planar and the interleaved
/// layouts of the YUV and the RGB family, RGB rows lying bottom-up. None for the others, which have to be
/// unpacked first. The frame has pixels; the planes point into it.
std::optional<SamplePlanes> SamplesInPlace(const rkVideoImage& frame);

}  // namespace Metric
