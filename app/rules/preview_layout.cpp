#include "app/rules/preview_layout.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr PixelSize kSmallestUsable = {300, 200};

/// a * b / c rounded up, for numbers from 0 on; the largest int if it is more.
int ScaledUp(std::int64_t a, std::int64_t b, std::int64_t c) {
    return static_cast<int>(std::min<std::int64_t>((a * b + c - 1) / c, std::numeric_limits<int>::max()));
}

int Sum(std::int64_t a, std::int64_t b) {
    return static_cast<int>(std::min<std::int64_t>(a + b, std::numeric_limits<int>::max()));
}

}  // namespace

int ScaleBelow(int shown) {
    const auto above = std::lower_bound(kScaleSteps.begin(), kScaleSteps.end(), shown);
    return above == kScaleSteps.begin() ? kSmallestScale : *(above - 1);
}

int ScaleAbove(int shown) {
    const auto above = std::upper_bound(kScaleSteps.begin(), kScaleSteps.end(), shown);
    return above == kScaleSteps.end() ? kLargestScale : *above;
}

int ScaleSliderPosition(int shown) {
    return std::clamp(shown, kSmallestScale, kLargestScale);
}

PixelSize PreviewLayout::WindowAt(int percent) const {
    return {Sum(ScaledUp(video.width, percent, 100), margins.width),
            Sum(ScaledUp(video.height, percent, 100), margins.height)};
}

PixelSize PreviewLayout::SmallestWindow() const {
    return {std::max(kSmallestUsable.width, Sum(video.width / 4, margins.width)),
            std::max(kSmallestUsable.height, Sum(video.height / 4, margins.height))};
}

PixelSize PreviewLayout::LargestWindow() const {
    return WindowAt(kLargestScale);
}

PixelRect PreviewLayout::PictureIn(PixelSize space) const {
    if (space.width <= 0 || space.height <= 0) return {};
    // A side that is worked out fits as well: the bound is whole, and rounding up doesn't pass it.
    const bool isWide = std::int64_t{space.width} * video.height <= std::int64_t{space.height} * video.width;
    const int width = isWide ? space.width : ScaledUp(space.height, video.width, video.height);
    const int height = isWide ? ScaledUp(space.width, video.height, video.width) : space.height;
    return {(space.width - width) / 2, (space.height - height) / 2, width, height};
}

int PreviewLayout::ShownScale(int pictureWidth) const {
    return static_cast<int>(std::min<std::int64_t>(std::int64_t{pictureWidth} * 100 / video.width,
                                                   std::numeric_limits<int>::max()));
}
