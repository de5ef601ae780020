#include "kernels/block_difference.h"
#include "kernels/ordered_sum.h"
#include "kernels/reference/block_difference.h"
#include "kernels/reference/ordered_class_sums.h"
#include "kernels/reference/ordered_sum.h"
#include "kernels/reference/reductions.h"
#include "kernels/sample_difference.h"
#include "tests/kernels/test_plane.h"

#include <bit>

namespace Kernels {
namespace {

float Between(Random& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}

// Kinds of values that additions round in different ways.
constexpr struct {
    const char* what;
    float (*value)(Random&);
} kKinds[] = {
    {"near 1", [](Random& r) { return Between(r, 0.9f, 1.0f); }},
    {"of both signs", [](Random& r) { return Between(r, -1, 1); }},
    {"half ways up to a unit of 2^8",
     [](Random& r) { return std::ldexp(r() % 2 == 0 ? 1.0f : 3.0f, static_cast<int>(r() % 16) - 8); }},
    {"of all sizes",
     [](Random& r) { return std::ldexp(Between(r, -1, 1), static_cast<int>(r() % 60) - 30); }},
    {"tiny", [](Random& r) { return Between(r, 0, 1e-30f); }},
    {"great now and then", [](Random& r) { return r() % 300 == 0 ? 1e6f : Between(r, 0, 1); }},
    {"leaving the range and coming back", [](Random& r) { return Between(r, -64, 64); }},
    {"not finite now and then", [](Random& r) { return r() % 900 == 0 ? kInfinity : Between(r, 0, 1); }},
};

// use(values, start) for planes of three rows of every kind. The sums start at powers of two from 2^-6 to
// 2^31, a bit off, so that a kind meets units from far below its values to above them.
template <class Use>
void ForEachPlane(const Use& use) {
    Random random(1);
    for (const auto& kind : kKinds) {
        SCOPED_TRACE(kind.what);
        for (int exponent = -6; exponent < 32; ++exponent) {
            Plane values(300 + exponent, 3);
            values.ForEach([&](float& value) { value = kind.value(random); });
            use(values, std::ldexp(Between(random, 0.97f, 1.03f), exponent));
        }
    }
}

TEST(OrderedSum, EveryTargetGivesTheBitsOfTheChain) {
    ForEachPlane([](const Plane& values, float start) {
        for (const float from : {start, -start, 0.0f}) {
            const auto bits = [&](auto sum) {
                return std::pair(
                    std::bit_cast<std::uint32_t>(sum(from, values.data(), values.stride, values.width, 3)),
                    std::bit_cast<std::uint64_t>(
                        sum(double{from}, values.data(), values.stride, values.width, 3)));
            };
            const auto chain = bits([](auto... arguments) { return Reference::OrderedSum(arguments...); });
            ForEachTarget(
                [&] { EXPECT_EQ(chain, bits([](auto... arguments) { return OrderedSum(arguments...); })); });
        }
    });
}

// 1/4 many times to a float: from 2^22 on the additions change nothing, so the sum stands still there. The
// rows have a gap, and are shorter than a vector, as long as one, or longer than a run.
TEST(OrderedSum, RowsOfAPlane) {
    for (const int width : {1, 3, 16, 257, 1000}) {
        SCOPED_TRACE(width);
        const Plane plane(width, std::vector<float>(static_cast<std::size_t>(width * 40), 0.25f));
        const float below = 4194304 - 100, sum = static_cast<float>(width) * 10;
        ForEachTarget([&] {
            EXPECT_EQ(sum, OrderedSum(0.0f, plane.data(), plane.stride, width, 40));
            EXPECT_EQ(std::min(below + sum, 4194304.0f),
                      OrderedSum(below, plane.data(), plane.stride, width, 40));
        });
    }
}

// How pixels are shared out to the classes.
constexpr struct {
    const char* what;
    unsigned (*classOf)(Random&, unsigned index);
} kPatterns[] = {
    {"all mixed", [](Random& r, unsigned) { return static_cast<unsigned>(r() % 3); }},
    {"one class", [](Random&, unsigned) { return 1u; }},
    {"areas", [](Random&, unsigned index) { return index / 150 % 3; }},
    {"one class hardly ever", [](Random& r, unsigned) { return r() % 200 == 0 ? 2u : unsigned(r() % 2); }},
};

TEST(OrderedClassSums, EveryTargetGivesTheBitsOfTheChains) {
    Random random(1);
    ForEachPlane([&](const Plane& values, float start) {
        for (const auto& pattern : kPatterns) {
            SCOPED_TRACE(pattern.what);
            Bytes classes(values.width, 3);
            unsigned i = 0;
            classes.ForEach([&](std::uint8_t& number) {
                number = static_cast<std::uint8_t>(pattern.classOf(random, i++));
            });
            // Sums of different sizes, the third of none at times.
            const ClassSums before = {start, random() % 2 == 0 ? start * 16 : -start,
                                      random() % 4 == 0 ? 0 : start * 1000};
            const auto bits = [&](auto addInOrder) {
                ClassSums sums = before;
                addInOrder(sums, values.data(), values.stride, classes.data(), classes.stride, values.width,
                           3);
                return std::bit_cast<std::array<std::uint32_t, kSumClasses>>(sums);
            };
            const auto expected = bits(Reference::AddInOrder);
            ForEachTarget([&] { EXPECT_EQ(expected, bits(AddInOrder)); });
        }
    });
}

TEST(Reductions, ByHand) {
    const Plane a(2, {1, 2, 3, 10}), b(2, {1, 5, 3, 6});
    EXPECT_EQ(5, NormDiffL2(a.data(), a.stride, b.data(), b.stride, 2, 2, AccuracyHigh));  // 3^2 + 4^2
    EXPECT_EQ(4, Mean(a.data(), a.stride, 2, 2, AccuracyHigh));
    EXPECT_EQ(0, Mean(a.data(), a.stride, 2, 0, AccuracyHigh));
    EXPECT_EQ(0, NormDiffL2(a.data(), a.stride, b.data(), b.stride, 0, 2, AccuracyHigh));
}

// Of a maximum the sign of zero counts too; its pixels are also no numbers, or infinite.
TEST(Reductions, SameBitsAsReference) {
    struct Operations {
        double (*norm)(const float*, int, const float*, int, int, int, AccuracyHint);
        double (*mean)(const float*, int, int, int, AccuracyHint);
        float (*max)(const float*, int, int, int);
    };
    const Operations kernels = {NormDiffL2, Mean, Max};
    const Operations references = {Reference::NormDiffL2, Reference::Mean, Reference::Max};
    const auto values = [](const Operations& by, int w, int h) {
        std::vector<double> values;
        for (unsigned seed = 0; seed < 5; ++seed) {
            const Plane a = PixelsOfAllSizes(w, h, 2 * seed), b = PixelsOfAllSizes(w, h, 2 * seed + 1);
            values.insert(values.end(), {by.norm(a.data(), a.stride, b.data(), b.stride, w, h, AccuracyHigh),
                                         by.mean(a.data(), a.stride, w, h, AccuracyHigh),
                                         by.max(a.data(), a.stride, w, h)});
        }
        Random random(1);
        Plane unusual(w, h);
        for (const unsigned kinds : {1u, 2u, 3u, 4u, 5u, 6u}) {
            const float kPixels[] = {kNan, -kNan, -kInfinity, -0.0f, 0, kInfinity};
            unusual.ForEach([&](float& pixel) { pixel = kPixels[random() % kinds]; });
            const float max = by.max(unusual.data(), unusual.stride, w, h);
            values.insert(values.end(), {max, std::signbit(max) ? -1.0 : 1.0});
        }
        return values;
    };
    ExpectReference("", kernels, references, values);
    ExpectReference("more rows than are summed at once", kernels, references, values, {{17, 5000}});

    const auto normAsRead = [](const float* a, int aStride, const float* b, int bStride, int w, int h,
                               AccuracyHint hint) {
        const auto read = [=](int x, int y, int count, float* first, float* second) {
            std::copy_n(Row(a, aStride, y) + x, count, first);
            std::copy_n(Row(b, bStride, y) + x, count, second);
        };
        return NormDiffL2AsRead(read, w, h, hint);
    };
    ExpectReference("as read", Operations{normAsRead, Mean, Max}, references, values);
}

template <class Sample>
void ExpectWhatFloatPlanesGive(const PlaneSize& size, bool isGreatest) {
    const auto& [width, height] = size;
    Random random(1);
    TestPlane<Sample> first(width, height), second(width, height);
    first.ForEach([&](Sample& sample) {
        sample = isGreatest ? std::numeric_limits<Sample>::max() : static_cast<Sample>(random());
    });
    second.ForEach([&](Sample& sample) { sample = isGreatest ? Sample{0} : static_cast<Sample>(random()); });
    const Plane a(width, first.template Pixels<float>()), b(width, second.template Pixels<float>());
    const double norm = NormDiffL2(a.data(), a.stride, b.data(), b.stride, width, height, AccuracyHigh);
    const auto rows = [&](const TestPlane<Sample>& plane, bool bottomUp) {
        const Sample& start = plane.At(0, bottomUp ? plane.height - 1 : 0);
        return SampleRows{reinterpret_cast<const std::uint8_t*>(&start),
                          bottomUp ? -plane.stride : plane.stride};
    };
    ForEachTargetAndTeam([&, w = width, h = height] {
        for (const bool bottomUp : {false, true}) {
            const std::uint64_t sum =
                SumSquaredDifferences(rows(first, bottomUp), rows(second, bottomUp), sizeof(Sample), w, h);
            EXPECT_EQ(norm, std::sqrt(static_cast<double>(sum))) << bottomUp;
        }
    });
}

// To the bit; in long rows also with the greatest squares, of which a 32-bit sum holds few.
TEST(SumSquaredDifferences, IsWhatTheFloatPlanesGive) {
    std::vector<PlaneSize> sizes = {{70001, 3}, {16385, 2}};
    for (const bool isGreatest : {true, false}) {
        for (const PlaneSize& size : sizes) {
            SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
            ExpectWhatFloatPlanesGive<std::uint8_t>(size, isGreatest);
            ExpectWhatFloatPlanesGive<std::uint16_t>(size, isGreatest);
        }
        sizes.insert(sizes.end(), kPlaneSizes.begin(), kPlaneSizes.end());
    }
    EXPECT_EQ(0u, SumSquaredDifferences({nullptr, 0}, {nullptr, 0}, 1, 0, 0));
}

TEST(BlockDifference, SameAsReference) {
    const Bytes block = HarshBytes(45, 33, 1), other = HarshBytes(45, 33, 2);
    const Bytes black(45, std::vector<std::uint8_t>(45 * 33, 0));
    const Bytes white(45, std::vector<std::uint8_t>(45 * 33, 255));
    ForEachTarget([&] {
        for (const int side : {4, 8, 16}) {
            SCOPED_TRACE(side);
            for (const int offset : {0, 1, 3, 17}) {
                const std::uint8_t* first = other.data() + offset;
                for (const int step : {0, 1, other.stride}) {
                    const auto by = [&](auto difference) {
                        return difference(block.data() + offset, block.stride, first,
                                          step == 0 ? nullptr : first + step, other.stride, side);
                    };
                    EXPECT_EQ(by(Reference::BlockDifference), by(BlockDifference));
                }
            }
            EXPECT_EQ(255 * side * side,
                      BlockDifference(black.data(), black.stride, white.data(), nullptr, white.stride, side));
        }
    });
}

}  // namespace
}  // namespace Kernels
