#include "kernels/painting.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/painting.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/greys-inl.h"
#include "kernels/pixels-inl.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void SpreadRow(const std::uint8_t* greys, int width, std::uint8_t* pixels) {
    ForEachVector<std::uint8_t>(width, [=](auto d, int x) HWY_ATTR {
        const auto grey = hn::LoadU(d, greys + x);
        hn::StoreInterleaved3(grey, grey, grey, d, pixels + 3 * x);
    });
}

// A row in pieces, so that its greys stay at hand. greysOf(d, values) makes them.
template <class GreysOf>
HWY_INLINE void PaintRow(const float* row, int width, std::uint8_t* pixels, const GreysOf& greysOf) {
    constexpr int kPiece = 512;
    HWY_ALIGN std::uint8_t greys[kPiece];
    for (int begin = 0; begin < width; begin += kPiece) {
        const int count = std::min(kPiece, width - begin);
        ForEachVector<float>(count, [&](auto d, int x) HWY_ATTR {
            const hn::Rebind<std::uint8_t, decltype(d)> bytes;
            hn::StoreU(greysOf(d, hn::LoadU(d, row + begin + x)), bytes, greys + x);
        });
        SpreadRow(greys, count, pixels + 3 * begin);
    }
}

void GreyRow(const float* row, int width, std::uint8_t* pixels) {
    PaintRow(row, width, pixels, [](auto d, auto values) HWY_ATTR { return Greys(d, values); });
}

void SimilarityRow(const float* row, int width, std::uint8_t* pixels) {
    PaintRow(row, width, pixels,
             [](auto d, auto values) HWY_ATTR { return Greys(d, Dissimilarity(d, values)); });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(SpreadRow);
HWY_EXPORT(GreyRow);
HWY_EXPORT(SimilarityRow);

}  // namespace

void PaintGrey(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width,
               int height) {
    const auto greyRow = HWY_DYNAMIC_DISPATCH(GreyRow);
    ForEachRow(width, height,
               [=](int y) { greyRow(Row(plane, stride, y), width, Row(picture, pictureStride, y)); });
}

void PaintSimilarity(const float* plane, int stride, std::uint8_t* picture, int pictureStride, int width,
                     int height) {
    const auto similarityRow = HWY_DYNAMIC_DISPATCH(SimilarityRow);
    ForEachRow(width, height,
               [=](int y) { similarityRow(Row(plane, stride, y), width, Row(picture, pictureStride, y)); });
}

void SpreadGreys(const std::uint8_t* greys, int width, std::uint8_t* pixels) {
    HWY_DYNAMIC_DISPATCH(SpreadRow)(greys, width, pixels);
}

}  // namespace Kernels
#endif
