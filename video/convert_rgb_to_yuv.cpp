#include "video/convert.h"
#include "video/video_image.h"

#include <algorithm>
#include <cstdint>

// RGB bytes to luma and chroma. The order of the additions and their precision (luma in double, chroma in
// float) belong to the result: values that end near an integer come out one off otherwise.

namespace {

struct Pixel {
    int r, g, b;
};

Pixel PixelAt(const std::uint8_t* bgr) {
    return {bgr[2], bgr[1], bgr[0]};
}

template <typename Real>
std::uint8_t ToByte(Real value) {
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(value), 0, 255));
}

std::uint8_t Luma(const Pixel& p) {
    return ToByte(p.r * 0.299 + 0.5 + p.g * 0.587 + p.b * 0.114);
}

// r, g, b weights of a chroma sum, which carries the 128 of the byte form and a half for rounding.
float ChromaSum(const Pixel& p, float r, float g, float b) {
    return static_cast<float>(p.r) * r + 128.5F + static_cast<float>(p.g) * g + static_cast<float>(p.b) * b;
}

float SumU(const Pixel& p) {
    return ChromaSum(p, -0.147F, -0.289F, 0.436F);
}
float SumV(const Pixel& p) {
    return ChromaSum(p, 0.615F, -0.515F, -0.100F);
}

int IntegerLuma(const Pixel& p) {
    return (306 * p.r + 601 * p.g + 117 * p.b) >> 10;
}  // the weights add up to 1024

// Calls `write` with every pixel and its places in the three planes.
template <int pixelBytes, typename WritePixel>
void RgbToPlanes(const rkVideoImage& source, rkVideoImage& target, const WritePixel& write) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* pixels = source.Row(0, y);
        std::uint8_t* planes[] = {target.Row(0, y), target.Row(1, y), target.Row(2, y)};
        for (int x = 0; x < source.VisibleWidth(); ++x) {
            write(PixelAt(pixels + pixelBytes * x), planes[0] + x, planes[1] + x, planes[2] + x);
        }
    }
}

void WriteYuv(const Pixel& p, std::uint8_t* y, std::uint8_t* u, std::uint8_t* v) {
    *y = Luma(p);
    *u = ToByte(SumU(p));
    *v = ToByte(SumV(p));
}

void WriteYuvq(const Pixel& p, std::uint8_t* y, std::uint8_t* u, std::uint8_t* v) {
    *y = static_cast<std::uint8_t>(IntegerLuma(p));
    *u = ToByte(ChromaSum(p, -0.148F, -0.291F, 0.439F));
    *v = ToByte(ChromaSum(p, 0.439F, -0.368F, -0.071F));
}

void WriteYrgn(const Pixel& p, std::uint8_t* y, std::uint8_t* red, std::uint8_t* green) {
    const int sum = p.r + p.g + p.b + 1;
    *y = static_cast<std::uint8_t>(IntegerLuma(p));
    *red = static_cast<std::uint8_t>(255 * p.r / sum);
    *green = static_cast<std::uint8_t>(255 * p.g / sum);
}

}  // namespace

void rkRgb24ToYuv(const rkVideoImage& source, rkVideoImage& target) {
    RgbToPlanes<3>(source, target, WriteYuv);
}

void rkRgb32ToYuv(const rkVideoImage& source, rkVideoImage& target) {
    RgbToPlanes<4>(source, target, WriteYuv);
}

void rkRgb24ToYuvq(const rkVideoImage& source, rkVideoImage& target) {
    RgbToPlanes<3>(source, target, WriteYuvq);
}

void rkRgb24ToYrgn(const rkVideoImage& source, rkVideoImage& target) {
    RgbToPlanes<3>(source, target, WriteYrgn);
}

void rkRgb32ToLuma(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* pixels = source.Row(0, y);
        std::uint8_t* luma = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x) luma[x] = Luma(PixelAt(pixels + 4 * x));
    }
}

void rkRgb24ToYuy2(const rkVideoImage& source, rkVideoImage& target) {
    const int width = source.VisibleWidth();
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* pixels = source.Row(0, y);
        std::uint8_t* pairs = target.Row(0, y);
        for (int x = 0; x + 1 < width; x += 2, pixels += 6, pairs += 4) {
            const Pixel left = PixelAt(pixels);
            const Pixel right = PixelAt(pixels + 3);
            pairs[0] = Luma(left);
            pairs[1] = ToByte((SumU(left) + SumU(right)) * 0.5F);
            pairs[2] = Luma(right);
            pairs[3] = ToByte((SumV(left) + SumV(right)) * 0.5F);
        }
        if (width % 2 == 1) {
            pairs[0] = Luma(PixelAt(pixels));
            pairs[1] = ToByte(SumU(PixelAt(pixels)));
        }
    }
}
