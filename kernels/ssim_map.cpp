#include "kernels/ssim_map.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/ssim_map.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/ssim_rows-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void MapRow(const SSIMMoments& moments, float* map, int width, float c1, float c2) {
    SSIMRow(moments, map, width, c1, c2);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(MapRow);

SSIMMoments RowOf(const SSIMMoments& moments, int y) {
    const int stride = moments.stride;
    return {Row(moments.meanX, stride, y),   Row(moments.meanY, stride, y),   Row(moments.squareX, stride, y),
            Row(moments.squareY, stride, y), Row(moments.product, stride, y), stride};
}

}  // namespace

void SSIMMap(const SSIMMoments& moments, float* map, int mapStride, int width, int height, float c1,
             float c2) {
    const auto mapRow = HWY_DYNAMIC_DISPATCH(MapRow);
    ForEachRow(width, height,
               [=](int y) { mapRow(RowOf(moments, y), Row(map, mapStride, y), width, c1, c2); });
}

}  // namespace Kernels
#endif
