#include "kernels/reference/sort.h"
#include "kernels/smallest.h"
#include "tests/kernels/test_plane.h"

#include <bit>
#include <functional>
#include <numeric>

namespace Kernels {
namespace {

using Floats = std::vector<float>;
using Kind = std::function<float(int index)>;

// use(values) for rows of each kind and of each count.
template <class Use>
void ForEachRow(const std::vector<Kind>& kinds, const std::vector<int>& counts, const Use& use) {
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        for (const int count : counts) {
            SCOPED_TRACE(testing::Message() << count << " values of kind " << kind);
            Floats values;
            for (int i = 0; i < count; ++i) values.push_back(kinds[kind](i));
            use(values, count);
        }
    }
}

TEST(SortAscend, SameBitsAsReference) {
    Random random(1);
    const float special[] = {0, -0.0f, kInfinity, -kInfinity, kNan, -kNan, 1};
    const std::vector<Kind> kinds = {
        [&](int) { return std::bit_cast<float>(static_cast<std::uint32_t>(random())); },
        [&](int) { return special[random() % 7]; }, [](int) { return 1.0f; },
        [](int i) { return static_cast<float>(i); }, [](int i) { return static_cast<float>(-i); }};
    ForEachRow(kinds, {0, 1, 2, 3, 15, 16, 17, 255, 1000, 70000}, [](const Floats& values, int count) {
        const auto sorted = [&](auto sort) {
            Plane plane(count, 3);  // cells of nobody lie on both sides of the middle row
            std::copy(values.begin(), values.end(), &plane.At(0, 1));
            sort(&plane.At(0, 1), count);
            return plane;
        };
        const Plane expected = sorted(Reference::SortAscend);
        ForEachTarget([&] { EXPECT_TRUE(expected == sorted(SortAscend)); });
    });
}

// Against a sort. Multiples of 2^-20 below 1 have sums that are exact in any order.
TEST(MeanOfSmallest, SameAsSorted) {
    Random random(3);
    const auto of = [&](unsigned levels, float step) { return static_cast<float>(random() % levels) * step; };
    const std::vector<Kind> kinds = {
        [&](int) { return of(1u << 20, 0x1p-20f); }, [&](int) { return of(7, 0.125f) - 0.25f; },
        [&](int) { return random() % 100 == 0 ? 0.5f : 1.0f; },
        [&](int) { return random() % 2 == 0 ? 0.0f : -0.0f; }, [](int) { return 1.0f; },
        // The samples mislead.
        [&](int i) { return i % 127 == 0 ? 1.0f : of(64, 0x1p-7f); },
        [&](int i) { return i % 127 == 0 ? 0.0f : of(64, 0x1p-7f) + 0.25f; }};
    ForEachRow(kinds, {1, 5, 15, 17, 1000, 70001}, [](const Floats& values, int count) {
        Floats sorted = values, scratch(values.size());
        std::sort(sorted.begin(), sorted.end());
        for (const int smallest : {1, count / 17 + 1, (count + 1) / 2, count}) {
            const double sum = std::accumulate(sorted.begin(), sorted.begin() + smallest, 0.0);
            ForEachTarget([&] {
                EXPECT_EQ(sum / smallest, MeanOfSmallest(values.data(), count, smallest, scratch.data()));
            });
        }
    });
}

}  // namespace
}  // namespace Kernels
