#include "report/rules/child_layout.h"

#include <array>

namespace Report {

namespace {

/// The state behind a change by an odd number of pixels, by the state before it from -2 to 2.
constexpr std::array kStateAfterGrowth = {2, 1, 1, 2, 1};
constexpr std::array kStateAfterShrinking = {-1, -2, -1, -1, -2};

void Stretch(int& size, int& missing, int change) {
    const int wanted = size - missing + change;
    size = wanted < 0 ? 0 : wanted;
    missing = size - wanted;
}

}  // namespace

int OddPixels::MoveFor(int dW) {
    if (dW % 2 == 0) return dW / 2;
    const auto before = static_cast<std::size_t>(state + 2);
    state = dW > 0 ? kStateAfterGrowth[before] : kStateAfterShrinking[before];
    const int correction = state == 1 ? 1 : state == -1 ? -1 : 0;
    return dW / 2 + correction;
}

void PlacedChild::Follow(int dW, int dH, int centreMove) {
    if (flags & kCentreHorizontally)
        rect.x += centreMove;
    else if (flags & kMoveRight)
        rect.x += dW;
    else if (flags & kStretchWidth)
        Stretch(rect.width, missingWidth, dW);

    if (flags & kMoveDown)
        rect.y += dH;
    else if (flags & kStretchHeight)
        Stretch(rect.height, missingHeight, dH);
}

}  // namespace Report
