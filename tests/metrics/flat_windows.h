#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "metric/metric_image.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

// The flat windows of the fast SSIM metrics by their definition, in plain loops over whole planes, and
// pictures for them.

namespace Metric {

/// A distorted version of a scene in 10 bits, which has a peak of 255.75.
inline Scene Distorted(const Scene& scene) {
    return {scene.what, scene.width, scene.height, [=](int x, int y) {
                const float noise = Noise(x + 3, y + 5, 64) - 32 + Noise(x / 4, y / 4, 32);
                return std::clamp(std::floor(scene.sample(x, y) * 4) + noise, 0.0f, 1023.0f) / 4;
            }};
}

inline std::unique_ptr<CMetricImage> TenBitImage(const Scene& scene) {
    std::vector<std::uint8_t> bytes;
    for (const float sample : scene.Padded(1)) {
        const int word = static_cast<int>(sample * 4);
        bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    }
    bytes.resize(3 * bytes.size());  // U and V
    auto image = std::make_unique<CMetricImage>(scene.width, scene.height);
    image->LoadYuvDeep444(bytes.data(), 10);
    image->ForgetFrame();
    return image;
}

/// A scene's samples, cut to bytes, as a frame that its image has at hand.
struct ByteFrame {
    explicit ByteFrame(const Scene& scene) : image(scene.width, scene.height) {
        for (const float sample : scene.Padded(1)) bytes.push_back(static_cast<std::uint8_t>(sample));
        bytes.resize(3 * bytes.size());  // U and V
        image.LoadYuvBytes(bytes.data(), scene.width, bytes.size() / 3);
    }

    std::vector<std::uint8_t> bytes;
    CMetricImage image;
};

/// Sizes with and without padding, with few and with many windows, bright ones whose sums of squares pass
/// 2^24.
inline std::vector<Scene> ByteScenes() {
    const auto bright = [](int x, int y) { return 180 + Noise(x, y, 76); };
    return {{"one window", 8, 8, Coded},       {"a row of windows", 304, 8, bright},
            {"two levels", 24, 16, Coded},     {"bright and high", 64, 600, bright},
            {"for a team", 2048, 1040, Coded}, {"padded", 100, 90, Coded}};
}

/// The value of one frame by a new instance, without and with a picture painted.
template <class Measured>
float MeasureOnce(CMetricImage& first, CMetricImage& second, rkVideoImage* target = nullptr) {
    Measured metric(PictureSize(first.GetWidth(), first.GetHeight()));
    const std::vector<CMetricImage*> images = {&first, &second};
    return (target ? metric.MeasureAndVisualize(images, *target) : metric.Measure(images))[0].value;
}

/// How many pixels of a canvas aren't the grey that greyAt(x, y) says.
template <class GreyAt>
int WrongPixels(const Canvas& canvas, const GreyAt& greyAt) {
    int wrong = 0;
    for (int y = 0; y < canvas.picture.VisibleHeight(); ++y)
        for (int x = 0; x < canvas.picture.VisibleWidth(); ++x)
            wrong += canvas.Pixel(x, y) != std::vector<int>(3, greyAt(x, y));
    return wrong;
}

/// The bytes of the frames give what their float planes do, in value and picture, on every team.
template <class Measured>
void ExpectSameOfBytes() {
    for (const Scene& scene : ByteScenes()) {
        SCOPED_TRACE(scene.what);
        ByteFrame first(scene);
        ByteFrame second(Distorted(scene));
        const auto measure = [&](rkVideoImage* target) {
            return MeasureOnce<Measured>(first.image, second.image, target);
        };
        ByteFrame firstPlanes(scene);
        ByteFrame secondPlanes(Distorted(scene));
        firstPlanes.image.ForgetFrame();
        secondPlanes.image.ForgetFrame();
        Canvas expected(scene.width, scene.height);
        const float value = MeasureOnce<Measured>(firstPlanes.image, secondPlanes.image);
        const float painted = MeasureOnce<Measured>(firstPlanes.image, secondPlanes.image, &expected.picture);
        Kernels::ForEachTargetAndTeam([&] {
            EXPECT_EQ(value, measure(nullptr));
            Canvas canvas(scene.width, scene.height, 77);
            EXPECT_EQ(painted, measure(&canvas.picture));
            EXPECT_EQ(0, WrongPixels(canvas, [&](int x, int y) { return expected.Pixel(x, y)[0]; }));
        });
    }
}

struct WindowSums {
    float x, y, xx, yy, xy;
};

/// valueOf(sums) of each window of 8 by 8 of two planes, rows of width - 7 values from the top.
template <class ValueOf>
std::vector<float> FlatWindows(const std::vector<float>& first, const std::vector<float>& second, int width,
                               int height, const ValueOf& valueOf) {
    // running[k][y][x]: the sum of column x above row y.
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    std::array<std::vector<std::vector<float>>, 5> running;
    for (auto& plane : running) plane.assign(rows + 1, std::vector<float>(columns));
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t x = 0; x < columns; ++x) {
            const float a = first[y * columns + x];
            const float b = second[y * columns + x];
            const std::array<float, 5> pixel = {a, b, a * a, b * b, a * b};
            for (std::size_t k = 0; k < 5; ++k) running[k][y + 1][x] = running[k][y][x] + pixel[k];
        }
    }

    std::vector<float> values;
    for (std::size_t top = 0; top + 8 <= rows; ++top) {
        std::array<float, 5> sums = {};
        const auto column = [&](std::size_t k, std::size_t x) {
            return running[k][top + 8][x] - running[k][top][x];
        };
        for (std::size_t left = 0; left + 8 <= columns; ++left) {
            for (std::size_t k = 0; k < 5; ++k) {
                if (left == 0) {
                    sums[k] = column(k, 1) + column(k, 0);
                    for (std::size_t x = 2; x < 8; ++x) sums[k] = sums[k] + column(k, x);
                } else {
                    sums[k] = (sums[k] + column(k, left + 7)) - column(k, left - 1);
                }
            }
            values.push_back(valueOf(WindowSums{sums[0], sums[1], sums[2], sums[3], sums[4]}));
        }
    }
    return values;
}

/// SSIM of a window, and its contrast and structure alone.
inline float WholeSsim(const WindowSums& s, float c1, float c2) {
    const float p = s.x * s.y;
    const float q = s.xy * 64 - p;
    return ((c1 + p + p) * (c2 + q + q)) /
           ((s.x * s.x + c1 + s.y * s.y) * ((s.xx * 64 - s.x * s.x) + c2 + (s.yy * 64 - s.y * s.y)));
}

inline float ContrastSsim(const WindowSums& s, float c2) {
    const float q = s.xy * 64 - s.x * s.y;
    return (c2 + q + q) / ((s.xx * 64 - s.x * s.x) + c2 + (s.yy * 64 - s.y * s.y));
}

/// The windows' values as a map of the planes' size: window (x, y) at (x + 7, y), the first column's to its
/// left as well, 1 below.
inline std::vector<float> WindowMap(const std::vector<float>& windows, int width, int height) {
    std::vector<float> map;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            map.push_back(y + 8 > height
                              ? 1.0f
                              : windows[static_cast<std::size_t>(y * (width - 7) + std::max(x - 7, 0))]);
    return map;
}

}  // namespace Metric
