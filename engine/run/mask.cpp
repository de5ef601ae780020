#include "engine/run/mask.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "metric/metric_image.h"
#include "video/color_space.h"
#include "video/video_image.h"

namespace {

/// Where a layout has the samples that tell whether a pixel is marked.
struct MarkSamples {
    int count = 0;                                  // samples of a pixel; 0 for a layout without marks
    bool isDeep = false;                            // two bytes a sample
    std::array<const std::uint8_t*, 3> first = {};  // the samples of the frame's first pixel
    std::size_t pixelBytes = 0;
    std::size_t rowBytes = 0;
};

MarkSamples DeepSamples(const rkVideoImage& frame, int count) {
    // Packed, whatever the image's stride, and every layout's first plane is of full size.
    const std::size_t rowBytes = static_cast<std::size_t>(frame.VisibleWidth()) * sizeof(std::uint16_t);
    const std::size_t planeBytes = rowBytes * static_cast<std::size_t>(frame.VisibleHeight());
    const std::uint8_t* data = frame.Data();
    return {count, true, {data, data + planeBytes, data + 2 * planeBytes}, sizeof(std::uint16_t), rowBytes};
}

MarkSamples SamplesOf(const rkVideoImage& frame) {
    const std::uint8_t* data = frame.Data();
    const auto unit = static_cast<std::size_t>(rkPixelUnit(frame.ColorSpace()));
    const auto stride = static_cast<std::size_t>(frame.Stride());
    switch (frame.ColorSpace()) {
        case RGB24:
        case RGB32:
            return {3, false, {data, data + 1, data + 2}, unit, stride};
        case YUV:
        case YV12:
        case IYUV:
        case YV16:
        case YUVQ:
            return {1, false, {data}, 1, stride};
        case YUY2:
        case Y:
        case YVYU:
            return {1, false, {data}, unit, stride};
        case UYVY:
        case VYUY:
            return {1, false, {data + 1}, unit, stride};
        case RGBP:
            return {3, false, {data, data + frame.PlaneOffset(1), data + frame.PlaneOffset(2)}, 1, stride};
        default:
            break;
    }
    if (rkIsDeepYuv(frame.ColorSpace())) return DeepSamples(frame, 1);
    if (rkIsDeepRgb(frame.ColorSpace())) return DeepSamples(frame, 3);
    return {};
}

template <typename Sample, std::size_t kCount>
bool FindMarked(const MarkSamples& samples, int width, int height, bool blackMask, int& x, int& y) {
    for (int row = 0; row < height; ++row) {
        std::size_t offset = static_cast<std::size_t>(row) * samples.rowBytes;
        for (int column = 0; column < width; ++column, offset += samples.pixelBytes) {
            bool isMarked = true;
            for (std::size_t i = 0; i < kCount; ++i) {
                Sample sample;
                std::memcpy(&sample, samples.first[i] + offset, sizeof(sample));
                isMarked &= (sample == 0) == blackMask;
            }
            if (!isMarked) continue;
            x = column;
            y = row;
            return true;
        }
    }
    return false;
}

/// The planes that hold an image's frame. A family of one plane has it three times.
std::array<float*, 3> FamilyPlanes(Metric::CMetricImage& image) {
    switch (image.GetFamily()) {
        case Metric::CMetricImage::FamilyYuv:
            return {image.GetY(), image.GetU(), image.GetV()};
        case Metric::CMetricImage::FamilyRgb:
            return {image.GetR(), image.GetG(), image.GetB()};
        default:
            return {image.GetL(), image.GetL(), image.GetL()};
    }
}

}  // namespace

bool FindMaskPixel(const rkVideoImage& frame, bool blackMask, int& x, int& y) {
    if (frame.Data() == nullptr) return false;

    const MarkSamples samples = SamplesOf(frame);
    if (samples.count == 0) return false;
    const bool isOne = samples.count == 1;
    const auto find = samples.isDeep ? (isOne ? FindMarked<std::uint16_t, 1> : FindMarked<std::uint16_t, 3>)
                                     : (isOne ? FindMarked<std::uint8_t, 1> : FindMarked<std::uint8_t, 3>);
    if (!find(samples, frame.VisibleWidth(), frame.VisibleHeight(), blackMask, x, y)) return false;

    if (frame.ColorSpace() == RGB24 || frame.ColorSpace() == RGB32) y = frame.VisibleHeight() - 1 - y;
    return true;
}

void ApplyMask(Metric::CMetricImage& image, Metric::CMetricImage& mask, int x, int y) {
    const int width = mask.GetWidth();
    const int height = mask.GetHeight();
    if (image.GetWidth() != width || image.GetHeight() != height || image.GetFamily() != mask.GetFamily())
        return;
    if (x < 0 || x >= width || y < 0 || y >= height) return;

    const std::size_t marked =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::array<float*, 3> from = FamilyPlanes(mask);
    image.ForgetFrame();  // its samples don't have the colour that its planes get
    const std::array<float*, 3> to = FamilyPlanes(image);
    const std::array<float, 3> colour = {from[0][marked], from[1][marked], from[2][marked]};
    for (std::size_t i = 0; i < count; ++i) {
        const bool isMarked = from[0][i] == colour[0] && from[1][i] == colour[1] && from[2][i] == colour[2];
        if (!isMarked) continue;
        for (std::size_t plane = 0; plane < to.size(); ++plane) to[plane][i] = colour[plane];
    }
}
