#pragma once

#include <functional>

namespace Kernels {

/// How exactly a reduction adds. `AccuracyHigh`: in double, whatever the number of pixels.
enum AccuracyHint { AccuracyHigh };

/// The sums of a row. Pixel x goes to sum x % kSumLanes; the sums are added in ascending order to the row's
/// total, and the totals from the top row downward: the same bits on every instruction set and with any
/// number of threads.
inline constexpr int kSumLanes = 16;

// Float planes; a stride is the bytes from row to row. Rows need no alignment. Nothing is allocated; any
// thread; big planes are shared out to a team.

/// Square root of the sum of the squared differences of all pixels. The difference is a float; it is widened
/// and squared in double. 0 for empty planes.
double NormDiffL2(const float* first, int firstStride, const float* second, int secondStride, int width,
                  int height, AccuracyHint hint);

/// Fills two buffers with the `count` pixels of row `y` from `x` on, a multiple of 16, of two planes. May be
/// called by several threads at once; doesn't throw.
using PixelPairs = std::function<void(int x, int y, int count, float* first, float* second)>;

/// The same of planes that exist as far as they are being read only.
double NormDiffL2AsRead(const PixelPairs& make, int width, int height, AccuracyHint hint);

/// Mean of all pixels, summed in double. 0 for an empty plane.
double Mean(const float* plane, int stride, int width, int height, AccuracyHint hint);

/// The greatest pixel. A NaN is passed over, a zero comes back as +0; minus infinity when there is no other
/// pixel.
float Max(const float* plane, int stride, int width, int height);

}  // namespace Kernels
