#include "kernels/arithmetic.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/arithmetic.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void MulRow(const float* first, const float* second, float* target, int width) {
    ForEachVector<float>(width, [=](auto d, int x) HWY_ATTR {
        hn::StoreU(hn::Mul(hn::LoadU(d, first + x), hn::LoadU(d, second + x)), d, target + x);
    });
}

void AddRow(const float* source, float* target, int width) {
    ForEachVector<float>(width, [=](auto d, int x) HWY_ATTR {
        hn::StoreU(hn::Add(hn::LoadU(d, target + x), hn::LoadU(d, source + x)), d, target + x);
    });
}

void SqrtRow(float* row, int width) {
    ForEachVector<float>(
        width, [=](auto d, int x) HWY_ATTR { hn::StoreU(hn::Sqrt(hn::LoadU(d, row + x)), d, row + x); });
}

void BytesRow(const float* source, std::uint8_t* target, int width) {
    ForEachVector<float>(width, [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<std::uint8_t, decltype(d)> bytes;
        const auto value = hn::LoadU(d, source + x);
        const auto positive = hn::IfThenElseZero(hn::Gt(value, hn::Zero(d)), value);  // drops a NaN
        const auto limited = hn::Min(positive, hn::Set(d, 255.0f));
        hn::StoreU(hn::DemoteTo(bytes, hn::NearestInt(limited)), bytes, target + x);
    });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(MulRow);
HWY_EXPORT(AddRow);
HWY_EXPORT(SqrtRow);
HWY_EXPORT(BytesRow);

}  // namespace

void Sqr(const float* source, int sourceStride, float* target, int targetStride, int width, int height) {
    Mul(source, sourceStride, source, sourceStride, target, targetStride, width, height);
}

void SqrInPlace(float* plane, int stride, int width, int height) {
    Sqr(plane, stride, plane, stride, width, height);
}

void SqrtInPlace(float* plane, int stride, int width, int height) {
    const auto sqrtRow = HWY_DYNAMIC_DISPATCH(SqrtRow);
    ForEachRow(
        width, height, [=](int y) { sqrtRow(Row(plane, stride, y), width); }, kLightPixelsPerThread);
}

void Mul(const float* first, int firstStride, const float* second, int secondStride, float* target,
         int targetStride, int width, int height) {
    const auto mulRow = HWY_DYNAMIC_DISPATCH(MulRow);
    ForEachRow(
        width, height,
        [=](int y) {
            mulRow(Row(first, firstStride, y), Row(second, secondStride, y), Row(target, targetStride, y),
                   width);
        },
        kLightPixelsPerThread);
}

void AddInPlace(const float* source, int sourceStride, float* target, int targetStride, int width,
                int height) {
    const auto addRow = HWY_DYNAMIC_DISPATCH(AddRow);
    ForEachRow(
        width, height,
        [=](int y) { addRow(Row(source, sourceStride, y), Row(target, targetStride, y), width); },
        kLightPixelsPerThread);
}

void CopyPlane(const float* source, int sourceStride, float* target, int targetStride, int width,
               int height) {
    const std::size_t bytes = sizeof(float) * static_cast<std::size_t>(width > 0 ? width : 0);
    ForEachRow(
        width, height,
        [=](int y) { std::memmove(Row(target, targetStride, y), Row(source, sourceStride, y), bytes); },
        kLightPixelsPerThread);
}

void ConvertToBytes(const float* source, int sourceStride, std::uint8_t* target, int targetStride, int width,
                    int height) {
    const auto bytesRow = HWY_DYNAMIC_DISPATCH(BytesRow);
    ForEachRow(
        width, height,
        [=](int y) { bytesRow(Row(source, sourceStride, y), Row(target, targetStride, y), width); },
        kLightPixelsPerThread);
}

}  // namespace Kernels
#endif
