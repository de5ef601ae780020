#pragma once

#include <cstdint>

namespace Metric {

// Rows of a picture that is painted by products of powers: `PaintLevels`. A product is taken as a sum of
// logarithms, rows of doubles. It is off by less than 1e-12, and the grey is cut from it; only a pixel that
// lies too near to where the grey changes has to be worked out as it is defined, and hardly one does.
//
// Any thread; nothing is allocated. What is the same on every instruction set is the grey, not the sum.

/// weight * log(value) of each value: not a number below 0, `kUnsureLogarithm` for a value that is 0 or of a
/// size that no similarity has.
void WeighLogarithms(const float* values, int width, double weight, double* logarithms);
inline constexpr double kUnsureLogarithm = -1e9;

/// Adds to each sum that of the pixel over it: sums[x] += coarser[x / 2], or the last one beyond the edge.
void AddCoarser(const double* coarser, int coarserWidth, int width, double* sums);

/// The low 8 bits of (1 - e^sum) * 255, cut towards 0; 0 where the sum isn't a number. Puts the columns where
/// that isn't sure to `unsure`, which has room for `width`, and returns their number.
int GreysOfSums(const double* sums, int width, std::uint8_t* greys, int* unsure);

}  // namespace Metric
