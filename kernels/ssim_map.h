#pragma once

namespace Kernels {

/// What SSIM is made of: the windowed means of two pictures x and y, of their squares and of their product.
/// Float planes of one size, whose rows lie `stride` bytes apart.
struct SSIMMoments {
    const float* meanX;
    const float* meanY;
    const float* squareX;
    const float* squareY;
    const float* product;
    int stride;
};

/// SSIM of each pixel,
///
///     (2 mx my + c1) (2 (mxy - mx my) + c2) / ((mx^2 + my^2 + c1) (mxx - mx^2 + myy - my^2 + c2)),
///
/// 1 for equal pictures. Where the denominator vanishes it is the luminance term alone, or 1 if that one's
/// vanishes too. Computed in double in one fixed order and rounded to float once; c1 + c2 is a float.
///
/// Source  Wang, Bovik, Sheikh, Simoncelli, "Image quality assessment: from error visibility to structural
///         similarity", IEEE Trans. Image Processing 13(4), 2004.
///
/// The map may be one of the five planes. Any thread; big planes are shared out to a team.
void SSIMMap(const SSIMMoments& moments, float* map, int mapStride, int width, int height, float c1,
             float c2);

}  // namespace Kernels
