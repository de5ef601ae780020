#include "metric/metric_image.h"

#include <algorithm>

#include "kernels/bands.h"
#include "kernels/color_rows.h"
#include "kernels/samples.h"
#include "metric/color_matrix.h"
#include "metric/lightness.h"

namespace Metric {

namespace {

constexpr float kNeutralChroma = 128;
constexpr float kLargestByte = 255;
constexpr float kLightnessPeak = 100;

/// Family of a component's plane, and its place among the planes of that.
struct Place {
    int family;
    std::size_t index;
};

constexpr Place PlaceOf(int component) {
    if (component >= ComponentR) return {CMetricImage::FamilyRgb, std::size_t(component - ComponentR)};
    if (component == ComponentL) return {CMetricImage::FamilyL, 0};
    return {CMetricImage::FamilyYuv, std::size_t(component - ComponentY)};
}

constexpr bool IsComponent(int component) {
    return component >= 0 && component < kComponentCount;
}

/// A plane of packed 16-bit samples that starts at word `firstWord` of a frame with `wordCount` whole ones.
/// The rows of a subsampled plane are `width >> shiftX` words apart, the cut-off half of an odd width
/// included.
SamplePlane DeepPlane(const std::uint8_t* frame, std::size_t wordCount, int bits, int width,
                      std::size_t firstWord, int shiftX, int shiftY, float centre) {
    constexpr int kWordBytes = 2;
    SamplePlane plane = {frame + kWordBytes * firstWord, std::ptrdiff_t{width >> shiftX} * kWordBytes};
    plane.unitBytes = kWordBytes;
    plane.sampleBytes = kWordBytes;
    plane.shiftX = shiftX;
    plane.shiftY = shiftY;
    plane.scale = 1.0f / static_cast<float>(1 << (bits - 8));  // a power of two: as exact as the quotient
    plane.centre = centre;
    plane.end = frame + kWordBytes * wordCount;
    return plane;
}

/// Whether the frame's colours are the three bytes of one unit, in any order.
bool AreTriples(const SamplePlanes& samples) {
    int places = 0;
    for (const SamplePlane& plane : samples) {
        if (plane.unitBytes != 3 || plane.scale != 1 || plane.centre != 0) return false;
        if (plane.rows != samples[0].rows || plane.rowBytes != samples[0].rowBytes) return false;
        places |= 1 << plane.offset;
    }
    return places == 0b111;
}

/// The greatest sample of a depth on the scale of 0 to 256: 255.75, 255.984375, 255.99609375.
float DeepPeak(int bits) {
    return static_cast<float>((1 << bits) - 1) / static_cast<float>(1 << (bits - 8));
}

}  // namespace

/// Makes pixels of any component of the image's family, some of a row at a time.
class CMetricImage::RowMaker {
public:
    static constexpr int kPixelsAtOnce = 512;

    explicit RowMaker(const CMetricImage& metricImage)
        : image(metricImage), table(MatrixOf(metricImage.matrix)), isTriples(AreTriples(image.samples)) {}

    /// `count` is kPixelsAtOnce at most and `x` even.
    void Make(Place place, int x, int y, float* target, int count) {
        if (place.family == image.sourceFamily) {
            LoadPixels(image.samples[place.index], x, y, target, count);
        } else if (place.family == FamilyRgb) {
            const ColorMatrix::FromYuv weight = table.rgb[place.index];
            Kernels::SumRowsLimited(Source(x, y, count),
                                    {table.lumaOffset, table.lumaScale, weight.u, weight.v}, kLargestByte,
                                    target, count);
        } else if (place.family == FamilyYuv) {
            SumFromRgb(place.index, x, y, target, count);
        } else if (image.sourceFamily == FamilyRgb) {
            SumFromRgb(0, x, y, target, count);
            LightnessRow(target, target, count);
        } else {
            LightnessRow(SourceRow(0, x, y, count), target, count);
        }
    }

private:
    void SumFromRgb(std::size_t index, int x, int y, float* target, int count) {
        const ColorMatrix::FromRgb weight = table.yuv[index];
        const float offset = index == 0 ? table.lumaOffset : 0;
        Kernels::SumRows(Source(x, y, count), {weight.r, weight.g, weight.b, offset}, target, count);
    }

    Kernels::ColorRows Source(int x, int y, int count) {
        if (isTriples && !IsAnyMade()) {
            float* pixels[3];
            for (std::size_t i = 0; i < rows.size(); ++i) pixels[image.samples[i].offset] = rows[i].data();
            const SamplePlane& samples = image.samples[0];
            Kernels::LoadTriples(samples.rows + y * samples.rowBytes + std::ptrdiff_t{x} * samples.unitBytes,
                                 pixels, count);
            return {rows[0].data(), rows[1].data(), rows[2].data()};
        }
        return {SourceRow(0, x, y, count), SourceRow(1, x, y, count), SourceRow(2, x, y, count)};
    }

    std::size_t SourceComponent(std::size_t index) const {
        return index + (image.sourceFamily == FamilyRgb ? ComponentR : ComponentY);
    }

    bool IsAnyMade() const {
        return image.IsMade(static_cast<int>(SourceComponent(0))) ||
               image.IsMade(static_cast<int>(SourceComponent(1))) ||
               image.IsMade(static_cast<int>(SourceComponent(2)));
    }

    /// From the plane if it is made, because somebody may have written to it.
    const float* SourceRow(std::size_t index, int x, int y, int count) {
        const std::size_t component = SourceComponent(index);
        if (image.made[component].load(std::memory_order_acquire))
            return image.planes[component].get() + std::ptrdiff_t{y} * image.width + x;
        LoadPixels(image.samples[index], x, y, rows[index].data(), count);
        return rows[index].data();
    }

    const CMetricImage& image;
    const ColorMatrix& table;
    const bool isTriples;
    alignas(64) std::array<std::array<float, kPixelsAtOnce>, 3> rows;
};

CMetricImage::CMetricImage(int imageWidth, int imageHeight) : width(imageWidth), height(imageHeight) {
    for (auto& plane : planes) plane = Kernels::MakeFloatPlane(width, height);
    for (auto& flag : made) flag = true;
}

float* CMetricImage::GetPlane(int component) {
    if (!IsComponent(component)) return nullptr;
    if (PlaceOf(component).family == family && !IsMade(component)) MakePlane(component);
    return planes[static_cast<std::size_t>(component)].get();
}

const SamplePlane* CMetricImage::GetSamples(int component) const {
    if (!hasFrame || family != sourceFamily || !IsComponent(component)) return nullptr;
    const Place place = PlaceOf(component);
    return place.family == family ? &samples[place.index] : nullptr;
}

bool CMetricImage::IsMadeAsRead(int component) const {
    return hasOneReader && hasFrame && IsComponent(component) && PlaceOf(component).family == family &&
           !IsMade(component);
}

void CMetricImage::MakePixels(int component, int x, int y, float* pixels, int count) const {
    RowMaker maker(*this);
    for (int i = 0; i < count; i += RowMaker::kPixelsAtOnce)
        maker.Make(PlaceOf(component), x + i, y, pixels + i, std::min(RowMaker::kPixelsAtOnce, count - i));
}

void CMetricImage::ForgetFrame() {
    for (int component = 0; component < kComponentCount; ++component) GetPlane(component);
    DropFrame();
}

void CMetricImage::DropFrame() {
    for (auto& flag : made) flag = true;
    sourceFamily = family;
    hasFrame = false;
}

void CMetricImage::LoadYuvBytes(const std::uint8_t* frame, int stride, std::size_t planeBytes) {
    SamplePlane y = {frame, stride};
    SamplePlane u = {frame + planeBytes, stride};
    SamplePlane v = {frame + 2 * planeBytes, stride};
    u.centre = v.centre = kNeutralChroma;
    LoadBytes(FamilyYuv, {y, u, v});
}

void CMetricImage::LoadRgbBytes(const std::uint8_t* frame, int stride, std::size_t planeBytes) {
    LoadBytes(FamilyRgb, {{{frame, stride}, {frame + planeBytes, stride}, {frame + 2 * planeBytes, stride}}});
}

void CMetricImage::LoadYuvDeep420(const std::uint8_t* frame, int bits) {
    const std::size_t pixels = PixelCount();
    const auto plane = [&](std::size_t firstWord, int shift, float centre) {
        return DeepPlane(frame, 3 * pixels / 2, bits, width, firstWord, shift, shift, centre);
    };
    LoadDeep(FamilyYuv,
             {plane(0, 0, 0), plane(pixels, 1, kNeutralChroma), plane(5 * pixels / 4, 1, kNeutralChroma)},
             bits);
}

void CMetricImage::LoadYuvDeep422(const std::uint8_t* frame, int bits) {
    const std::size_t pixels = PixelCount();
    const auto plane = [&](std::size_t firstWord, int shift, float centre) {
        return DeepPlane(frame, 2 * pixels, bits, width, firstWord, shift, 0, centre);
    };
    LoadDeep(FamilyYuv,
             {plane(0, 0, 0), plane(pixels, 1, kNeutralChroma), plane(3 * pixels / 2, 1, kNeutralChroma)},
             bits);
}

void CMetricImage::LoadYuvDeep444(const std::uint8_t* frame, int bits) {
    const std::size_t pixels = PixelCount();
    const auto plane = [&](std::size_t firstWord, float centre) {
        return DeepPlane(frame, 3 * pixels, bits, width, firstWord, 0, 0, centre);
    };
    LoadDeep(FamilyYuv, {plane(0, 0), plane(pixels, kNeutralChroma), plane(2 * pixels, kNeutralChroma)},
             bits);
}

void CMetricImage::LoadRgbDeep(const std::uint8_t* frame, int bits) {
    const std::size_t pixels = PixelCount();
    const auto plane = [&](std::size_t firstWord) {
        return DeepPlane(frame, 3 * pixels, bits, width, firstWord, 0, 0, 0);
    };
    LoadDeep(FamilyRgb, {plane(2 * pixels), plane(0), plane(pixels)}, bits);  // G, B, R in the frame
}

void CMetricImage::LoadBytes(Family loadedFamily, const SamplePlanes& frame) {
    Load(loadedFamily, frame, kLargestByte);
}

void CMetricImage::ToRgb(int matrixNumber) {
    if (family != FamilyYuv) return;
    ConvertTo(FamilyRgb, matrixNumber);
    peak = kLargestByte;
}

void CMetricImage::ToYuv(int matrixNumber) {
    peak = kLargestByte;
    if (family == FamilyRgb) ConvertTo(FamilyYuv, matrixNumber);
}

void CMetricImage::ToL(int matrixNumber) {
    if (family == FamilyL) return;
    MakeLightnessTables();  // not on the team that makes the plane
    ConvertTo(FamilyL, matrixNumber);
    peak = kLightnessPeak;
}

void CMetricImage::LoadDeep(Family loadedFamily, const SamplePlanes& frame, int bits) {
    Load(loadedFamily, frame, DeepPeak(bits));
}

void CMetricImage::Load(Family loadedFamily, const SamplePlanes& frame, float greatest) {
    samples = frame;
    hasFrame = true;
    family = sourceFamily = loadedFamily;
    peak = greatest;
    for (auto& flag : made) flag = false;
}

void CMetricImage::ConvertTo(Family wanted, int matrixNumber) {
    if (family != sourceFamily) ForgetFrame();
    for (int component = 0; component < kComponentCount; ++component)
        if (PlaceOf(component).family == wanted) made[static_cast<std::size_t>(component)] = false;
    family = wanted;
    matrix = matrixNumber;
}

void CMetricImage::MakePlane(int component) {
    const std::lock_guard lock(making);
    if (IsMade(component)) return;

    const Place place = PlaceOf(component);
    float* const plane = planes[static_cast<std::size_t>(component)].get();
    Kernels::ForEachBand(
        width, height,
        [&](const Kernels::Band& band) {
            RowMaker maker(*this);
            for (int y = band.first; y < band.end; ++y) {
                float* const row = plane + std::ptrdiff_t{y} * width;
                for (int x = 0; x < width; x += RowMaker::kPixelsAtOnce)
                    maker.Make(place, x, y, row + x, std::min(RowMaker::kPixelsAtOnce, width - x));
            }
        },
        Kernels::kLightPixelsPerThread);
    made[static_cast<std::size_t>(component)].store(true, std::memory_order_release);
}

bool CMetricImage::IsMade(int component) const {
    return made[static_cast<std::size_t>(component)].load(std::memory_order_acquire);
}

std::size_t CMetricImage::PixelCount() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

}  // namespace Metric
