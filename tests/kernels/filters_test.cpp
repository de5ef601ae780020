#include "kernels/plane.h"
#include "kernels/reference/half_pixels.h"
#include "kernels/reference/sobel.h"
#include "kernels/sobel_squares.h"
#include "tests/kernels/test_plane.h"

namespace Kernels {
namespace {

template <class Filter>
Plane Filtered(Filter filter, const Plane& source, BorderKind border, float borderValue) {
    Plane target(source.width, source.height);
    const BytePlane scratch(
        static_cast<std::uint8_t*>(AllocZeroed(GetSobelScratchSize(source.width, source.height))));
    filter(source.data(), source.stride, target.data(), target.stride, source.width, source.height, border,
           borderValue, scratch.get());
    return target;
}

TEST(Sobel, ByHand) {
    const Plane flat(3, std::vector<float>(9, 1));
    const Plane plane(3, {1, 2, 4,  //
                          0, 3, 0,  //
                          5, 0, 1});
    const struct {
        const Plane& source;
        BorderKind border;
        std::vector<float> horiz, vert;
    } cases[] = {
        {flat, BorderConstant, {-3, -4, -3, 0, 0, 0, 3, 4, 3}, {3, 0, -3, 4, 0, -4, 3, 0, -3}},
        {plane, BorderConstant, {-3, -6, -3, -6, 3, 8, 3, 6, 3}, {7, 6, -7, 8, -1, -8, 3, -8, -3}},
        {plane, BorderReplicate, {2, 3, 11, -10, 3, 11, -12, 0, 0}, {6, 9, 3, 2, -1, -3, -12, -12, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source.At(1, 0) << ", border " << c.border);
        EXPECT_EQ(c.horiz, Filtered(FilterSobelHorizBorder, c.source, c.border, 0).Pixels());
        EXPECT_EQ(c.vert, Filtered(FilterSobelVertBorder, c.source, c.border, 0).Pixels());
    }
}

TEST(Sobel, SameBitsAsReference) {
    for (const BorderKind border : {BorderConstant, BorderReplicate}) {
        const auto filtered = [&](auto filter, int w, int h) {
            return Filtered(filter, PixelsOfAllSizes(w, h, 1), border, 1.1f);
        };
        SCOPED_TRACE(border);
        ExpectReference("horizontal", FilterSobelHorizBorder, Reference::FilterSobelHorizBorder, filtered);
        ExpectReference("vertical", FilterSobelVertBorder, Reference::FilterSobelVertBorder, filtered);
    }
}

// The second plane is bigger at one place at a time, also at the rim.
TEST(Sobel, GreatestSquareAnywhere) {
    const auto reference = [](const Plane&, const Plane& second) {
        Plane squares(second.width, second.height);
        Reference::SobelSquares(second.data(), second.stride, squares.data(), squares.stride, second.width,
                                second.height);
        const std::vector<float> values = squares.Pixels();
        return *std::max_element(values.begin(), values.end());
    };
    const auto kernel = [](const Plane& first, const Plane& second) {
        return GreatestSobelSquare({{first.data(), second.data()}, first.stride, first.width, first.height});
    };
    ExpectReference("", kernel, reference, [](auto greatest, int w, int h) {
        const Plane first = PixelsOfAllSizes(w, h, 3);
        std::vector<float> squares;
        for (const int x : {0, w / 2, w - 1}) {
            for (const int y : {0, h / 2, h - 1}) {
                Plane second = PixelsOfAllSizes(w, h, 4);
                second.At(x, y) = 1e12f;
                squares.push_back(greatest(first, second));
            }
        }
        return squares;
    });
}

// Three rows and columns beside the picture are read.
constexpr int kBeside = 3;

template <class Filter>
std::vector<Bytes> HalfPixelPlanesOf(const Filter& filter, const Bytes& source) {
    std::vector<Bytes> planes(3, Bytes(source.width, source.height));
    filter(&source.At(kBeside, kBeside), source.stride, source.width - 2 * kBeside,
           source.height - 2 * kBeside,
           HalfPixelPlanes{&planes[0].At(kBeside, kBeside), &planes[1].At(kBeside, kBeside),
                           &planes[2].At(kBeside, kBeside)});
    return planes;
}

TEST(HalfPixels, SameAsReference) {
    ExpectReference("", HalfPixels, Reference::HalfPixels, [](auto filter, int w, int h) {
        return HalfPixelPlanesOf(filter, HarshBytes(w + 2 * kBeside, h + 2 * kBeside, 7));
    });
}

}  // namespace
}  // namespace Kernels
