#include "video/convert.h"
#include "video/video_image.h"

#include <algorithm>
#include <cstdint>

// Luma and chroma bytes to RGB bytes, all in double. What a chroma pair adds to every pixel that shares it is
// computed once; the sums stay in the order of their definition, so the bits are those of the sum for each
// pixel.

namespace {

struct ChromaTerms {
    double r, g, b;  // to which the luma is added
};

ChromaTerms TermsOf(int uByte, int vByte) {
    const double u = uByte - 128;
    const double v = vByte - 128;
    return {v * 1.14 + 0.5, (0.5 - u * 0.395) - v * 0.581, u * 2.032 + 0.5};
}

std::uint8_t ToByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(static_cast<int>(value), 0, 255));
}

void WriteBgr(std::uint8_t* bgr, int luma, const ChromaTerms& terms) {
    bgr[0] = ToByte(terms.b + luma);
    bgr[1] = ToByte(terms.g + luma);
    bgr[2] = ToByte(terms.r + luma);
}

template <int pixelBytes>
void YuvToRgb(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* luma = source.Row(0, y);
        const std::uint8_t* u = source.Row(1, y);
        const std::uint8_t* v = source.Row(2, y);
        std::uint8_t* pixels = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x) {
            WriteBgr(pixels + pixelBytes * x, luma[x], TermsOf(u[x], v[x]));
        }
    }
}

// The chroma row or column that pixel `position` takes along a side. The last block of an odd side is moved
// back by one to stay inside the picture, and so the pixel before the last takes its chroma as well.
int ChromaIndex(int position, int side) {
    const bool inMovedBlock = side % 2 == 1 && position == side - 2;
    return inMovedBlock ? side / 2 : position / 2;
}

}  // namespace

void rkYuvToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    YuvToRgb<3>(source, target);
}

void rkYuvToRgb32(const rkVideoImage& source, rkVideoImage& target) {
    YuvToRgb<4>(source, target);
}

void rkYuy2ToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    const int width = source.VisibleWidth();
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* pairs = source.Row(0, y);  // an odd last pair is completed by the padding
        std::uint8_t* pixels = target.Row(0, y);
        for (int x = 0; x < width; x += 2, pairs += 4) {
            const ChromaTerms terms = TermsOf(pairs[1], pairs[3]);
            WriteBgr(pixels + 3 * x, pairs[0], terms);
            if (x + 1 < width) WriteBgr(pixels + 3 * (x + 1), pairs[2], terms);
        }
    }
}

void rkPlanar420ToRgb24(const rkVideoImage& source, rkVideoImage& target) {
    const int width = source.VisibleWidth();
    const int height = source.VisibleHeight();
    const int uPlane = source.ColorSpace() == YV12 ? 2 : 1;
    for (int y = 0; y < height; ++y) {
        const int chromaRow = ChromaIndex(y, height);
        const std::uint8_t* luma = source.Row(0, y);
        const std::uint8_t* u = source.Row(uPlane, chromaRow);
        const std::uint8_t* v = source.Row(3 - uPlane, chromaRow);
        std::uint8_t* pixels = target.Row(0, y);
        for (int x = 0; x < width; ++x) {
            const int i = ChromaIndex(x, width);
            WriteBgr(pixels + 3 * x, luma[x], TermsOf(u[i], v[i]));
        }
    }
}

void rkLumaToRgb32(const rkVideoImage& source, rkVideoImage& target) {
    for (int y = 0; y < source.VisibleHeight(); ++y) {
        const std::uint8_t* luma = source.Row(0, y);
        std::uint8_t* pixels = target.Row(0, y);
        for (int x = 0; x < source.VisibleWidth(); ++x) std::fill_n(pixels + 4 * x, 3, luma[x]);
    }
}
