#include "metric/metric_image.h"

#include <algorithm>

#include "metric/color_matrix.h"
#include "metric/deep_planes.h"
#include "metric/lightness.h"

namespace Metric {

namespace {

constexpr float kNeutralChroma = 128;
constexpr float kLargestByte = 255;
constexpr float kLightnessPeak = 100;

/// One byte plane to floats, less `offset`.
void LoadBytePlane(const std::uint8_t* samples, int stride, float offset, float* plane, int width,
                   int height) {
    for (int y = 0; y < height; ++y, samples += stride, plane += width)
        for (int x = 0; x < width; ++x) plane[x] = static_cast<float>(samples[x]) - offset;
}

/// One row of Y, U or V from rows of R, G and B.
void RowFromRgb(const float* r, const float* g, const float* b, ColorMatrix::FromRgb weight, float offset,
                float* row, int width) {
    for (int x = 0; x < width; ++x) row[x] = weight.r * r[x] + weight.g * g[x] + weight.b * b[x] + offset;
}

/// One row of R, G or B from rows of Y, U and V.
void RowFromYuv(const float* y, const float* u, const float* v, const ColorMatrix& matrix,
                ColorMatrix::FromYuv weight, float* row, int width) {
    const float scale = matrix.lumaScale;
    const float offset = matrix.lumaOffset;
    for (int x = 0; x < width; ++x) {
        const float sample = scale * (y[x] - offset) + weight.u * u[x] + weight.v * v[x];
        row[x] = std::min(kLargestByte, std::max(0.0f, sample));
    }
}

}  // namespace

CMetricImage::CMetricImage(int imageWidth, int imageHeight) : width(imageWidth), height(imageHeight) {
    for (auto& plane : planes) plane = Kernels::MakeFloatPlane(width, height);
}

float* CMetricImage::GetPlane(int component) {
    if (component < 0 || component >= kComponentCount) return nullptr;
    return planes[static_cast<std::size_t>(component)].get();
}

void CMetricImage::LoadYuvBytes(const std::uint8_t* samples, int stride, std::size_t planeBytes) {
    LoadBytePlane(samples, stride, 0, GetY(), width, height);
    LoadBytePlane(samples + planeBytes, stride, kNeutralChroma, GetU(), width, height);
    LoadBytePlane(samples + 2 * planeBytes, stride, kNeutralChroma, GetV(), width, height);
    family = FamilyYuv;
    peak = kLargestByte;
}

void CMetricImage::LoadRgbBytes(const std::uint8_t* samples, int stride, std::size_t planeBytes) {
    LoadBytePlane(samples, stride, 0, GetR(), width, height);
    LoadBytePlane(samples + planeBytes, stride, 0, GetG(), width, height);
    LoadBytePlane(samples + 2 * planeBytes, stride, 0, GetB(), width, height);
    family = FamilyRgb;
    peak = kLargestByte;
}

void CMetricImage::LoadYuvDeep420(const std::uint8_t* samples, int bits) {
    const std::size_t pixels = PixelCount();
    LoadDeep({samples, 3 * pixels / 2, bits}, FamilyYuv,
             {{ComponentY, {0, 0, 0, 0}},
              {ComponentU, {pixels, 1, 1, kNeutralChroma}},
              {ComponentV, {5 * pixels / 4, 1, 1, kNeutralChroma}}});
}

void CMetricImage::LoadYuvDeep422(const std::uint8_t* samples, int bits) {
    const std::size_t pixels = PixelCount();
    LoadDeep({samples, 2 * pixels, bits}, FamilyYuv,
             {{ComponentY, {0, 0, 0, 0}},
              {ComponentU, {pixels, 1, 0, kNeutralChroma}},
              {ComponentV, {3 * pixels / 2, 1, 0, kNeutralChroma}}});
}

void CMetricImage::LoadYuvDeep444(const std::uint8_t* samples, int bits) {
    const std::size_t pixels = PixelCount();
    LoadDeep({samples, 3 * pixels, bits}, FamilyYuv,
             {{ComponentY, {0, 0, 0, 0}},
              {ComponentU, {pixels, 0, 0, kNeutralChroma}},
              {ComponentV, {2 * pixels, 0, 0, kNeutralChroma}}});
}

void CMetricImage::LoadRgbDeep(const std::uint8_t* samples, int bits) {
    const std::size_t pixels = PixelCount();
    LoadDeep(
        {samples, 3 * pixels, bits}, FamilyRgb,
        {{ComponentG, {0, 0, 0, 0}}, {ComponentB, {pixels, 0, 0, 0}}, {ComponentR, {2 * pixels, 0, 0, 0}}});
}

// The converters go row by row, so that the three source rows stay in the nearest cache.

void CMetricImage::ToRgb(int matrixNumber) {
    if (family != FamilyYuv) return;
    const ColorMatrix& table = MatrixOf(matrixNumber);
    for (int y = 0; y < height; ++y) {
        for (std::size_t i = 0; i < table.rgb.size(); ++i) {
            RowFromYuv(Row(ComponentY, y), Row(ComponentU, y), Row(ComponentV, y), table, table.rgb[i],
                       Row(ComponentR + static_cast<int>(i), y), width);
        }
    }
    family = FamilyRgb;
    matrix = matrixNumber;
    peak = kLargestByte;
}

void CMetricImage::ToYuv(int matrixNumber) {
    peak = kLargestByte;
    if (family != FamilyRgb) return;
    const ColorMatrix& table = MatrixOf(matrixNumber);
    for (int y = 0; y < height; ++y) {
        for (std::size_t i = 0; i < table.yuv.size(); ++i) {
            RowFromRgb(Row(ComponentR, y), Row(ComponentG, y), Row(ComponentB, y), table.yuv[i],
                       i == 0 ? table.lumaOffset : 0, Row(ComponentY + static_cast<int>(i), y), width);
        }
    }
    family = FamilyYuv;
    matrix = matrixNumber;
}

void CMetricImage::ToL(int matrixNumber) {
    if (family == FamilyL) return;
    const ColorMatrix& table = MatrixOf(matrixNumber);
    for (int y = 0; y < height; ++y) {
        float* row = Row(ComponentL, y);
        if (family == FamilyRgb) {
            RowFromRgb(Row(ComponentR, y), Row(ComponentG, y), Row(ComponentB, y), table.yuv[0],
                       table.lumaOffset, row, width);
        }
        LightnessRow(family == FamilyRgb ? row : Row(ComponentY, y), row, width);
    }
    family = FamilyL;
    matrix = matrixNumber;
    peak = kLightnessPeak;
}

float* CMetricImage::Row(int component, int y) {
    return GetPlane(component) + static_cast<std::ptrdiff_t>(y) * width;
}

std::size_t CMetricImage::PixelCount() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

void CMetricImage::LoadDeep(const DeepFrame& frame, Family loadedFamily,
                            std::initializer_list<std::pair<int, DeepPlane>> deepPlanes) {
    for (const auto& [component, plane] : deepPlanes)
        LoadDeepPlane(frame, plane, GetPlane(component), width, height);
    family = loadedFamily;
    peak = DeepPeak(frame.bits);
}

}  // namespace Metric
