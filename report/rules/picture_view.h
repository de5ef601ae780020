#pragma once

namespace Report {

struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool Contains(int pointX, int pointY) const {
        return pointX >= x && pointX < x + width && pointY >= y && pointY < y + height;
    }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// The percentages of the scale slider; the button for more goes on behind its end.
constexpr int kSmallestZoom = 100;
constexpr int kLargestSliderZoom = 800;

/// What the buttons make of a zoom: the next multiple of 100 above, or below, but not under 100.
int ZoomAbove(int percent);
int ZoomBelow(int percent);

/// What the wheel makes of it, a quarter at a notch within the slider's range; a larger zoom only gets
/// smaller.
int ZoomByWheel(int percent, int notches);

/// A frame at a zoom, moved about in a window. All sizes are in pixels of the screen.
struct PictureView {
    int imageWidth = 0;
    int imageHeight = 0;
    int percent = 100;
    /// The frame's point in the window's top left corner, in parts of the frame. Dragging may take it beyond
    /// the ends.
    float panX = 0;
    float panY = 0;

    struct Placement {
        PixelRect part;    // of the frame
        PixelRect target;  // in the window
        friend bool operator==(const Placement&, const Placement&) = default;
    };
    /// What is drawn where. Without extent if the frame or the window has none.
    Placement In(int windowWidth, int windowHeight) const;

    /// The pointer was dragged by so much.
    void Drag(int dx, int dy);

    /// Changes the zoom so that the pixel under the pointer stays there, as far as it can.
    void ZoomAt(int newPercent, int pointerX, int pointerY, int windowWidth, int windowHeight);
};

}  // namespace Report
