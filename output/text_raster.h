#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "metric/painting.h"

class rkVideoImage;

/// A picture of bytes B, G, R that someone else owns.
struct Bitmap24 {
    std::uint8_t* top = nullptr;  ///< its uppermost row
    int width = 0;
    int height = 0;
    std::ptrdiff_t rowStep = 0;  ///< bytes from a row to the one below it; negative in bottom-up pictures

    /// The visible picture of an `RGB24` image whose rows lie bottom-up.
    static Bitmap24 BottomUp(rkVideoImage& image);
};

/// Draws text into pictures, in lines of 15 pixels: from left to right, a character after the other, with the
/// fonts of the system. A character that no font has shows as a mark of its own. Without any font nothing is
/// drawn.
///
/// Keeps the characters that it has drawn once. Throws std::bad_alloc only. One thread at a time; several
/// work side by side.
class TextRaster {
public:
    static constexpr int kLineHeight = 15;

    TextRaster();
    ~TextRaster();

    bool HasFont() const;

    static constexpr int kAnyWidth = INT_MAX;

    /// Draws with the line's left top at (x, y), on what is there; what lies outside the picture is left out.
    /// Text wider than `room` is squeezed into it. The column behind the text.
    int Draw(const Bitmap24& bitmap, int x, int y, std::wstring_view text, Metric::Bgr color,
             int room = kAnyWidth);

private:
    class Font;
    std::unique_ptr<Font> font;
};
