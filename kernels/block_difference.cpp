#include "kernels/block_difference.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/block_difference.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

int Difference(const std::uint8_t* block, std::ptrdiff_t blockStride, const std::uint8_t* first,
               const std::uint8_t* second, std::ptrdiff_t stride, int side) {
    int sum = 0;
    for (int y = 0; y < side; ++y, block += blockStride, first += stride) {
        for (int x = 0; x < side; ++x)
            sum += std::abs(block[x] - (second == nullptr ? first[x] : (first[x] + second[x] + 1) / 2));
        if (second != nullptr) second += stride;
    }
    return sum;
}

#else

// One row of 8 or 16 pixels.
template <int kSide>
struct WideRows {
    static constexpr int kRowsAtOnce = 1;
    static HWY_INLINE auto Load(const std::uint8_t* rows, std::ptrdiff_t) {
        return hn::LoadU(hn::FixedTag<std::uint8_t, kSide>(), rows);
    }
};

// Four rows of 4 pixels, together one vector.
struct NarrowRows {
    static constexpr int kRowsAtOnce = 4;
    static HWY_INLINE auto Load(const std::uint8_t* rows, std::ptrdiff_t stride) {
        HWY_ALIGN std::uint32_t pixels[4];
        for (int y = 0; y < 4; ++y) std::memcpy(pixels + y, rows + y * stride, sizeof pixels[y]);
        return hn::BitCast(hn::FixedTag<std::uint8_t, 16>(),
                           hn::Load(hn::FixedTag<std::uint32_t, 4>(), pixels));
    }
};

template <class Rows, bool kMean>
HWY_INLINE int SumRows(const std::uint8_t* HWY_RESTRICT block, std::ptrdiff_t blockStride,
                       const std::uint8_t* first, const std::uint8_t* second, std::ptrdiff_t stride,
                       int side) {
    using Pixels = decltype(Rows::Load(block, 0));
    const hn::Repartition<std::uint64_t, hn::DFromV<Pixels> > d;
    auto sums = hn::Zero(d);
    for (int y = 0; y < side; y += Rows::kRowsAtOnce) {
        auto other = Rows::Load(first + y * stride, stride);
        if (kMean) other = hn::AverageRound(other, Rows::Load(second + y * stride, stride));
        const auto pixels = Rows::Load(block + y * blockStride, blockStride);
        const auto difference = hn::Or(hn::SaturatedSub(pixels, other), hn::SaturatedSub(other, pixels));
        sums = hn::Add(sums, hn::SumsOf8(difference));
    }
    return static_cast<int>(hn::GetLane(hn::SumOfLanes(d, sums)));
}

template <class Rows>
HWY_INLINE int SumBlock(const std::uint8_t* block, std::ptrdiff_t blockStride, const std::uint8_t* first,
                        const std::uint8_t* second, std::ptrdiff_t stride, int side) {
    if (second == nullptr) return SumRows<Rows, false>(block, blockStride, first, first, stride, side);
    return SumRows<Rows, true>(block, blockStride, first, second, stride, side);
}

int Difference(const std::uint8_t* block, std::ptrdiff_t blockStride, const std::uint8_t* first,
               const std::uint8_t* second, std::ptrdiff_t stride, int side) {
    switch (side) {
        case 16:
            return SumBlock<WideRows<16> >(block, blockStride, first, second, stride, 16);
        case 8:
            return SumBlock<WideRows<8> >(block, blockStride, first, second, stride, 8);
        default:
            return SumBlock<NarrowRows>(block, blockStride, first, second, stride, 4);
    }
}

#endif

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(Difference);
}  // namespace

int BlockDifference(const std::uint8_t* block, int blockStride, const std::uint8_t* first,
                    const std::uint8_t* second, int stride, int side) {
    return HWY_DYNAMIC_DISPATCH(Difference)(block, blockStride, first, second, stride, side);
}

}  // namespace Kernels
#endif
