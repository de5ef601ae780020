#pragma once

#include "kernels/arithmetic.h"
#include "kernels/rows.h"

#include <algorithm>
#include <cmath>

namespace Kernels::Reference {

/// target(x, y) = value(source(x, y), target(x, y))
template <class Target, class Value>
void ForEachPixel(const float* source, int sourceStride, Target* target, int targetStride, int width,
                  int height, const Value& value) {
    for (int y = 0; y < height; ++y) {
        const float* from = Row(source, sourceStride, y);
        Target* to = Row(target, targetStride, y);
        for (int x = 0; x < width; ++x) to[x] = value(from[x], to[x]);
    }
}

inline void Sqr(const float* source, int sourceStride, float* target, int targetStride, int width,
                int height) {
    ForEachPixel(source, sourceStride, target, targetStride, width, height,
                 [](float s, float) { return s * s; });
}

inline void SqrInPlace(float* plane, int stride, int width, int height) {
    Reference::Sqr(plane, stride, plane, stride, width, height);
}

inline void SqrtInPlace(float* plane, int stride, int width, int height) {
    ForEachPixel(plane, stride, plane, stride, width, height, [](float s, float) { return std::sqrt(s); });
}

inline void Mul(const float* first, int firstStride, const float* second, int secondStride, float* target,
                int targetStride, int width, int height) {
    for (int y = 0; y < height; ++y) {
        const float* a = Row(first, firstStride, y);
        const float* b = Row(second, secondStride, y);
        float* to = Row(target, targetStride, y);
        for (int x = 0; x < width; ++x) to[x] = a[x] * b[x];
    }
}

inline void AddInPlace(const float* source, int sourceStride, float* target, int targetStride, int width,
                       int height) {
    ForEachPixel(source, sourceStride, target, targetStride, width, height,
                 [](float s, float t) { return t + s; });
}

inline void CopyPlane(const float* source, int sourceStride, float* target, int targetStride, int width,
                      int height) {
    ForEachPixel(source, sourceStride, target, targetStride, width, height, [](float s, float) { return s; });
}

inline void ConvertToBytes(const float* source, int sourceStride, std::uint8_t* target, int targetStride,
                           int width, int height) {
    ForEachPixel(source, sourceStride, target, targetStride, width, height, [](float s, std::uint8_t) {
        if (!(s > 0)) return std::uint8_t{0};  // a NaN too
        return static_cast<std::uint8_t>(std::nearbyint(std::min(s, 255.0f)));
    });
}

}  // namespace Kernels::Reference
