#pragma once

namespace Metric {
class CMetricImage;
}
class rkVideoImage;

/// A mask is a video whose marked pixels are left out of a measurement: they get one and the same colour in
/// every file. Marked are the pixels that have the colour of the mask frame's first black pixel, or of its
/// first one without a 0.

/// Finds the first marked pixel of a mask's frame, row by row from the frame's first row. `x` and `y` are its
/// place in the picture, counted from the top left: in `RGB24` and `RGB32` frames, whose rows lie bottom-up,
/// `y` counts from the last row.
///
/// A pixel is marked if its samples are all 0 (`blackMask`) or all other than 0. The samples are the luma, or
/// R, G and B; 16-bit ones count as a whole. False, with `x` and `y` as they are, if there is none or the
/// frame's layout has neither.
bool FindMaskPixel(const rkVideoImage& frame, bool blackMask, int& x, int& y);

/// Gives the colour of `mask` at (`x`, `y`) to every pixel of `image` where `mask` has exactly that colour,
/// compared as floats in all planes of the family. Does nothing unless both images have the same size and
/// family and hold the pixel.
void ApplyMask(Metric::CMetricImage& image, Metric::CMetricImage& mask, int x, int y);
