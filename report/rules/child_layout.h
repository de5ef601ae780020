#pragma once

#include "report/rules/picture_view.h"

namespace Report {

/// What a control does when its window changes its size.
enum LayoutFlag : unsigned {
    kMoveRight = 1,
    kMoveDown = 2,
    kStretchWidth = 4,
    kStretchHeight = 8,
    kCentreHorizontally = 16,
};

/// Shares the odd pixels of centred controls out between the changes of a window's width: after any number of
/// changes a row stands in the middle but for one pixel, and where it was when the window has its width back.
class OddPixels {
public:
    /// By how much a centred control moves when the window's width grows by `dW`.
    int MoveFor(int dW);

private:
    int state = 0;
};

/// The place of a control that follows the size of its window.
class PlacedChild {
public:
    PlacedChild(PixelRect place, unsigned layoutFlags) : rect(place), flags(layoutFlags) {}

    const PixelRect& Rect() const { return rect; }

    /// The window has grown by `dW` and `dH`; `centreMove` is what `OddPixels` says to it.
    void Follow(int dW, int dH, int centreMove);

private:
    PixelRect rect;
    unsigned flags;
    // What the control would be smaller if there were sizes below 0: the window has to grow by that first.
    int missingWidth = 0;
    int missingHeight = 0;
};

}  // namespace Report
