#include "kernels/flat_ssim.h"

#include "kernels/flat_walk.h"
#include "kernels/plane.h"
#include "kernels/reference/flat_ssim.h"
#include "tests/kernels/test_plane.h"

#include <optional>

namespace Kernels {
namespace {

constexpr float kC1 = 26634.24f;   // (0.01 * 255)^2 * 4096
constexpr float kC2 = 239708.16f;  // (0.03 * 255)^2 * 4096

struct Pictures {
    Plane first, second;
};

// A picture and a distorted copy; samples are multiples of 1 / `steps`, from `darkest` or 0 to 255.
Pictures MakePictures(int width, int height, int darkest, int steps) {
    Pictures pictures = {{width, height}, {width, height}};
    Random random(static_cast<unsigned>(width + steps));
    const auto between = [&](int low, int high) {
        return static_cast<float>(std::uniform_int_distribution<int>(low * steps, high * steps)(random)) /
               static_cast<float>(steps);
    };
    pictures.first.ForEach([&](float& pixel) { pixel = between(darkest, 255); });
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pictures.second.At(x, y) = std::clamp(pictures.first.At(x, y) + between(-9, 9), 0.0f, 255.0f);
    return pictures;
}

struct Maps {
    Plane ssim, contrastStructure;

    bool operator==(const Maps&) const = default;
};

// The scratch is full of NaN.
template <class SSIM, class ContrastStructure>
Maps MapsOf(const Pictures& pictures, SSIM ssim, ContrastStructure contrastStructure) {
    const auto& [first, second] = pictures;
    const int scratchFloats = static_cast<int>(GetFlatSSIMScratchSize(first.width) / sizeof(float));
    const FloatPlane scratch = MakeFloatPlane(scratchFloats, 1);
    std::fill_n(scratch.get(), scratchFloats, kNan);
    Maps maps = {{first.width, first.height}, {first.width, first.height}};
    const auto planes = [&, &a = first, &b = second](Plane& map) {
        return SSIMPlanes{a.data(), a.stride, b.data(), b.stride, map.data(), map.stride, a.width, a.height};
    };
    ssim(planes(maps.ssim), kC1, kC2, scratch.get());
    contrastStructure(planes(maps.contrastStructure), kC2, scratch.get());
    return maps;
}

// The map that the walk's rows make, beside which nothing is written; after every `stretch` rows another walk
// goes on.
template <class NextRow>
Plane WalkedMap(const Pictures& pictures, int stretch, const NextRow& nextRow) {
    const Bytes first = BytesOf(pictures.first), second = BytesOf(pictures.second);
    const int width = first.width;
    const BytePlane memory(static_cast<std::uint8_t*>(AllocZeroed(FlatWalk::MemoryBytes(width))));
    std::fill_n(memory.get(), FlatWalk::MemoryBytes(width), std::uint8_t{0xFF});
    const FloatPlane row = MakeFloatPlane(FlatWalk::RowFloats(width), 1);
    std::optional<FlatWalk> walk;
    Plane map(width, first.height);
    for (int y = 0; y + kFlatWindow <= first.height; ++y) {
        const BytePictures bytes = {first.data(),  first.stride, second.data(),
                                    second.stride, width,        first.height};
        if (y % stretch == 0) walk.emplace(bytes, y, memory.get());
        nextRow(*walk, row.get());
        std::fill_n(row.get(), kFlatWindow - 1, row[kFlatWindow - 1]);
        std::copy_n(row.get(), width, &map.At(0, y));
    }
    return map;
}

// Around vectors and tiles of 16, single rows and columns of windows, and sums of squares beyond 24 bits.
TEST(FlatSSIM, SameBitsAsReferenceAndByWalksOverBytes) {
    constexpr struct {
        int width, height, darkest;
    } kCases[] = {{8, 8, 0},  {15, 15, 0}, {16, 16, 0}, {17, 30, 0},    {8, 70, 0},
                  {70, 8, 0}, {300, 8, 0}, {45, 36, 0}, {43, 700, 200}, {40, 1500, 255}};
    for (const auto& c : kCases) {
        for (const int steps : {1, 4, 1024}) {
            SCOPED_TRACE(testing::Message() << c.width << " by " << c.height << ", 1/" << steps);
            const Pictures pictures = MakePictures(c.width, c.height, c.darkest, steps);
            const Maps expected = MapsOf(pictures, Reference::FlatSSIM, Reference::FlatContrastStructure);
            ForEachTarget([&] {
                EXPECT_TRUE(expected == MapsOf(pictures, FlatSSIM, FlatContrastStructure));
                if (steps > 1) return;
                for (const int stretch : {c.height, 1, 9, 100}) {
                    const Maps walked = {
                        WalkedMap(pictures, stretch,
                                  [](FlatWalk& walk, float* row) { walk.NextSSIM(kC1, kC2, row); }),
                        WalkedMap(pictures, stretch,
                                  [](FlatWalk& walk, float* row) { walk.NextContrastStructure(kC2, row); })};
                    EXPECT_TRUE(expected == walked) << stretch;
                }
            });
        }
    }
}

}  // namespace
}  // namespace Kernels
