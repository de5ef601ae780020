#include "kernels/space_time_ssim.h"

#include "kernels/plane.h"
#include "kernels/reference/space_time_ssim.h"
#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace Kernels {
namespace {

constexpr double kC1 = 6.5025;
constexpr double kC2 = 58.5225;

using Sampler = int (*)(int frame, int x, int y);

int Grain(int frame, int x, int y) {
    const unsigned bits = static_cast<unsigned>(frame * 7919 + y * 104729 + x * 1299709) * 2654435761u;
    return static_cast<int>(bits >> 24);
}
int Moving(int frame, int x, int y) {
    return 90 + (x + 2 * frame) * (y + 3) % 61 + Grain(0, x + 2 * frame, y) % 9;
}
int Coded(int frame, int x, int y) {
    return Moving(frame, x, y) / 12 * 12 + Grain(frame, x, y) % 7;
}
int Cut(int frame, int x, int y) {
    return frame < 16 ? Coded(frame, x, y) : 255 - Moving(frame, y, x) % 200;
}
int Negative(int frame, int x, int y) {
    return 255 - Moving(frame, x, y);
}
int Black(int, int, int) {
    return 0;
}

Reference::Sequence Frames(Sampler sample, int width, int height) {
    Reference::Sequence frames(kWindowFrames, {width, height, {}});
    for (int frame = 0; frame < kWindowFrames; ++frame)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                frames[static_cast<std::size_t>(frame)].pixels.push_back(
                    static_cast<std::uint8_t>(sample(frame, x, y)));
    return frames;
}

/// Two sequences in tiles whose oldest frame is in slot 20, and a map of them with all line sets mixed.
struct Scene {
    Scene(Sampler sampleFirst, Sampler sampleSecond, int width, int rows, int mapWidth)
        : first(Frames(sampleFirst, width, rows)),
          second(Frames(sampleSecond, width, rows)),
          layout{width, rows, kWindowFrames},
          firstTiles(Store(first)),
          secondTiles(Store(second)),
          columns(mapWidth) {
        std::mt19937 random(5);
        for (int cell = 0; cell < columns / kLineCell * ((rows + kLineCell - 1) / kLineCell); ++cell)
            lines.push_back(cell % 3 == 0 || lines.empty() ? static_cast<LineSet>(random() % 4)
                                                           : lines.back());
    }

    std::vector<std::uint8_t> Store(const Reference::Sequence& frames) const {
        std::vector<std::uint8_t> tiles(layout.Bytes());
        for (int frame = 0; frame < kWindowFrames; ++frame) {
            const auto& bytes = frames[static_cast<std::size_t>(frame)].pixels;
            const std::vector<float> plane(bytes.begin(), bytes.end());
            StoreFrame(plane.data(), layout.width * static_cast<int>(sizeof(float)), layout,
                       (kOldestSlot + frame) % kWindowFrames, tiles.data());
        }
        return tiles;
    }

    std::vector<float> Map() const {
        std::vector<float> values(static_cast<std::size_t>(columns * layout.height));
        const BytePlane scratch(
            static_cast<std::uint8_t*>(AllocZeroed(GetSpaceTimeScratchSize(columns, layout.height))));
        SpaceTimeSSIM({layout, firstTiles.data(), secondTiles.data(), kOldestSlot}, kC1, kC2,
                      {values.data(), columns, layout.height, lines.data()}, scratch.get());
        return values;
    }

    std::vector<double> ReferenceMap() const {
        std::vector<double> values;
        const std::vector<double> weights = Reference::SpaceTimeWeights();
        for (int y = 0; y < layout.height; ++y)
            for (int x = 0; x < columns; ++x)
                values.push_back(Reference::PixelValue(
                    first, second, weights, x, y,
                    lines[static_cast<std::size_t>(y / kLineCell * (columns / kLineCell) + x / kLineCell)],
                    kC1, kC2));
        return values;
    }

    static constexpr int kOldestSlot = 20;

    Reference::Sequence first;
    Reference::Sequence second;
    FrameTiles layout;
    std::vector<std::uint8_t> firstTiles;
    std::vector<std::uint8_t> secondTiles;
    int columns;
    std::vector<LineSet> lines;
};

// The sums over time and space differ from the sums of 363 terms in the last places of a double alone, which
// a denominator of at least C2 makes no more than 1e-11: below the rounding to float, so that the floats
// agree.
TEST(SpaceTimeSSIM, SameAsAllSamples) {
    const struct {
        const char* what;
        Sampler first, second;
        int width, height, mapWidth;
    } cases[] = {
        {"one block", Moving, Coded, 8, 8, 16},
        {"smaller than the window", Grain, Coded, 8, 3, 8},
        {"a strip and the repeated columns of the next", Moving, Coded, 520, 9, 528},
        {"a cut in the middle", Moving, Cut, 72, 20, 80},
        {"negative covariance is limited", Moving, Negative, 40, 13, 48},
        {"noise against black", Grain, Black, 24, 12, 32},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Scene scene(c.first, c.second, c.width, c.height, c.mapWidth);
        const std::vector<double> expected = scene.ReferenceMap();
        const std::vector<float> map = scene.Map();
        int different = 0;
        for (std::size_t i = 0; i < map.size(); ++i) different += static_cast<float>(expected[i]) != map[i];
        EXPECT_EQ(0, different);
        ForEachTarget([&] { EXPECT_EQ(map, scene.Map()); });
    }
}

TEST(SpaceTimeSSIM, SameOnEveryTeam) {
    const Scene scene(Moving, Coded, 520, 64, 528);
    const std::vector<float> expected = scene.Map();
    ForEachTargetAndTeam([&] { EXPECT_EQ(expected, scene.Map()); });
}

TEST(SpaceTimeSSIM, EqualSequences) {
    const Scene scene(Cut, Cut, 40, 16, 48);
    for (float value : scene.Map()) ASSERT_EQ(1, value);
}

}  // namespace
}  // namespace Kernels
