#pragma once

#include <cstdint>

namespace Kernels {

// Pixel by pixel, on float planes. A stride is the bytes from row to row; rows need no alignment. Sources and
// target are the same plane or don't overlap. Any thread; big planes are shared out to a team.

/// target = source * source
void Sqr(const float* source, int sourceStride, float* target, int targetStride, int width, int height);
void SqrInPlace(float* plane, int stride, int width, int height);

/// Each pixel's square root; a negative pixel becomes NaN.
void SqrtInPlace(float* plane, int stride, int width, int height);

/// target = first * second
void Mul(const float* first, int firstStride, const float* second, int secondStride, float* target,
         int targetStride, int width, int height);

/// target = target + source
void AddInPlace(const float* source, int sourceStride, float* target, int targetStride, int width,
                int height);

void CopyPlane(const float* source, int sourceStride, float* target, int targetStride, int width, int height);

/// Each value rounded to the nearest integer, an exact half to the even one, and limited to the range from 0
/// to 255. A NaN becomes 0.
void ConvertToBytes(const float* source, int sourceStride, std::uint8_t* target, int targetStride, int width,
                    int height);

}  // namespace Kernels
