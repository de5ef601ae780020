#include "kernels/flat_ssim.h"

#include "kernels/flat_walk.h"
#include "kernels/plane.h"
#include "kernels/reference/flat_ssim.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <random>
#include <vector>

namespace Kernels {
namespace {

constexpr float kC1 = 26634.24f;   // (0.01 * 255)^2 * 4096
constexpr float kC2 = 239708.16f;  // (0.03 * 255)^2 * 4096

// A picture and a distorted copy; samples are multiples of 1 / `steps`, from `darkest` or 0 to 255.
struct Pictures {
    Pictures(int width, int height, int darkest, int steps, unsigned seed)
        : first(width, Samples(width * height, darkest, steps, seed)),
          second(width, Distorted(steps, seed)) {}

    static std::vector<float> Samples(int count, int darkest, int steps, unsigned seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<int> samples(darkest * steps, 255 * steps);
        std::vector<float> pixels(static_cast<std::size_t>(count));
        for (float& pixel : pixels) pixel = static_cast<float>(samples(random)) / static_cast<float>(steps);
        return pixels;
    }

    std::vector<float> Distorted(int steps, unsigned seed) {
        std::mt19937 random(seed + 1000);
        std::uniform_int_distribution<int> noise(-9 * steps, 9 * steps);
        std::vector<float> pixels = first.Pixels();
        for (float& pixel : pixels)
            pixel = std::clamp(pixel + static_cast<float>(noise(random)) / static_cast<float>(steps), 0.0f,
                               255.0f);
        return pixels;
    }

    TestPlane<float> first;
    TestPlane<float> second;
};

// The map that makeMap(planes, scratch) writes. The scratch is full of NaN.
template <class MakeMap>
TestPlane<float> MapOf(const Pictures& pictures, const MakeMap& makeMap) {
    const auto& [first, second] = pictures;
    const int scratchFloats = static_cast<int>(GetFlatSSIMScratchSize(first.width) / sizeof(float));
    const FloatPlane scratch = MakeFloatPlane(scratchFloats, 1);
    std::fill_n(scratch.get(), scratchFloats, std::numeric_limits<float>::quiet_NaN());
    TestPlane<float> map(first.width, first.height);
    makeMap(SSIMPlanes{first.data(), first.stride, second.data(), second.stride, map.data(), map.stride,
                       first.width, first.height},
            scratch.get());
    return map;
}

TEST(FlatSSIM, GivesTheBitsOfTheReference) {
    const struct {
        const char* what;
        int width, height, darkest, steps;
    } kCases[] = {
        {"one window", 8, 8, 0, 1},
        {"one column less than a tile", 15, 15, 0, 4},
        {"one tile", 16, 16, 0, 4},
        {"one column more", 17, 17, 0, 4},
        {"a column of windows", 8, 70, 0, 4},
        {"a row of windows", 70, 8, 0, 4},
        {"several tiles and a rest", 45, 36, 0, 1024},
        {"sums of squares beyond 24 bits", 43, 700, 200, 1},
        {"the same, with fractions", 43, 700, 200, 64},
    };
    unsigned seed = 1;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const Pictures pictures(c.width, c.height, c.darkest, c.steps, seed++);
        const auto ssim = MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
            Reference::FlatSSIM(planes, kC1, kC2, scratch);
        });
        const auto contrast = MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
            Reference::FlatContrastStructure(planes, kC2, scratch);
        });
        ForEachTarget([&] {
            EXPECT_TRUE(ssim == MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
                            FlatSSIM(planes, kC1, kC2, scratch);
                        }));
            EXPECT_TRUE(contrast == MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
                            FlatContrastStructure(planes, kC2, scratch);
                        }));
        });
    }
}

// The map that the walk's rows make, beside which nothing is written; after every `stretch` rows another walk
// goes on.
template <class NextRow>
TestPlane<float> WalkedMap(const Pictures& pictures, int stretch, const NextRow& nextRow) {
    const int width = pictures.first.width;
    const auto bytesOf = [](const TestPlane<float>& plane) {
        TestPlane<std::uint8_t> bytes(plane.width, plane.height);
        for (int y = 0; y < plane.height; ++y)
            for (int x = 0; x < plane.width; ++x)
                Row(bytes.data(), bytes.stride, y)[x] =
                    static_cast<std::uint8_t>(Row(plane.data(), plane.stride, y)[x]);
        return bytes;
    };
    const TestPlane<std::uint8_t> first = bytesOf(pictures.first);
    const TestPlane<std::uint8_t> second = bytesOf(pictures.second);
    const BytePlane memory(static_cast<std::uint8_t*>(AllocZeroed(FlatWalk::MemoryBytes(width))));
    std::fill_n(memory.get(), FlatWalk::MemoryBytes(width), std::uint8_t{0xFF});
    const FloatPlane row = MakeFloatPlane(FlatWalk::RowFloats(width), 1);
    std::optional<FlatWalk> walk;
    TestPlane<float> map(width, first.height);
    for (int y = 0; y + kFlatWindow <= first.height; ++y) {
        const BytePictures bytes = {first.data(),  first.stride, second.data(),
                                    second.stride, width,        first.height};
        if (y % stretch == 0) walk.emplace(bytes, y, memory.get());
        nextRow(*walk, row.get());
        std::fill_n(row.get(), kFlatWindow - 1, row[kFlatWindow - 1]);
        std::copy_n(row.get(), width, Row(map.data(), map.stride, y));
    }
    return map;
}

TEST(FlatWalk, GivesTheBitsOfTheReference) {
    const struct {
        const char* what;
        int width, height, darkest;
    } kCases[] = {
        {"one window", 8, 8, 0},
        {"one column less than a vector", 15, 12, 0},
        {"a vector", 16, 30, 0},
        {"one column more", 17, 30, 0},
        {"two vectors and a rest", 45, 36, 0},
        {"a column of windows", 8, 70, 0},
        {"a row of windows", 300, 8, 0},
        {"sums of squares beyond 24 bits", 43, 700, 200},
        {"all white", 40, 1500, 255},
    };
    unsigned seed = 1;
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const Pictures pictures(c.width, c.height, c.darkest, 1, seed++);
        const auto ssim = MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
            Reference::FlatSSIM(planes, kC1, kC2, scratch);
        });
        const auto contrast = MapOf(pictures, [](const SSIMPlanes& planes, void* scratch) {
            Reference::FlatContrastStructure(planes, kC2, scratch);
        });
        ForEachTarget([&] {
            for (const int stretch : {c.height, 1, 9, 100}) {
                const auto ssimRow = [](FlatWalk& walk, float* row) { walk.NextSSIM(kC1, kC2, row); };
                const auto contrastRow = [](FlatWalk& walk, float* row) {
                    walk.NextContrastStructure(kC2, row);
                };
                EXPECT_TRUE(ssim == WalkedMap(pictures, stretch, ssimRow)) << stretch;
                EXPECT_TRUE(contrast == WalkedMap(pictures, stretch, contrastRow)) << stretch;
            }
        });
    }
}

// Metrics run side by side on the same pictures.
TEST(FlatSSIM, SideBySide) {
    const Pictures pictures(100, 104, 0, 4, 3);
    const auto makeMap = [](const SSIMPlanes& planes, void* scratch) { FlatSSIM(planes, kC1, kC2, scratch); };
    const auto alone = MapOf(pictures, makeMap);
    for (const int threads : {1, 2, 8}) {
        int wrong = 0;
#pragma omp parallel for num_threads(threads) reduction(+ : wrong)
        for (int i = 0; i < 16; ++i) wrong += !(alone == MapOf(pictures, makeMap));
        EXPECT_EQ(0, wrong);
    }
}

}  // namespace
}  // namespace Kernels
