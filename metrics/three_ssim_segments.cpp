#include "metrics/three_ssim_segments.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/three_ssim_segments.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/greys-inl.h"
#include "kernels/pixels-inl.h"
#include "kernels/sobel_squares-inl.h"

#include <algorithm>
#include <cmath>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
namespace kn = Kernels::HWY_NAMESPACE;

std::array<int, kSegmentCount> FindInBand(const Kernels::SobelPlanes<2>& pictures, const Kernels::Band& band,
                                          const SegmentThresholds& thresholds, std::uint8_t* segments) {
    const kn::SobelFloats d;
    const hn::Rebind<std::int32_t, kn::SobelFloats> integers;
    const hn::Rebind<std::uint8_t, kn::SobelFloats> bytes;
    std::size_t textures = 0;
    std::size_t edges = 0;
    kn::ForEachSobelSquare(pictures, band.first, band.end, [&](int x, int y, const auto& squares) HWY_ATTR {
        const auto left = static_cast<std::size_t>(pictures.width - x);
        const auto columns = hn::FirstN(d, left);
        const auto isEdge = hn::Ge(hn::Max(squares[0], squares[1]), hn::Set(d, thresholds.edge));
        const auto edge = hn::And(columns, isEdge);
        const auto isTexture = hn::AndNot(isEdge, hn::Ge(squares[0], hn::Set(d, thresholds.texture)));
        const auto texture = hn::And(columns, isTexture);
        textures += hn::CountTrue(d, texture);
        edges += hn::CountTrue(d, edge);
        const auto number = hn::IfThenElse(edge, hn::Set(d, float{Edge}),
                                           hn::IfThenElseZero(texture, hn::Set(d, float{Texture})));
        const auto found = hn::DemoteTo(bytes, hn::ConvertTo(integers, number));
        std::uint8_t* const target = segments + std::ptrdiff_t{y} * pictures.width + x;
        if (left >= hn::Lanes(d)) {
            hn::StoreU(found, bytes, target);
        } else {
            HWY_ALIGN std::uint8_t row[kn::kSobelLanes];
            hn::Store(found, bytes, row);
            std::copy_n(row, left, target);
        }
    });
    const auto textureCount = static_cast<int>(textures);
    const auto edgeCount = static_cast<int>(edges);
    return {pictures.width * (band.end - band.first) - textureCount - edgeCount, textureCount, edgeCount};
}

void PaintRow(const float* similarities, const std::uint8_t* segments, int width, std::uint8_t* pixels) {
    static_assert(Smooth == 0 && Texture == 1 && Edge == 2);  // the bytes of blue, green and red
    kn::ForEachVector<float>(width, [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<std::uint8_t, decltype(d)> bytes;
        const auto grey = kn::Greys(d, kn::Dissimilarity(d, hn::LoadU(d, similarities + x)));
        const auto segment = hn::LoadU(bytes, segments + x);
        const auto in = [=](Segment which) HWY_ATTR {
            return hn::IfThenElseZero(hn::Eq(segment, hn::Set(bytes, std::uint8_t{which})), grey);
        };
        hn::StoreInterleaved3(in(Smooth), in(Texture), in(Edge), bytes, pixels + 3 * x);
    });
}

}  // namespace
}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Metric {

namespace {

HWY_EXPORT(FindInBand);
HWY_EXPORT(PaintRow);

// Parts of the greatest gradient.
constexpr double kEdgeGradient = 0.12;
constexpr double kTextureGradient = 0.06;

/// The least number from 0 on whose root in float passes, where a greater one's does too. `near` is not far
/// off.
template <class Passes>
float LeastWithRoot(float near, const Passes& passes) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    float least = near;
    while (least > 0 && passes(std::sqrt(least))) least = std::nextafter(least, 0.0f);
    while (!passes(std::sqrt(least)) && least < kInfinity) least = std::nextafter(least, kInfinity);
    return least;
}

}  // namespace

SegmentThresholds ThresholdsOf(float greatest) {
    const double most = std::sqrt(greatest);
    const auto edge = static_cast<float>(most * kEdgeGradient);
    const auto texture = static_cast<float>(most * kTextureGradient);
    return {LeastWithRoot(edge * edge, [=](float gradient) { return gradient > edge; }),
            LeastWithRoot(texture * texture, [=](float gradient) { return gradient >= texture; })};
}

std::array<int, kSegmentCount> FindSegments(const Kernels::SobelPlanes<2>& pictures,
                                            const Kernels::Band& band, const SegmentThresholds& thresholds,
                                            std::uint8_t* segments) {
    return HWY_DYNAMIC_DISPATCH(FindInBand)(pictures, band, thresholds, segments);
}

void PaintSegments(const float* similarities, const std::uint8_t* segments, int width, std::uint8_t* pixels) {
    HWY_DYNAMIC_DISPATCH(PaintRow)(similarities, segments, width, pixels);
}

}  // namespace Metric
#endif
