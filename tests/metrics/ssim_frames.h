#pragma once

#include <vector>

#include "kernels/reference/halve.h"
#include "kernels/ssim_planes.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

// What the tests of the SSIM metrics share: the plain loops of the kernels' references over whole planes, and
// frames whose bytes are at hand.

namespace Metric {

/// The map that makeMap(planes) writes, 1 where it writes nothing.
template <class MakeMap>
std::vector<float> MapOf(const std::vector<float>& first, const std::vector<float>& second, int width,
                         const MakeMap& makeMap) {
    std::vector<float> map(first.size(), 1.0f);
    const int stride = width * static_cast<int>(sizeof(float));
    makeMap(Kernels::SSIMPlanes{first.data(), stride, second.data(), stride, map.data(), stride, width,
                                static_cast<int>(first.size()) / width});
    return map;
}

inline std::vector<float> Halved(const std::vector<float>& plane, int width, int height) {
    std::vector<float> half(static_cast<std::size_t>((width / 2) * (height / 2)));
    constexpr int kPixelBytes = static_cast<int>(sizeof(float));
    Kernels::Reference::Halve(plane.data(), width * kPixelBytes, half.data(), width / 2 * kPixelBytes,
                              width / 2, height / 2);
    return half;
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

/// The bytes of a scene's frames give what their float planes do, in value and picture, on every team.
template <class Measured>
void ExpectSameOfBytes(const Scene& scene) {
    SCOPED_TRACE(scene.what);
    ByteFrame first(scene), second(Distorted(scene)), firstPlanes(scene), secondPlanes(Distorted(scene));
    firstPlanes.image.ForgetFrame();
    secondPlanes.image.ForgetFrame();
    Canvas expected(scene.width, scene.height, 77);
    const float value = MeasureOnce<Measured>(firstPlanes.image, secondPlanes.image);
    const float painted = MeasureOnce<Measured>(firstPlanes.image, secondPlanes.image, &expected.picture);
    Kernels::ForEachTargetAndTeam([&] {
        EXPECT_EQ(value, MeasureOnce<Measured>(first.image, second.image));
        Canvas canvas(scene.width, scene.height, 77);
        EXPECT_EQ(painted, MeasureOnce<Measured>(first.image, second.image, &canvas.picture));
        const std::uint8_t* bytes = expected.picture.Data();
        EXPECT_TRUE(
            std::equal(bytes, bytes + expected.picture.Stride() * scene.height, canvas.picture.Data()));
    });
}

/// Sizes with and without padding, with few and with many windows, bright ones whose sums of squares pass
/// 2^24, and a picture that is taller than floats can sum, so that the order of its additions counts.
inline std::vector<Scene> ByteScenes() {
    const auto bright = [](int x, int y) { return 180 + Noise(x, y, 76); };
    return {{"one window", 8, 8, Coded},       {"a row of windows", 304, 8, bright},
            {"two levels", 24, 16, Coded},     {"bright and high", 64, 600, bright},
            {"for a team", 2048, 1040, Coded}, {"padded", 100, 90, Coded},
            {"too tall", 8, 65800, bright}};
}

}  // namespace Metric
