#include "kernels/samples.h"

#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Kernels {
namespace {

// Counts around the lengths of vectors and of the buffer for units of three bytes. The units lie in a block
// of just their size at any address, so that the address sanitizer sees a read behind the last one.
TEST(LoadSamples, EveryKindOfUnitAtAnyCount) {
    constexpr struct {
        int unitBytes, offset, sampleBytes;
    } kKinds[] = {{1, 0, 1}, {2, 0, 1}, {2, 1, 1}, {3, 0, 1}, {3, 1, 1}, {3, 2, 1},
                  {4, 0, 1}, {4, 1, 1}, {4, 2, 1}, {4, 3, 1}, {2, 0, 2}};
    constexpr int kCounts[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 33, 64, 65, 129, 511, 513, 1027};
    std::mt19937 random(1);
    for (const auto& kind : kKinds) {
        for (const bool inPairs : {false, true}) {
            for (const int count : kCounts) {
                SCOPED_TRACE("unit " + std::to_string(kind.unitBytes) + ", offset " +
                             std::to_string(kind.offset) + ", bytes " + std::to_string(kind.sampleBytes) +
                             (inPairs ? ", in pairs, " : ", ") + std::to_string(count));
                const int units = inPairs ? (count + 1) / 2 : count;
                std::vector<std::uint8_t> bytes(static_cast<std::size_t>(units * kind.unitBytes));
                for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
                std::vector<float> expected;
                for (int i = 0; i < count; ++i) {
                    const auto at =
                        static_cast<std::size_t>((inPairs ? i / 2 : i) * kind.unitBytes + kind.offset);
                    const int value = kind.sampleBytes == 2 ? bytes[at] + 256 * bytes[at + 1] : bytes[at];
                    expected.push_back(static_cast<float>(value) / 64 - 128);
                }
                ForEachTarget([&] {
                    std::vector<float> pixels(static_cast<std::size_t>(count) + 1, 77);
                    LoadSamples({bytes.data(), kind.unitBytes, kind.offset, kind.sampleBytes}, inPairs,
                                1.0f / 64, 128, pixels.data(), count);
                    EXPECT_EQ(77, pixels.back()) << "behind the row";
                    pixels.pop_back();
                    EXPECT_EQ(expected, pixels);
                });
            }
        }
    }
}

// As three calls that take one byte of each unit.
TEST(LoadTriples, TakesAllThreeBytes) {
    for (const int count : {0, 1, 15, 16, 17, 63, 64, 65, 511, 512, 513, 1000}) {
        SCOPED_TRACE(count);
        std::vector<std::uint8_t> units(static_cast<std::size_t>(3 * count));
        for (std::size_t i = 0; i < units.size(); ++i) units[i] = static_cast<std::uint8_t>(i * i / 7);
        ForEachTarget([&] {
            std::vector<std::vector<float>> pixels(
                3, std::vector<float>(static_cast<std::size_t>(count) + 1, 77));
            LoadTriples(units.data(), {pixels[0].data(), pixels[1].data(), pixels[2].data()}, count);
            for (int place = 0; place < 3; ++place) {
                std::vector<float> expected(static_cast<std::size_t>(count) + 1, 77);
                LoadSamples({units.data(), 3, place, 1}, false, 1, 0, expected.data(), count);
                EXPECT_EQ(expected, pixels[static_cast<std::size_t>(place)]);
            }
        });
    }
}

}  // namespace
}  // namespace Kernels
