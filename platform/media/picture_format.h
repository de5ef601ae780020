#pragma once

#include <string>

#include "platform/media/libav.h"
#include "platform/media/surface.h"

/// What a decoder's pictures become: decided by their pixel format alone, so that nothing is lost unsaid.

/// The surface that keeps the chroma form of the pictures: 4:2:0 of even sizes is YV12 and 4:2:2 of an even width is
/// YUY2, whatever their depth and arrangement; all else is RGB24.
Surface NaturalSurface(AVPixelFormat format, int width, int height);

/// Whether pictures of `format` can be handed over as `surface`: as their natural one, or as RGB24.
bool CanConvert(AVPixelFormat format, int width, int height, Surface surface);

/// What the way from `format` to `surface` changes in the samples, in plain words such as "full range converted to video
/// range", "10-bit 4:2:0 rounded to 8 bits" or "4:4:4 converted to RGB"; several are joined by commas. Empty if every
/// sample stays what it is.
std::string DescribeConversion(AVPixelFormat format, AVColorRange range, Surface surface);

/// Whether samples of this format use all values instead of the video range. Grey counts as full unless it is
/// declared as video range, RGB always.
bool IsFullRange(AVPixelFormat format, AVColorRange range);

/// How an arrangement of samples is read. A format is one of these or `Other`, which the library's scaler turns
/// into RGB.
enum class PixelKind { Yuv420, Yuv422, Rgb, Palette, Grey, Other };
PixelKind PixelKindOf(AVPixelFormat format);
