#pragma once

namespace Metric {

/// Lightness L, 0 to 100, of a luma on the scale of 0 to 255: 116 * t^0.33333 - 16 with t = luma / 255 where
/// t is above 0.008856, else 903.3 * t; in double, the exponent widened from float, the result rounded to
/// float.
///
/// Source: CIE 1976 lightness, 255 being the white's luminance. The exponent is a trace below the third.
float Lightness(float luma);

/// Builds the tables of `LightnessRow`, which does that itself on first use: for callers that can't let its
/// std::bad_alloc out. Any thread.
void MakeLightnessTables();

/// `Lightness` of `count` lumas, the same bits (a -0 counting as 0), in place if wanted. Lumas as 8- to
/// 16-bit samples give them are looked up, others are found near a table's points; the tables are built on
/// first use. Any thread.
void LightnessRow(const float* luma, float* lightness, int count);

}  // namespace Metric
