#include "kernels/color_rows.h"

#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace Kernels {
namespace {

using Row = std::vector<float>;

bool SameBits(const Row& a, const Row& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

/// Values whose sums round, exact zeros of both signs among them.
Row Noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-300, 300);
    Row row(count);
    for (float& x : row) x = random() % 8 == 0 ? std::copysign(0.0f, value(random)) : value(random);
    return row;
}

TEST(ColorRows, SumsFromLeftToRight) {
    for (const std::size_t count : {1u, 5u, 16u, 37u, 100u}) {
        SCOPED_TRACE(count);
        Row first = Noise(count, 1);
        const Row second = Noise(count, 2), third = Noise(count, 3);
        first[0] = std::numeric_limits<float>::quiet_NaN();
        Row limited, plain;
        for (std::size_t i = 0; i < count; ++i) {
            const float sum = 1.164f * (first[i] - 16) + -0.391f * second[i] + 2.018f * third[i];
            limited.push_back(std::min(255.0f, std::max(0.0f, sum)));
            plain.push_back(0.257f * first[i] + 0.504f * second[i] + 0.098f * third[i] + 0.0f);
        }
        first[0] = 0;  // a plain sum of no number is none, of any bits
        plain[0] = 0.257f * 0 + 0.504f * second[0] + 0.098f * third[0] + 0.0f;
        const int n = static_cast<int>(count);
        ForEachTarget([&] {
            Row target = first;  // in place
            SumRows({target.data(), second.data(), third.data()}, {0.257f, 0.504f, 0.098f, 0}, target.data(),
                    n);
            EXPECT_TRUE(SameBits(plain, target));
            target = first;
            target[0] = std::numeric_limits<float>::quiet_NaN();
            SumRowsLimited({target.data(), second.data(), third.data()}, {16, 1.164f, -0.391f, 2.018f}, 255,
                           target.data(), n);
            EXPECT_TRUE(SameBits(limited, target));
        });
    }
}

TEST(ColorRows, LooksUpWhatIsOnTheGrid) {
    Row table(static_cast<std::size_t>(kUnits * kStepsPerUnit));
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<float>(i);
    std::mt19937 random(1);
    Row values, expected;
    for (int i = 0; i < 1000; ++i) {
        const int steps = static_cast<int>(random() % 65536);
        values.push_back(static_cast<float>(steps) / kStepsPerUnit);
        expected.push_back(static_cast<float>(steps / kStepsPerUnit + steps % kStepsPerUnit * kUnits));
    }
    const float kOthers[] = {-1,
                             -1.0f / 256,
                             256,
                             300.5f,
                             0.001f,
                             255.998f,
                             std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN(),
                             1e20f};
    ForEachTarget([&] {
        Row found(values.size());
        const auto lookUp = [&](const Row& from) {
            return LookUpRow(table.data(), from.data(), found.data(), static_cast<int>(from.size()));
        };
        EXPECT_TRUE(lookUp(values));
        EXPECT_EQ(expected, found);
        for (const float other : kOthers) {
            for (const std::size_t at : {std::size_t{0}, std::size_t{500}, values.size() - 1}) {
                Row changed = values;
                changed[at] = other;
                EXPECT_FALSE(lookUp(changed)) << other << " at " << at;
            }
        }
    });
}

}  // namespace
}  // namespace Kernels
