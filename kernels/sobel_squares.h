#pragma once

namespace Kernels {

/// Float planes of one size, with 0 outside; `stride` is bytes from row to row.
template <int kCount>
struct SobelPlanes {
    const float* pixels[kCount];
    int stride;
    int width;
    int height;
};

/// The greatest gradient of both planes as the square of its length: `FilterSobelVertBorder` squared plus
/// `FilterSobelHorizBorder` squared, a NaN passed over; 0 for empty planes. Rows need no alignment. Allocates
/// nothing; any thread; big planes are shared out to a team.
float GreatestSobelSquare(const SobelPlanes<2>& planes);

}  // namespace Kernels
