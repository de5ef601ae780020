#include "metrics/vqm.h"

#include <gtest/gtest.h>

#include "metrics/reference/vqm.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

Scene Coarser(Scene scene) {
    const auto fine = scene.sample;
    scene.sample = [fine](int x, int y) {
        return std::min(std::floor(fine(x, y) / 12) * 12 + 6.25f, 255.0f);
    };
    return scene;
}

// The plain loops give the expected bits.
TEST(Vqm, EqualsReference) {
    std::vector<Scene> scenes = Scenes();
    // As a file of 10 bits can hold them, whose greatest sample that means something is 255.75.
    scenes.push_back(
        {"coefficients beyond 16 bits", 24, 8, [](int x, int) { return x % 8 < 2 ? 16383.75f : 0; }});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        const std::vector<float> first = scene.Padded(8);
        const std::vector<float> second = Coarser(scene).Padded(8);
        const Reference::VqmFrame expected = Reference::Vqm(
            first.data(), second.data(), Scene::RoundUp(scene.width, 8), Scene::RoundUp(scene.height, 8));
        const auto image = scene.Image(), coarser = Coarser(scene).Image();
        Kernels::ForEachTargetAndTeam([&] {
            Probe<CVQMMetric> metric(PictureSize(scene.width, scene.height));
            Canvas canvas(scene.width, scene.height);
            EXPECT_EQ(expected.value, metric.Measure({image.get(), coarser.get()})[0].value);
            EXPECT_EQ(expected.value,
                      metric.MeasureAndVisualize({image.get(), coarser.get()}, canvas.picture)[0].value);
            const float* map = metric.GetMap(ComponentY);
            EXPECT_TRUE(std::equal(expected.map.begin(), expected.map.end(), map));
            EXPECT_EQ(std::vector(3, static_cast<int>(map[0])), canvas.Pixel(0, 0));
        });
    }
}

// What the bound of the folded transform rests on.
TEST(Vqm, OppositeEntriesOfTheMatrixAgree) {
    for (std::size_t u = 0; u < 8; ++u) {
        for (std::size_t x = 0; x < 4; ++x) {
            const double* row = VqmTables::Get().dctMatrix.data() + 8 * u;
            EXPECT_NEAR(row[x], (u % 2 == 0 ? 1 : -1) * row[7 - x], 4e-15);
        }
    }
}

// On paper. Of two flat blocks the dc alone differs: 8 times the level, its contrast (dc / 1024)^0.65, its
// weight 1/8. For levels 0 and 128 that makes one d of 1/8 among 64, hence 10 (1000 / 512 + 5 / 8).
TEST(Vqm, ClosedForm) {
    const auto black = FlatPicture(16, 8, 0), grey = FlatPicture(16, 8, 128);
    const auto half = BytePicture(16, 8, [](int x, int) { return x < 8 ? 128 : 0; });
    CMetricImage fractions(16, 8);
    for (int i = 0; i < 16 * 8; ++i) fractions.GetY()[i] = 128.0f + static_cast<float>(i % 4) / 4;

    EXPECT_EQ(0, MeasureOnce<CVQMMetric>(*half, *half));
    EXPECT_EQ(25.78125f, MeasureOnce<CVQMMetric>(*black, *grey));
    EXPECT_EQ(16.015625f, MeasureOnce<CVQMMetric>(*half, *black)) << "a black block in both adds nothing";
    EXPECT_EQ(0, MeasureOnce<CVQMMetric>(*grey, fractions)) << "samples are cut to integers";
}

// From a Python program of its own with lists, its floats rounded by struct, the power from the C library.
TEST(Vqm, OtherProgram) {
    const auto first = [](int x, int y) { return (x * x / 5 + 3 * y + x * y % 17) % 200; };
    const auto second = [&](int x, int y) { return first(x, y) / 12 * 12 + 6; };
    EXPECT_EQ(1.18041253f,
              MeasureOnce<CVQMMetric>(*BytePicture(40, 32, first), *BytePicture(40, 32, second)));
}

}  // namespace
}  // namespace Metric
