#include "report/rules/picture_view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Report {

namespace {

constexpr int kStep = 100;
constexpr int kWheelStep = 25;
constexpr int kLargest = 1'000'000;  // a pixel of the frame is wider than any window long before

/// One axis of a placement.
struct Extent {
    int start, length;              // in the frame
    int targetStart, targetLength;  // in the window
};

int VisibleLength(int image, int window, int percent) {
    // A window narrower than a pixel of the frame shows this pixel.
    const auto length = static_cast<int>(std::int64_t{window} * 100 / percent);
    return std::min(image, std::max(length, 1));
}

int ScaledLength(int length, int percent) {
    return static_cast<int>(std::min<std::int64_t>(std::int64_t{length} * percent / 100, kLargest));
}

Extent ExtentOf(int image, int window, int percent, float pan) {
    Extent extent{};
    extent.length = VisibleLength(image, window, percent);
    const float start = static_cast<float>(image) * pan;
    const auto room = static_cast<float>(image - extent.length);
    extent.start = static_cast<int>(std::clamp(start, 0.0F, room));
    extent.targetLength = std::min(window, ScaledLength(extent.length, percent));
    extent.targetStart = (window - extent.targetLength) / 2;
    return extent;
}

/// The pan that shows the frame's point `shown`, which is under the pointer now, there again.
float PanFor(int image, int window, int percent, double shown, int pointer) {
    const Extent extent = ExtentOf(image, window, percent, 0);
    const double start = shown - static_cast<double>(pointer - extent.targetStart) * extent.length /
                                     std::max(extent.targetLength, 1);
    // Half a pixel more, so that cutting it to whole pixels brings the same one back.
    const double whole = std::clamp(std::floor(start + 0.5), 0.0, static_cast<double>(image - extent.length));
    return static_cast<float>((whole + 0.5) / image);
}

double PointAt(const Extent& extent, int pointer) {
    return extent.start + static_cast<double>(pointer - extent.targetStart) * extent.length /
                              std::max(extent.targetLength, 1);
}

}  // namespace

int ZoomAbove(int percent) {
    return std::min(percent + kStep, kLargest) / kStep * kStep;
}

int ZoomBelow(int percent) {
    return (std::max(percent - kStep, kSmallestZoom) + kStep - 1) / kStep * kStep;
}

int ZoomByWheel(int percent, int notches) {
    const int largest = std::max(percent, kLargestSliderZoom);
    return std::clamp(percent + notches * kWheelStep, kSmallestZoom, notches > 0 ? largest : kLargest);
}

PictureView::Placement PictureView::In(int windowWidth, int windowHeight) const {
    if (imageWidth <= 0 || imageHeight <= 0 || windowWidth <= 0 || windowHeight <= 0) return {};
    const Extent x = ExtentOf(imageWidth, windowWidth, percent, panX);
    const Extent y = ExtentOf(imageHeight, windowHeight, percent, panY);
    Placement placement = {{x.start, y.start, x.length, y.length},
                           {x.targetStart, y.targetStart, x.targetLength, y.targetLength}};
    const bool fills =
        ScaledLength(imageWidth, percent) > windowWidth && ScaledLength(imageHeight, percent) > windowHeight;
    if (fills) placement.target = {0, 0, windowWidth, windowHeight};
    return placement;
}

void PictureView::Drag(int dx, int dy) {
    if (imageWidth <= 0 || imageHeight <= 0) return;
    panX -= static_cast<float>(dx * 100.0 / (static_cast<double>(imageWidth) * percent));
    panY -= static_cast<float>(dy * 100.0 / (static_cast<double>(imageHeight) * percent));
}

void PictureView::ZoomAt(int newPercent, int pointerX, int pointerY, int windowWidth, int windowHeight) {
    if (imageWidth > 0 && imageHeight > 0 && windowWidth > 0 && windowHeight > 0) {
        const double x = PointAt(ExtentOf(imageWidth, windowWidth, percent, panX), pointerX);
        const double y = PointAt(ExtentOf(imageHeight, windowHeight, percent, panY), pointerY);
        panX = PanFor(imageWidth, windowWidth, newPercent, x, pointerX);
        panY = PanFor(imageHeight, windowHeight, newPercent, y, pointerY);
    }
    percent = newPercent;
}

}  // namespace Report
