#include "kernels/halve.h"
#include "kernels/painting.h"
#include "kernels/reference/arithmetic.h"
#include "kernels/reference/border.h"
#include "kernels/reference/halve.h"
#include "kernels/reference/painting.h"
#include "kernels/reference/resize.h"
#include "tests/kernels/test_plane.h"

// Plain work from plane to plane.

namespace Kernels {
namespace {

template <class Target, class Operation>
Target Written(Operation operation, const Plane& source, Target target) {
    operation(source.data(), source.stride, target.data(), target.stride, source.width, source.height);
    return target;
}

Bytes Painted(void (*paint)(const float*, int, std::uint8_t*, int, int, int), const Plane& plane) {
    return Written(paint, plane, Bytes(3 * plane.width, plane.height));
}

TEST(Planes, SameBitsAsReference) {
    const auto toAnother = [](auto operation, int w, int h) {
        return Written(operation, PixelsOfAllSizes(w, h, 1), PixelsOfAllSizes(w, h, 2));
    };
    ExpectReference("Sqr", Sqr, Reference::Sqr, toAnother);
    ExpectReference("AddInPlace", AddInPlace, Reference::AddInPlace, toAnother);
    ExpectReference("CopyPlane", CopyPlane, Reference::CopyPlane, toAnother);

    const auto inPlace = [](auto operation, int w, int h) {
        Plane plane = Picture(w, h, 1);
        operation(plane.data(), plane.stride, w, h);
        return plane;
    };
    ExpectReference("SqrInPlace", SqrInPlace, Reference::SqrInPlace, inPlace);
    ExpectReference("SqrtInPlace", SqrtInPlace, Reference::SqrtInPlace, inPlace);

    ExpectReference("Mul", Mul, Reference::Mul, [](auto mul, int w, int h) {
        const Plane a = PixelsOfAllSizes(w, h, 1), b = PixelsOfAllSizes(w, h, 2);
        Plane target(w, h);
        mul(a.data(), a.stride, b.data(), b.stride, target.data(), target.stride, w, h);
        return target;
    });
    ExpectReference(
        "ConvertToBytes", ConvertToBytes, Reference::ConvertToBytes,
        [](auto convert, int w, int h) { return Written(convert, PixelsOfAllSizes(w, h, 1), Bytes(w, h)); });
    ExpectReference("PaintGrey", PaintGrey, Reference::PaintGrey,
                    [](auto paint, int w, int h) { return Painted(paint, PixelsOfAllSizes(w, h, 1)); });
    ExpectReference("PaintSimilarity", PaintSimilarity, Reference::PaintSimilarity,
                    [](auto paint, int w, int h) {
                        Plane similarities = Picture(w, h, 2);
                        similarities.ForEach([](float& pixel) { pixel = pixel / 200 - 0.2f; });
                        return Painted(paint, similarities);
                    });
}

// Converted: rounded to even and limited. Painted: cut, the low 8 bits. In whole vectors and behind them.
TEST(Planes, BytesByHand) {
    constexpr float kValues[] = {0,        -0.0f,      0.5f,       0.50000006f, 0.49999997f, 0.99f,
                                 1,        1.4999999f, 2.5f,       3.5f,        253.5f,      254.5f,
                                 254.999f, 255,        255.75f,    256,         257.5f,      -0.5f,
                                 -1,       -255,       -256.5f,    2147483520,  2147483648,  -2147483520,
                                 1e10f,    kInfinity,  -kInfinity, kNan};
    constexpr std::uint8_t kConverted[] = {0,   0,   0,   1, 0, 1, 1, 1,   2,   4, 254, 254, 255, 255,
                                           255, 255, 255, 0, 0, 0, 0, 255, 255, 0, 255, 255, 0,   0};
    constexpr std::uint8_t kPainted[] = {0,   0, 0, 0, 0,   0, 1, 1,   2, 3,   253, 254, 254, 255,
                                         255, 0, 1, 0, 255, 1, 0, 128, 0, 128, 0,   0,   0,   0};
    for (std::size_t i = 0; i < std::size(kValues); ++i) {
        SCOPED_TRACE(kValues[i]);
        const Plane source(33, std::vector<float>(33, kValues[i]));
        ForEachTarget([&] {
            EXPECT_EQ(std::vector<std::uint8_t>(33, kConverted[i]),
                      Written(ConvertToBytes, source, Bytes(33, 1)).Pixels());
            EXPECT_EQ(std::vector<std::uint8_t>(99, kPainted[i]), Painted(PaintGrey, source).Pixels());
        });
    }
}

TEST(Halve, SameBitsAsReference) {
    const auto halved = [](auto halve, const auto& source) {
        Plane target(source.width / 2, source.height / 2);
        halve(source.data(), source.stride, target.data(), target.stride, target.width, target.height);
        return target;
    };
    ExpectReference("Halve", Halve, Reference::Halve, [&](auto halve, int w, int h) {
        return halved(halve, PixelsOfAllSizes(2 * w, 2 * h, 1));
    });
    const auto kernel = [&](const Plane& source) { return halved(HalveBytes, BytesOf(source)); };
    const auto reference = [&](const Plane& source) { return halved(Reference::Halve, source); };
    ExpectReference("HalveBytes", kernel, reference,
                    [](auto halve, int w, int h) { return halve(Picture(2 * w, 2 * h, 1)); });
}

TEST(ResizeLinear, ByHand) {
    const Plane plane(5, {1, 2, 3, 4, 9,  //
                          5, 6, 7, 8, 9,  //
                          9, 9, 9, 9, 9});
    const struct {
        const char* what;
        Rectangle rectangle;
        double xFactor, yFactor;
        int width;
        std::vector<float> expected;
    } cases[] = {
        {"halved, odd column and row dropped", {0, 0, 5, 3}, 0.5, 0.5, 2, {3.5f, 5.5f}},
        {"a part, halved", {1, 0, 4, 2}, 0.5, 0.5, 2, {4.5f, 7.5f}},
        {"halved to more than there is: the last row repeats", {0, 1, 2, 1}, 0.5, 0.5, 1, {5.5f}},
        // Columns at -0.25, 0.25, 0.75, 1.25 between 1 and 5.
        {"doubled down the first column", {0, 0, 1, 2}, 1, 2, 1, {1, 2, 4, 5}},
        {"doubled along the row", {0, 0, 2, 1}, 2, 1, 4, {1, 1.25f, 1.75f, 2}},
        {"copied", {1, 1, 2, 1}, 1, 1, 2, {6, 7}},
        {"what lies outside is cut off", {3, -7, 100, 8}, 1, 1, 2, {4, 9}},
        {"wholly outside: untouched", {5, 0, 2, 2}, 1, 1, 1, {77}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] {
            Plane target(c.width, static_cast<int>(c.expected.size()) / c.width);
            ResizeLinear(plane.data(), plane.stride, 5, 3, c.rectangle, target.data(), target.stride,
                         target.width, target.height, c.xFactor, c.yFactor);
            EXPECT_EQ(c.expected, target.Pixels());
        });
    }
}

TEST(ResizeLinear, HalvingHasTheBitsOfTheReference) {
    ExpectReference("", ResizeLinear, Reference::ResizeLinear, [](auto resize, int w, int h) {
        const Plane source = PixelsOfAllSizes(w, h, 1);
        Plane target(w / 2, h / 2);
        resize(source.data(), source.stride, w, h, Rectangle{0, 0, w, h}, target.data(), target.stride, w / 2,
               h / 2, 0.5, 0.5);
        return target;
    });
}

TEST(CopyReplicateBorder, SameAsReference) {
    constexpr struct {
        const char* what;
        int top, left, moreRows, moreColumns;
    } kCases[] = {
        {"margins on all sides", 48, 48, 120, 100},
        {"no near margin", 0, 0, 2, 1},
        {"what doesn't fit is left out", 1, 1, 0, 0},
        {"margins beyond the target", 500, 500, 1, 1},
    };
    const auto kernel = [](auto... arguments) { CopyReplicateBorder(arguments...); };
    const auto reference = [](auto source, auto... arguments) {
        Reference::CopyReplicateBorder<std::decay_t<decltype(*source)>>(source, arguments...);
    };
    for (const auto& c : kCases) {
        const auto bordered = [&](auto copy, const auto& source) {
            const int width = source.width + c.moreColumns, height = source.height + c.moreRows;
            auto target = std::decay_t<decltype(source)>(width, height);
            copy(source.data(), source.stride, source.width, source.height, target.data(), target.stride,
                 width, height, c.top, c.left);
            return target;
        };
        ExpectReference(c.what, kernel, reference,
                        [&](auto copy, int w, int h) { return bordered(copy, HarshBytes(w, h, 1)); });
        ExpectReference(c.what, kernel, reference,
                        [&](auto copy, int w, int h) { return bordered(copy, PixelsOfAllSizes(w, h, 1)); });
    }
}

}  // namespace
}  // namespace Kernels
