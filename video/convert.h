#pragma once

class rkVideoImage;

/// Conversions between layouts. Each reads the source's visible picture and writes the target's, whose
/// geometry of the same visible size and whose block stand; it may write on into the target's padding, which
/// the caller writes afterwards. Both sides are at least 1. Allocates nothing; different targets may be
/// filled at once.
using rkConversion = void (*)(const rkVideoImage& source, rkVideoImage& target);

/// Null for a pair without a conversion, two equal tags included.
rkConversion rkFindConversion(int sourceColorSpace, int targetColorSpace);

// From planar samples, 8 bits or deep, reduced to bytes; chroma replicated.
void rkPlanarToPlanes(const rkVideoImage& source, rkVideoImage& target);  ///< to `YUV`
void rkDeepToPlanes(const rkVideoImage& source, rkVideoImage& target);    ///< to `YUV` or `RGBP`
void rkLumaToYuv(const rkVideoImage& source, rkVideoImage& target);       ///< U and V become 0

// From and to interleaved 4:2:2.
void rkYuy2ToYuv(const rkVideoImage& source, rkVideoImage& target);
void rkUyvyToYuv(const rkVideoImage& source, rkVideoImage& target);
void rkY410ToYuv(const rkVideoImage& source, rkVideoImage& target);
void rkYv16ToYuy2(const rkVideoImage& source, rkVideoImage& target);

// From RGB bytes to luma and chroma.
void rkRgb24ToYuv(const rkVideoImage& source, rkVideoImage& target);
void rkRgb32ToYuv(const rkVideoImage& source, rkVideoImage& target);
void rkRgb24ToYuy2(const rkVideoImage& source, rkVideoImage& target);
void rkRgb32ToLuma(const rkVideoImage& source, rkVideoImage& target);
void rkRgb24ToYuvq(const rkVideoImage& source, rkVideoImage& target);
void rkRgb24ToYrgn(const rkVideoImage& source, rkVideoImage& target);

// From luma and chroma to RGB bytes.
void rkYuvToRgb24(const rkVideoImage& source, rkVideoImage& target);
void rkYuvToRgb32(const rkVideoImage& source, rkVideoImage& target);
void rkYuy2ToRgb24(const rkVideoImage& source, rkVideoImage& target);
void rkPlanar420ToRgb24(const rkVideoImage& source, rkVideoImage& target);
void rkLumaToRgb32(const rkVideoImage& source, rkVideoImage& target);

// Between arrangements of RGB bytes.
void rkRgb24ToRgb32(const rkVideoImage& source, rkVideoImage& target);
void rkRgb32ToRgb24(const rkVideoImage& source, rkVideoImage& target);
void rkRgb24ToRgbp(const rkVideoImage& source, rkVideoImage& target);
void rkRgbpToRgb24(const rkVideoImage& source, rkVideoImage& target);
void rkRgb24ToGdif(const rkVideoImage& source, rkVideoImage& target);
void rkGdifToRgb24(const rkVideoImage& source, rkVideoImage& target);
