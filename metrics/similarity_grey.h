#pragma once

#include "metric/painting.h"

namespace Metric {

/// The grey of a structural similarity: black for 1, white for 0; below 0 it wraps around.
inline Bgr SimilarityGrey(float similarity) {
    return Grey(255 - similarity * 255);
}

}  // namespace Metric
