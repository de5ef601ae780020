#pragma once

namespace Kernels {

/// `sum` plus all pixels of a float plane, added one at a time in memory order: rows from the top, pixels
/// from the left.
///
/// The order is part of the value, as each addition is rounded: to float, or in the second form to double.
/// The fast form has no chain of additions and yet gives the chain's bits. `stride` is bytes from row to row;
/// rows need no alignment. Allocates nothing; any thread; works alone.
///
/// Cost  for two million values near 1 with AVX-512: 0.2 ms in float, 0.35 in double; the chain takes 1.2.
///       Pixels that it can't add at once, such as many tiny ones to a big double, cost a little more than
///       the chain.
float OrderedSum(float sum, const float* plane, int stride, int width, int height);
double OrderedSum(double sum, const float* plane, int stride, int width, int height);

}  // namespace Kernels
