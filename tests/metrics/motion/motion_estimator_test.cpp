#include "metrics/motion/motion_estimator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

#include "tests/kernels/targets.h"

namespace Metric {
namespace {

constexpr int kWidth = 96;
constexpr int kHeight = 80;

using Sampler = std::function<int(int x, int y)>;

/// A picture with its margin, which repeats the border.
class Picture {
public:
    explicit Picture(const Sampler& sample) {
        for (int y = -kMargin; y < kHeight + kMargin; ++y)
            for (int x = -kMargin; x < kWidth + kMargin; ++x)
                bytes.push_back(static_cast<std::uint8_t>(
                    sample(std::clamp(x, 0, kWidth - 1), std::clamp(y, 0, kHeight - 1))));
    }
    operator MotionPicture() const { return {bytes.data() + kMargin * (kStride + 1), kStride}; }

private:
    static constexpr int kMargin = 48;
    static constexpr int kStride = kWidth + 2 * kMargin;

    std::vector<std::uint8_t> bytes;
};

struct Estimator : MotionEstimator {
    Estimator() { Setup(kHeight, kWidth, MotionParameters{}); }
};

/// Waves in all directions, of which no part looks like another nearby, smooth enough to walk downhill on.
int Texture(int x, int y) {
    const double waves =
        std::sin(x * 0.31 + y * 0.11) + std::cos(y * 0.37 - x * 0.05) + std::sin(x * y * 0.004);
    return static_cast<int>(125 + 38 * waves);
}

/// The texture at quarter pixels by the rules of quarter-pixel interpolation: half pixels by six taps,
/// quarter ones between the two nearest of those, diagonally between one half right and one half down.
int Interpolated(int x4, int y4) {
    // A whole pixel counts 32 times, as much as the taps together.
    const auto taps = [](int place, auto sample) {
        return place % 2 == 0
                   ? 32 * sample(0)
                   : sample(-2) - 5 * sample(-1) + 20 * (sample(0) + sample(1)) - 5 * sample(2) + sample(3);
    };
    const auto half = [&](int x2, int y2) {
        const auto row = [&](int y) { return taps(x2, [&](int dx) { return Texture((x2 >> 1) + dx, y); }); };
        return std::clamp((taps(y2, [&](int dy) { return row((y2 >> 1) + dy); }) + 512) >> 10, 0, 255);
    };
    const int x2 = x4 >> 1, y2 = y4 >> 1;
    const int between = x4 & 1, betweenRows = y4 & 1;
    const bool isOtherDiagonal = between && betweenRows && (x2 + y2) % 2 == 0;  // the corners aren't halves
    return isOtherDiagonal ? (half(x2 + 1, y2) + half(x2, y2 + 1) + 1) / 2
                           : (half(x2, y2) + half(x2 + between, y2 + betweenRows) + 1) / 2;
}

// The current picture is the reference's texture as it stands (x, y) quarter pixels on, so that vector
// matches without a difference and its length in whole pixels, rounded down, is all it costs.
TEST(MotionEstimator, ShiftedTexture) {
    constexpr MotionVector kShifts[] = {{0, 0}, {4, 0},  {-4, 0},  {0, 4},  {0, -4}, {8, -4}, {-12, 8},
                                        {2, 0}, {0, -2}, {2, 2},   {-6, 2}, {1, 0},  {0, 3},  {1, 1},
                                        {3, 1}, {-1, 3}, {-3, -3}, {5, -2}, {2, 7},  {-9, 6}, {-40, 0}};
    const Picture reference(Texture);
    for (const MotionVector& shift : kShifts) {
        SCOPED_TRACE(testing::Message() << shift.x << ", " << shift.y);
        const Picture current([&](int x, int y) { return Interpolated(4 * x + shift.x, 4 * y + shift.y); });
        Kernels::ForEachTarget([&] {
            Estimator estimator;
            // The second frame starts from the first one's vectors, which may have had far to go.
            estimator.Estimate(current, reference);
            estimator.Estimate(current, reference);
            const MotionVector expected = {shift.x, shift.y,
                                           (std::abs(shift.x) >> 2) + (std::abs(shift.y) >> 2)};
            const MotionField& field = estimator.Field();
            for (int row = 1; row + 1 < field.rows; ++row) {
                for (int column = 1; column + 1 < field.columns; ++column) {
                    EXPECT_EQ(16, field.At(column, row).partition);
                    EXPECT_EQ(expected, field.At(column, row).vectors[0]);
                }
            }
        });
    }
}

// Every second stripe of 8 pixels moves left, the others right; in the lower half of the picture, stripes of
// 4. Finer waves than elsewhere make every block that holds two stripes a bad match.
TEST(MotionEstimator, SplitsWhereNeighboursPart) {
    const auto fine = [](int x, int y) { return Texture(2 * x, 2 * y); };
    const Picture reference(fine);
    const Picture current([&](int x, int y) {
        const int side = y < 48 ? 8 : 4;
        return fine(x + (x / side % 2 == 0 ? 2 : -2), y);
    });
    Estimator estimator;
    for (int frame = 0; frame < 2; ++frame) estimator.Estimate(current, reference);
    const MotionField& field = estimator.Field();
    for (int row = 1; row + 1 < field.rows; ++row) {
        for (int column = 1; column + 1 < field.columns; ++column) {
            const BlockMotion& block = field.At(column, row);
            EXPECT_EQ(8, block.partition);
            for (int quadrant = 0; quadrant < 4; ++quadrant) {
                EXPECT_EQ(row < 3 ? 8 : 4, block.quadrantPartition[static_cast<std::size_t>(quadrant)]);
                for (int small = 0; small < 4; ++small) {
                    const int stripe = row < 3 ? quadrant % 2 : small % 2;
                    const MotionVector expected = {stripe == 0 ? 8 : -8, 0, 2};
                    EXPECT_EQ(expected, block.VectorOf(quadrant, small))
                        << row << ' ' << column << ' ' << quadrant;
                }
            }
        }
    }
}

// On paper. Two costs a and b have the mean m = (a + b) / 2 and, the root of the sum of squares being divided
// by 2, the deviation |a - b| / sqrt(8). Running values start at 1500 and 500 and take in 0.3 of the smaller
// of two frames.
TEST(CostStatistics, Thresholds) {
    const auto frame = [](int a, int b) {
        MotionField field{2, 1, std::vector<BlockMotion>(2)};
        field.blocks[0].vectors[0].cost = a;
        field.blocks[1].vectors[0].cost = b;
        return field;
    };
    const struct {
        const char* what;
        int a, b;
        double mean, deviation;
    } frames[] = {
        {"equal pictures before all", 0, 0, 1500, 500},
        {"the first costs", 900, 1100, 1350, 371.2132},
        {"a cut: those of before count again", 9000, 12000, 1245, 281.0624},
        {"behind it", 500, 500, 0.3 * 500 + 0.7 * 1245, 0.7 * 281.0624},
        {"zeros don't count", 500, 0, 865.05, 137.7206},
    };
    CostStatistics statistics;
    for (const auto& f : frames) {
        SCOPED_TRACE(f.what);
        statistics.Update(frame(f.a, f.b));
        const CostThresholds thresholds = statistics.Thresholds();
        EXPECT_NEAR(f.mean + 0.2 * f.deviation, thresholds.split, 1e-3);
        EXPECT_NEAR(thresholds.split / 4, thresholds.quadrant, 1e-3);
        EXPECT_NEAR(f.mean + 0.7 * f.deviation, thresholds.projection, 1e-3);
    }
}

/// Six areas with motions of their own on noise that is four times as strong in frame 3, turned by a quarter
/// from frame 5 on, in four levels from frame 6 on: it takes every path of the search.
int UnsteadyScene(int frame, int x, int y) {
    constexpr int kMotions[][2] = {{2, -1}, {-5, 0}, {0, 6}, {9, 3}, {-1, -7}, {-14, 11}};
    const auto triangle = [](int v) { return std::abs(v % 64 - 32); };
    const std::uint32_t seed = 7919u * static_cast<unsigned>(x) + 104729u * static_cast<unsigned>(y) +
                               1299709u * static_cast<unsigned>(frame);
    const int noise = static_cast<int>(seed * 2654435761u >> 28);

    const auto& motion = kMotions[(x / 40 + 2 * (y / 36)) % 6];
    int u = 1000 + x + motion[0] * frame;
    int v = 1000 + y + motion[1] * frame;
    if (frame >= 5) u = std::exchange(v, u) + 17;
    const int sample = triangle(3 * u + v) + triangle(2 * v - u + 2000) + triangle(u * v / 64) +
                       noise * (frame == 3 ? 4 : 1);
    const int limited = std::min(2 * sample, 255);
    return frame >= 6 ? limited / 64 * 64 : limited;
}

/// A fingerprint (FNV-1a over words) of all partitions, vectors and costs.
std::uint32_t Fingerprint(const MotionField& field) {
    std::uint32_t hash = 2166136261u;
    const auto add = [&](int word) { hash = (hash ^ static_cast<std::uint32_t>(word)) * 16777619u; };
    for (const BlockMotion& block : field.blocks) {
        add(block.partition);
        if (block.partition == 8) std::for_each_n(block.quadrantPartition.begin(), 4, add);
        block.ForEachVector([&](const MotionVector& vector, int) {
            add(vector.x);
            add(vector.y);
            add(vector.cost);
        });
    }
    return hash;
}

// What a plain program in another language found, which shares nothing with this one. Each of these slips in
// it changes at least one: another order of the neighbours or of a pattern's steps, no block below, a
// projection with the wrong sign or place in the list, candidates that aren't dropped, other numbers of
// rounds, no large pattern.
TEST(MotionEstimator, OtherProgram) {
    constexpr std::uint32_t kFingerprints[] = {0x17595e38, 0xdf51e32f, 0x0b16ef97, 0x7ac30714, 0xebf741de,
                                               0x1258f8cf, 0x5b9bd125, 0xe32b4e40, 0xa1145b9f};
    const auto frameAt = [](int frame) {
        return Picture([frame](int x, int y) { return UnsteadyScene(frame, x, y); });
    };
    Estimator estimator;
    int frame = 1;
    for (const std::uint32_t expected : kFingerprints) {
        estimator.Estimate(frameAt(frame), frameAt(frame - 1));
        EXPECT_EQ(expected, Fingerprint(estimator.Field())) << frame;
        ++frame;
    }
}

}  // namespace
}  // namespace Metric
