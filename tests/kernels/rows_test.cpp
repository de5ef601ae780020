#include "kernels/color_rows.h"
#include "kernels/samples.h"
#include "tests/kernels/test_plane.h"

#include <numeric>
#include <utility>

namespace Kernels {
namespace {

using Floats = std::vector<float>;

/// Values whose sums round, exact zeros of both signs among them.
Floats Noise(std::size_t count, unsigned seed) {
    Random random(seed);
    std::uniform_real_distribution<float> value(-300, 300);
    Floats row(count);
    for (float& x : row) x = random() % 8 == 0 ? std::copysign(0.0f, value(random)) : value(random);
    return row;
}

// The targets are the first row.
TEST(ColorRows, SumsFromLeftToRight) {
    for (const std::size_t count : {1u, 5u, 16u, 37u, 100u}) {
        SCOPED_TRACE(count);
        const Floats first = Noise(count, 1), second = Noise(count, 2), third = Noise(count, 3);
        Floats firstWithNan = first, limited, plain;
        firstWithNan[0] = kNan;
        for (std::size_t i = 0; i < count; ++i) {
            const float sum = 1.164f * (firstWithNan[i] - 16) + -0.391f * second[i] + 2.018f * third[i];
            limited.push_back(std::min(255.0f, std::max(0.0f, sum)));
            plain.push_back(0.257f * first[i] + 0.504f * second[i] + 0.098f * third[i] + 0.0f);
        }
        const int n = static_cast<int>(count);
        ForEachTarget([&] {
            Floats target = first;
            SumRows({target.data(), second.data(), third.data()}, {0.257f, 0.504f, 0.098f, 0}, target.data(),
                    n);
            EXPECT_TRUE(Plane(n, plain) == Plane(n, target));
            target = firstWithNan;
            SumRowsLimited({target.data(), second.data(), third.data()}, {16, 1.164f, -0.391f, 2.018f}, 255,
                           target.data(), n);
            EXPECT_TRUE(Plane(n, limited) == Plane(n, target));
        });
    }
}

TEST(ColorRows, LooksUpWhatIsOnTheGrid) {
    Floats table(static_cast<std::size_t>(kUnits * kStepsPerUnit));
    std::iota(table.begin(), table.end(), 0.0f);
    Random random(1);
    Floats values, expected;
    for (int i = 0; i < 1000; ++i) {
        const int steps = static_cast<int>(random() % 65536);
        values.push_back(static_cast<float>(steps) / kStepsPerUnit);
        expected.push_back(static_cast<float>(steps / kStepsPerUnit + steps % kStepsPerUnit * kUnits));
    }
    ForEachTarget([&] {
        Floats found(values.size());
        const auto lookUp = [&] { return LookUpRow(table.data(), values.data(), found.data(), 1000); };
        EXPECT_TRUE(lookUp());
        EXPECT_EQ(expected, found);
        for (const float other :
             {-1.0f, -1.0f / 256, 256.0f, 300.5f, 0.001f, 255.998f, kInfinity, kNan, 1e20f}) {
            for (const std::size_t at : {0u, 500u, 999u}) {
                const float before = std::exchange(values[at], other);
                EXPECT_FALSE(lookUp()) << other << " at " << at;
                values[at] = before;
            }
        }
    });
}

// Counts around the lengths of vectors and of the buffer for units of three bytes. The units lie in a block
// of just their size at any address, so that the address sanitizer sees a read behind the last one.
TEST(LoadSamples, EveryKindOfUnitAtAnyCount) {
    constexpr struct {
        int unitBytes, offset, sampleBytes;
    } kKinds[] = {{1, 0, 1}, {2, 0, 1}, {2, 1, 1}, {3, 0, 1}, {3, 1, 1}, {3, 2, 1},
                  {4, 0, 1}, {4, 1, 1}, {4, 2, 1}, {4, 3, 1}, {2, 0, 2}};
    constexpr int kCounts[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 33, 64, 65, 129, 511, 513, 1027};
    Random random(1);
    for (const auto& [unitBytes, offset, sampleBytes] : kKinds) {
        for (const int pixelsOfASample : {1, 2}) {
            for (const int count : kCounts) {
                SCOPED_TRACE(testing::Message()
                             << sampleBytes << " of " << unitBytes << " bytes from " << offset << ", "
                             << count << " pixels, by " << pixelsOfASample);
                const int units = (count + pixelsOfASample - 1) / pixelsOfASample;
                std::vector<std::uint8_t> bytes(static_cast<std::size_t>(units * unitBytes));
                for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
                Floats expected;
                for (int i = 0; i < count; ++i) {
                    const auto* sample = bytes.data() + i / pixelsOfASample * unitBytes + offset;
                    const int value = sampleBytes == 2 ? sample[0] + 256 * sample[1] : sample[0];
                    expected.push_back(static_cast<float>(value) / 64 - 128);
                }
                expected.push_back(77);  // behind the row
                const SampleRow row = {bytes.data(), unitBytes, offset, sampleBytes};
                ForEachTarget([&, inPairs = pixelsOfASample == 2, n = count] {
                    Floats pixels(expected.size(), 77);
                    LoadSamples(row, inPairs, 1.0f / 64, 128, pixels.data(), n);
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
            std::vector<Floats> pixels(3, Floats(static_cast<std::size_t>(count) + 1, 77));
            LoadTriples(units.data(), {pixels[0].data(), pixels[1].data(), pixels[2].data()}, count);
            for (int place = 0; place < 3; ++place) {
                Floats expected(pixels[0].size(), 77);
                LoadSamples({units.data(), 3, place, 1}, false, 1, 0, expected.data(), count);
                EXPECT_EQ(expected, pixels[static_cast<std::size_t>(place)]);
            }
        });
    }
}

}  // namespace
}  // namespace Kernels
