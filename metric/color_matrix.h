#pragma once

#include <array>

namespace Metric {

/// Weights of the float conversions between RGB and YUV, U and V centred on 0.
///
/// Y = r*R + g*G + b*B + lumaOffset, U and V alike without the offset;
/// R = lumaScale*(Y - lumaOffset) + u*U + v*V, G and B alike. The terms are added from left to right, in
/// float.
struct ColorMatrix {
    struct FromRgb {
        float r, g, b;
    };
    struct FromYuv {
        float u, v;
    };
    float lumaOffset;
    float lumaScale;
    std::array<FromRgb, 3> yuv;  ///< rows Y, U, V
    std::array<FromYuv, 3> rgb;  ///< rows R, G, B
};

/// REC.601: Y in 16 to 235, U and V in -112 to 112.
constexpr ColorMatrix kRec601 = {
    16.0f,
    1.164f,
    {{{0.257f, 0.504f, 0.098f}, {-0.148f, -0.291f, 0.439f}, {0.439f, -0.368f, -0.071f}}},
    {{{0.0f, 1.596f}, {-0.391f, -0.813f}, {2.018f, 0.0f}}},
};

/// PC.601: the full range of 0 to 255.
constexpr ColorMatrix kPc601 = {
    0.0f,
    1.0f,
    {{{0.299f, 0.587f, 0.114f}, {-0.147f, -0.289f, 0.436f}, {0.615f, -0.515f, -0.100f}}},
    {{{0.0f, 1.14f}, {-0.395f, -0.581f}, {2.032f, 0.0f}}},
};

/// The matrix of the number that settings store: 1 is PC.601, everything else REC.601.
constexpr const ColorMatrix& MatrixOf(int number) {
    return number == 1 ? kPc601 : kRec601;
}

}  // namespace Metric
