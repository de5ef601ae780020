#pragma once

#include <array>

/// Sizes and places in pixels of the screen.
struct PixelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// The percentages that the two buttons of the preview's scale go through.
inline constexpr std::array kScaleSteps = {25, 50, 100, 200, 300, 400};
constexpr int kSmallestScale = kScaleSteps.front();
constexpr int kLargestScale = kScaleSteps.back();

/// What the buttons make of the value shown: the next smaller step, or the smallest; the next larger one, or
/// the largest.
int ScaleBelow(int shown);
int ScaleAbove(int shown);

/// Where the scale slider stands for a value shown; it stops at its ends.
int ScaleSliderPosition(int shown);

/// How the preview window and its picture depend on each other.
///
/// All that doesn't come out whole is rounded up: then the window of a percentage shows a picture of just
/// this percentage for every video of 100 columns or more, and a step can't lead back to where it came from.
class PreviewLayout {
public:
    /// `video` is at least 1 by 1. `margins` is what the window is larger than the space for the picture.
    PreviewLayout(PixelSize videoSize, PixelSize windowMargins) : video(videoSize), margins(windowMargins) {}

    PixelSize WindowAt(int percent) const;

    // The limits of the window; its largest size is that of a maximised one.
    PixelSize SmallestWindow() const;
    PixelSize LargestWindow() const;

    /// The largest picture of the video's proportions that fits into `space`, centred in it.
    PixelRect PictureIn(PixelSize space) const;

    /// The percentage shown for a picture of this width.
    int ShownScale(int pictureWidth) const;

private:
    PixelSize video;
    PixelSize margins;
};
