#include "kernels/arithmetic.h"

#include "kernels/reference/arithmetic.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace Kernels {
namespace {

TEST(Arithmetic, BytesAreRoundedToEvenAndLimited) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr struct {
        float value;
        std::uint8_t expected;
    } kCases[] = {
        {255.75f, 255},   {254.5f, 254},   {253.5f, 254},
        {2.5f, 2},        {3.5f, 4},       {0.5f, 0},
        {0.50000006f, 1}, {1.4999999f, 1}, {0.49999997f, 0},
        {-0.5f, 0},       {-7, 0},         {1e10f, 255},
        {kInfinity, 255}, {-kInfinity, 0}, {std::numeric_limits<float>::quiet_NaN(), 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.value);
        TestPlane<float> source(33, 1);  // in whole vectors and behind them
        source.ForEach([&](float& pixel) { pixel = c.value; });
        ForEachTarget([&] {
            TestPlane<std::uint8_t> target(33, 1);
            ConvertToBytes(source.data(), source.stride, target.data(), target.stride, 33, 1);
            EXPECT_EQ(std::vector<std::uint8_t>(33, c.expected), target.Pixels());
        });
    }
}

using Plane = TestPlane<float>;

// use(width, height) under a trace, for all sizes.
template <class Use>
void ForEachSize(const Use& use) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(testing::Message() << width << " by " << height);
        use(width, height);
    }
}

TEST(Arithmetic, OnePlaneToAnotherHasTheBitsOfTheReference) {
    using Operation = void (*)(const float*, int, float*, int, int, int);
    const struct {
        const char* what;
        Operation operation;
        Operation reference;
    } cases[] = {{"Sqr", Sqr, Reference::Sqr},
                 {"AddInPlace", AddInPlace, Reference::AddInPlace},
                 {"CopyPlane", CopyPlane, Reference::CopyPlane}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachSize([&](int width, int height) {
            const Plane source = PixelsOfAllSizes(width, height, 1);
            const auto result = [&](Operation operation) {
                Plane target = PixelsOfAllSizes(width, height, 2);
                operation(source.data(), source.stride, target.data(), target.stride, width, height);
                return target;
            };
            const Plane expected = result(c.reference);
            ForEachTargetAndTeam([&] { EXPECT_TRUE(expected == result(c.operation)); });
        });
    }
}

TEST(Arithmetic, InPlaceHasTheBitsOfTheReference) {
    using Operation = void (*)(float*, int, int, int);
    const struct {
        const char* what;
        Operation operation;
        Operation reference;
    } cases[] = {{"SqrInPlace", SqrInPlace, Reference::SqrInPlace},
                 {"SqrtInPlace", SqrtInPlace, Reference::SqrtInPlace}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachSize([&](int width, int height) {
            const auto result = [&](Operation operation) {
                Plane plane = Picture(width, height, 1);
                operation(plane.data(), plane.stride, width, height);
                return plane;
            };
            const Plane expected = result(c.reference);
            ForEachTargetAndTeam([&] { EXPECT_TRUE(expected == result(c.operation)); });
        });
    }
}

TEST(Arithmetic, MulAndBytesHaveTheBitsOfTheReference) {
    ForEachSize([](int width, int height) {
        const Plane a = PixelsOfAllSizes(width, height, 1);
        const Plane b = PixelsOfAllSizes(width, height, 2);
        const auto product = [&](auto mul) {
            Plane target(width, height);
            mul(a.data(), a.stride, b.data(), b.stride, target.data(), target.stride, width, height);
            return target;
        };
        const auto bytes = [&](auto convert) {
            TestPlane<std::uint8_t> target(width, height);
            convert(a.data(), a.stride, target.data(), target.stride, width, height);
            return target;
        };
        const Plane expectedProduct = product(Reference::Mul);
        const TestPlane<std::uint8_t> expectedBytes = bytes(Reference::ConvertToBytes);
        ForEachTargetAndTeam([&] {
            EXPECT_TRUE(expectedProduct == product(Mul));
            EXPECT_TRUE(expectedBytes == bytes(ConvertToBytes));
        });
    });
}

}  // namespace
}  // namespace Kernels
