#include "metrics/stssim.h"

#include <gtest/gtest.h>

#include "metrics/reference/stssim.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

// Blobs that drift, grain that stays: parts of the picture move in all directions and some not at all.
float Original(int frame, int x, int y) {
    const double across = std::sin((x + 1.5 * frame) * 0.3) * std::cos(y * 0.17);
    const double down = std::cos((y - frame) * 0.23 + std::sin(x * 0.1));
    return std::floor(static_cast<float>(120 + 45 * (x < 30 ? across : down))) + Noise(x, y, 24);
}

float CutInTheMiddle(int frame, int x, int y) {
    return frame < 17 ? Original(frame, x, y) : std::min(Original(9 * frame, y + 40, x) + 30, 255.0f);
}

// Coarser by steps in quarters, which the comparison over time rounds, and worse with every frame.
float Distorted(float sample, int frame, int x, int y) {
    return std::min(std::floor(sample / 10) * 10 + 4.75f + Noise(x + frame, y, 2 + frame / 4), 255.0f);
}

using Sampler = float (*)(int frame, int x, int y);

/// A frame of a sequence and of its distorted copy.
struct FramePair {
    FramePair(Sampler original, int frame, int width, int height)
        : firstScene{"first", width, height, [=](int x, int y) { return original(frame, x, y); }},
          secondScene{"second", width, height,
                      [=](int x, int y) { return Distorted(original(frame, x, y), frame, x, y); }},
          first(firstScene.Image()),
          second(secondScene.Image()) {}

    std::vector<CMetricImage*> Images() const { return {first.get(), second.get()}; }

    Scene firstScene, secondScene;
    std::unique_ptr<CMetricImage> first, second;
};

std::vector<FramePair> Frames(Sampler original, int count, int width, int height) {
    std::vector<FramePair> frames;
    for (int frame = 0; frame < count; ++frame) frames.emplace_back(original, frame, width, height);
    return frames;
}

// The sums over time differ from the reference's in the last places of a double, and so do those of the pool;
// neither shows in these floats.
TEST(Stssim, EqualsReference) {
    const struct {
        const char* what;
        Sampler original;
        int width, height;
    } cases[] = {
        {"whole blocks", Original, 64, 48},
        {"width a multiple of 8 and not of 16", Original, 56, 24},
        {"neither side a multiple of 8", Original, 43, 37},
        {"a cut in the middle", CutInTheMiddle, 48, 32},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const int width = Scene::RoundUp(c.width, 8);
        Reference::Stssim reference(width, Scene::RoundUp(c.height, 8));
        CSTSSIMMetric metric(PictureSize(c.width, c.height));
        int compared = 0;
        for (const FramePair& frame : Frames(c.original, 36, c.width, c.height)) {
            const auto expected = reference.Push(frame.firstScene.Padded(8), frame.secondScene.Padded(8),
                                                 ConstantsOf(frame.Images()));
            Canvas canvas(c.width, c.height, 77);
            EXPECT_EQ(expected.value, metric.MeasureAndVisualize(frame.Images(), canvas.picture)[0].value);
            compared += !expected.map.empty();
            EXPECT_EQ(0, canvas.WrongPixels([&](int x, int y) {
                const auto place = static_cast<std::size_t>(y * width + x);
                return expected.map.empty() ? 77 : static_cast<int>(expected.map[place]) & 255;
            }));
        }
        EXPECT_EQ(4, compared);
    }
}

std::vector<float> Values(const std::vector<FramePair>& frames, int width, int height) {
    CSTSSIMMetric metric(PictureSize(width, height));
    std::vector<float> values;
    for (const FramePair& frame : frames) values.push_back(metric.Measure(frame.Images())[0].value);
    return values;
}

// As with one thread; a picture that is worth a team of two.
TEST(Stssim, SameOnEveryTargetAndTeam) {
    const std::vector<FramePair> frames = Frames(Original, 34, 248, 136);
    std::vector<float> expected;
    Kernels::ForEachTargetAndTeam([&] {
        const std::vector<float> values = Values(frames, 248, 136);
        if (expected.empty()) expected = values;
        EXPECT_EQ(expected, values);
    });
    EXPECT_LT(0, expected[32]);
    EXPECT_GT(1, expected[32]);
}

// 32 zeros come first and don't weigh.
TEST(Stssim, AveragesOfEqualSequences) {
    CSTSSIMMetric metric(PictureSize(48, 40));
    for (int frame = 0; frame < 40; ++frame) {
        const FramePair pair(CutInTheMiddle, frame, 48, 40);
        EXPECT_EQ(frame < 32 ? 0 : 1, metric.Measure({pair.first.get(), pair.first.get()})[0].value);
        EXPECT_EQ(frame < 32 ? 0 : 1, metric.GetAverages(false)[0].value);
    }
}

TEST(Stssim, LowPicturesHaveNothingToPool) {
    for (int height : {16, 17}) {
        const float value = Values(Frames(Original, 33, 48, height), 48, height)[32];
        EXPECT_EQ(height == 16, value == 1) << height;
    }
}

// Flat pictures of levels a and b that never change: both scores are (2 a b + C1) / (a^2 + b^2 + C1), C1 =
// 6.5025. The spatial one is off by what "SSIM (precise)" is off by.
TEST(Stssim, FlatSequences) {
    CSTSSIMMetric metric(PictureSize(32, 32));
    const auto first = FlatPicture(32, 32, 100);
    const auto second = FlatPicture(32, 32, 120);
    float value = 0;
    for (int frame = 0; frame < 33; ++frame) value = metric.Measure({first.get(), second.get()})[0].value;
    EXPECT_NEAR(std::pow(24006.5025 / 24406.5025, 2), value, 2e-4);
}

}  // namespace
}  // namespace Metric
