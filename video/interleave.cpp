#include "video/interleave.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "video/interleave.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void SplitRow(const std::uint8_t* pixels, std::uint8_t* first, std::uint8_t* second, std::uint8_t* third,
              int width) {
    ForEachVector<std::uint8_t>(width, [=](auto d, int x) HWY_ATTR {
        hn::Vec<decltype(d)> a, b, c;
        hn::LoadInterleaved3(d, pixels + 3 * x, a, b, c);
        hn::StoreU(a, d, first + x);
        hn::StoreU(b, d, second + x);
        hn::StoreU(c, d, third + x);
    });
}

void JoinRow(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* third,
             std::uint8_t* pixels, int width) {
    ForEachVector<std::uint8_t>(width, [=](auto d, int x) HWY_ATTR {
        hn::StoreInterleaved3(hn::LoadU(d, first + x), hn::LoadU(d, second + x), hn::LoadU(d, third + x), d,
                              pixels + 3 * x);
    });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {
namespace {
HWY_EXPORT(SplitRow);
HWY_EXPORT(JoinRow);
}  // namespace
}  // namespace Kernels

void rkSplitRow(const std::uint8_t* pixels, std::uint8_t* first, std::uint8_t* second, std::uint8_t* third,
                int width) {
    using namespace Kernels;
    HWY_DYNAMIC_DISPATCH(SplitRow)(pixels, first, second, third, width);
}

void rkJoinRow(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* third,
               std::uint8_t* pixels, int width) {
    using namespace Kernels;
    HWY_DYNAMIC_DISPATCH(JoinRow)(first, second, third, pixels, width);
}
#endif
