#include "kernels/space_time_ssim.h"

#include "kernels/plane.h"
#include "kernels/reference/space_time_ssim.h"
#include "tests/kernels/test_plane.h"

namespace Kernels {
namespace {

constexpr double kC1 = 6.5025, kC2 = 58.5225;
constexpr int kOldestSlot = 20;

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

/// A sequence as pictures, and in tiles whose oldest frame is in slot 20.
struct Frames {
    Frames(Sampler sample, const FrameTiles& layout) : tiles(layout.Bytes()) {
        for (int frame = 0; frame < kWindowFrames; ++frame) {
            std::vector<float> plane;
            for (int y = 0; y < layout.height; ++y)
                for (int x = 0; x < layout.width; ++x)
                    plane.push_back(static_cast<float>(sample(frame, x, y)));
            StoreFrame(plane.data(), layout.width * static_cast<int>(sizeof(float)), layout,
                       (kOldestSlot + frame) % kWindowFrames, tiles.data());
            pictures.push_back({layout.width, layout.height, {plane.begin(), plane.end()}});
        }
    }

    Reference::Sequence pictures;
    std::vector<std::uint8_t> tiles;
};

// All line sets are mixed. The sums over time and space differ from the sums of 363 terms in the last places
// of a double alone, which a denominator of at least C2 makes no more than 1e-11: below the rounding to
// float, so that the floats agree.
TEST(SpaceTimeSSIM, SameAsAllSamples) {
    const struct {
        const char* what;
        Sampler first, second;
        int width, height, mapWidth;
    } cases[] = {
        {"one block", Moving, Coded, 8, 8, 16},
        {"smaller than the window", Grain, Coded, 8, 3, 8},
        {"a strip and the repeated columns of the next", Moving, Coded, 520, 9, 528},
        {"for a team", Moving, Coded, 520, 64, 528},
        {"a cut in the middle", Moving, Cut, 72, 20, 80},
        {"negative covariance is limited", Moving,
         [](int frame, int x, int y) { return 255 - Moving(frame, x, y); }, 40, 13, 48},
        {"noise against black", Grain, [](int, int, int) { return 0; }, 24, 12, 32},
        {"equal", Cut, Cut, 40, 16, 48},
    };
    const std::vector<double> weights = Reference::SpaceTimeWeights();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const FrameTiles layout{c.width, c.height, kWindowFrames};
        const Frames first(c.first, layout), second(c.second, layout);
        const int cells = c.mapWidth / kLineCell;
        std::vector<LineSet> lines;
        Random random(5);
        for (int cell = 0; cell < cells * ((c.height + kLineCell - 1) / kLineCell); ++cell)
            lines.push_back(cell % 3 == 0 ? static_cast<LineSet>(random() % 4) : lines.back());

        std::vector<float> expected;
        for (int y = 0; y < c.height; ++y)
            for (int x = 0; x < c.mapWidth; ++x) {
                const auto cell = static_cast<std::size_t>(y / kLineCell * cells + x / kLineCell);
                expected.push_back(static_cast<float>(Reference::PixelValue(
                    first.pictures, second.pictures, weights, x, y, lines[cell], kC1, kC2)));
            }
        EXPECT_EQ(c.first == c.second, expected == std::vector<float>(expected.size(), 1));
        ForEachTargetAndTeam([&] {
            std::vector<float> map(expected.size());
            const BytePlane scratch(
                static_cast<std::uint8_t*>(AllocZeroed(GetSpaceTimeScratchSize(c.mapWidth, c.height))));
            SpaceTimeSSIM({layout, first.tiles.data(), second.tiles.data(), kOldestSlot}, kC1, kC2,
                          {map.data(), c.mapWidth, c.height, lines.data()}, scratch.get());
            EXPECT_TRUE(expected == map);
        });
    }
}

}  // namespace
}  // namespace Kernels
