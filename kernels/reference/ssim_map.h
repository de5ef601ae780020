#pragma once

#include "kernels/rows.h"
#include "kernels/ssim_map.h"

namespace Kernels::Reference {

/// map(x, y) = value(mx, my, mxx, myy, mxy)
template <class Value>
void ForEachMoments(const SSIMMoments& moments, float* map, int mapStride, int width, int height,
                    const Value& value) {
    for (int y = 0; y < height; ++y) {
        const float* meanX = Row(moments.meanX, moments.stride, y);
        const float* meanY = Row(moments.meanY, moments.stride, y);
        const float* squareX = Row(moments.squareX, moments.stride, y);
        const float* squareY = Row(moments.squareY, moments.stride, y);
        const float* product = Row(moments.product, moments.stride, y);
        float* to = Row(map, mapStride, y);
        for (int x = 0; x < width; ++x) {
            to[x] = static_cast<float>(value(meanX[x], meanY[x], squareX[x], squareY[x], product[x]));
        }
    }
}

inline void SSIMMap(const SSIMMoments& moments, float* map, int mapStride, int width, int height, float c1,
                    float c2) {
    constexpr double kVanishing = 2.220446e-16;  // the double epsilon
    const float c12 = c1 + c2;
    const auto value = [=](double mx, double my, double mxx, double myy, double mxy) {
        const double a = mx * my + c1 + mx * my;
        const double b = my * my + mx * mx + c1;
        const double d = ((mxx + myy + c12) - b) * b;
        if (d < kVanishing) return b < kVanishing ? 1 : a / b;
        return ((mxy + mxy + (c12 - a)) * a) / d;
    };
    ForEachMoments(moments, map, mapStride, width, height, value);
}

inline void ContrastStructureMap(const SSIMMoments& moments, float* map, int mapStride, int width, int height,
                                 double c2) {
    const auto value = [=](float mx, float my, float mxx, float myy, float mxy) {
        const float covariance = mxy - mx * my;
        const float variances = (mxx - mx * mx) + (myy - my * my);
        return (double{covariance + covariance} + c2) / (double{variances} + c2);
    };
    ForEachMoments(moments, map, mapStride, width, height, value);
}

}  // namespace Kernels::Reference
