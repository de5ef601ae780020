#pragma once

namespace Kernels {

/// A part of a plane, in pixels.
struct Rectangle {
    int x;
    int y;
    int width;
    int height;
};

/// Bilinear resampling of a rectangle of the source, on grids with a common centre: target column x lies at
/// column (x + 0.5) / xFactor - 0.5 of the rectangle, rows likewise; beyond the rectangle's outer pixels
/// these repeat. A target pixel is the sum of four pixels times their weights, added in float in the order
/// top left, top right, bottom left, bottom right; a weight is the product of the floats for column and row.
/// With both factors 0.5 that is the mean of a square of 2 by 2 pixels, which is made by `Halve`; an odd last
/// column or row is dropped.
///
/// Float planes; a stride is the bytes from row to row. The planes may not overlap. What of the rectangle
/// lies outside the source is cut off; if nothing is left, the target stays as it is. Factors are above 0.
/// Any thread; halving is shared out to a team, other factors take the plain loop of the reference.
void ResizeLinear(const float* source, int sourceStride, int sourceWidth, int sourceHeight,
                  const Rectangle& rectangle, float* target, int targetStride, int targetWidth,
                  int targetHeight, double xFactor, double yFactor);

/// What is left of a rectangle inside a plane that begins at (0, 0); sides of 0 or less if nothing is.
Rectangle CutToPlane(const Rectangle& rectangle, int width, int height);

}  // namespace Kernels
