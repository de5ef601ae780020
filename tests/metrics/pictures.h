#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "metric/metric_base.h"
#include "video/video_image.h"

namespace Metric {

/// Parameters of a metric for pictures of a size.
inline MetricParameters PictureSize(int width, int height, int component = ComponentY) {
    MetricParameters parameters;
    parameters.component = component;
    parameters.width = width;
    parameters.height = height;
    return parameters;
}

/// A metric that shows its map.
template <class Measured>
struct Probe : Measured {
    using Measured::GetMap;
    using Measured::Measured;
};

template <class Measured>
std::unique_ptr<CMetric> Make(MetricParameters parameters) {
    return std::make_unique<Measured>(std::move(parameters));
}

/// An image whose three planes Y, U, V all hold `sample(x, y)`, a byte; U and V less 128.
template <class Sample>
std::unique_ptr<CMetricImage> BytePicture(int width, int height, Sample sample) {
    std::vector<std::uint8_t> bytes;
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) bytes.push_back(static_cast<std::uint8_t>(sample(x, y)));
    auto image = std::make_unique<CMetricImage>(width, height);
    image->LoadYuvBytes(bytes.data(), width, bytes.size() / 3);
    image->ForgetFrame();
    return image;
}

inline std::unique_ptr<CMetricImage> FlatPicture(int width, int height, int level) {
    return BytePicture(width, height, [=](int, int) { return level; });
}

inline std::unique_ptr<CMetricImage> NoisePicture(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    return BytePicture(width, height, [&](int, int) { return random() & 0xFF; });
}

/// A grey `RGB24` picture to paint on, and a pixel of it as B, G, R.
struct Canvas {
    Canvas(int width, int height, std::uint8_t grey = 0) {
        picture.Create(width, height, RGB24, 0);
        std::fill_n(picture.Data(), picture.Stride() * height, grey);
    }

    std::vector<int> Pixel(int x, int y) const {
        const std::uint8_t* pixel = picture.Data() + y * picture.Stride() + 3 * x;
        return {pixel[0], pixel[1], pixel[2]};
    }

    /// How many pixels aren't the grey that greyAt(x, y) says.
    template <class GreyAt>
    int WrongPixels(const GreyAt& greyAt) const {
        int wrong = 0;
        for (int y = 0; y < picture.VisibleHeight(); ++y) {
            const std::uint8_t* byte = picture.Data() + y * picture.Stride();
            for (int x = 0; x < picture.VisibleWidth(); ++x, byte += 3)
                wrong += std::count(byte, byte + 3, greyAt(x, y)) != 3;
        }
        return wrong;
    }

    rkVideoImage picture;
};

/// The value of one frame by a new instance, without and with a picture painted.
template <class Measured>
float MeasureOnce(CMetricImage& first, CMetricImage& second, rkVideoImage* target = nullptr) {
    Measured metric(PictureSize(first.GetWidth(), first.GetHeight()));
    const std::vector<CMetricImage*> images = {&first, &second};
    return (target ? metric.MeasureAndVisualize(images, *target) : metric.Measure(images))[0].value;
}

}  // namespace Metric
