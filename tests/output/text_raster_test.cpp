#include "output/text_raster.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace {

constexpr Metric::Bgr kWhite = {255, 255, 255};

/// A black picture with what is drawn on it, rows from the top.
struct Canvas {
    Canvas(int canvasWidth, int canvasHeight) : width(canvasWidth), height(canvasHeight) {
        bytes.resize(static_cast<std::size_t>(3 * width * height));
    }
    Bitmap24 Bitmap() { return {bytes.data(), width, height, 3 * width}; }
    /// The brightness of the rows from `first` up to `end`.
    int Ink(int first, int end) const {
        return std::accumulate(bytes.begin() + 3 * width * first, bytes.begin() + 3 * width * end, 0);
    }
    int Ink() const { return Ink(0, height); }

    int width, height;
    std::vector<std::uint8_t> bytes;
};

int InkOf(const std::wstring& text) {
    Canvas canvas(60, 40);
    TextRaster().Draw(canvas.Bitmap(), 10, 10, text, kWhite);
    return canvas.Ink();
}

}  // namespace

TEST(TextRaster, UprightWithinItsLine) {
    TextRaster raster;
    ASSERT_TRUE(raster.HasFont());
    Canvas canvas(200, 60);
    EXPECT_GT(raster.Draw(canvas.Bitmap(), 10, 20, L"L_\u0416g|", kWhite), 30);
    EXPECT_EQ(canvas.Ink(), canvas.Ink(20, 20 + TextRaster::kLineHeight));

    Canvas letter(20, 15);
    raster.Draw(letter.Bitmap(), 0, 0, L"L", kWhite);
    EXPECT_GT(letter.Ink(8, 15), letter.Ink(0, 8)) << "the foot of an L is below";

    // The same picture stored from the bottom, with space between its rows.
    Canvas other(80, 80);
    raster.Draw({other.bytes.data() + 3 * 80 * 14, 20, 15, -3 * 80}, 0, 0, L"L", kWhite);
    for (int y = 0; y < 15; ++y)
        EXPECT_TRUE(std::equal(letter.bytes.begin() + 60 * y, letter.bytes.begin() + 60 * (y + 1),
                               other.bytes.begin() + 240 * (14 - y)))
            << y;
    EXPECT_EQ(letter.Ink(), other.Ink());
}

// What a window shows of a text is what lies in it of the whole text.
TEST(TextRaster, CutAtThePicturesEdges) {
    TextRaster raster;
    Canvas whole(100, 60);
    raster.Draw(whole.Bitmap(), 40, 20, L"gJW", kWhite);
    for (int x = 0; x < 90; x += 3) {
        for (int y = 0; y < 50; y += 3) {
            Canvas window(7, 9);
            raster.Draw(window.Bitmap(), 40 - x, 20 - y, L"gJW", kWhite);
            for (int row = 0; row < 9; ++row)
                ASSERT_TRUE(std::equal(window.bytes.begin() + 21 * row, window.bytes.begin() + 21 * (row + 1),
                                       whole.bytes.begin() + 3 * (100 * (y + row) + x)))
                    << x << " " << y;
        }
    }
    Canvas none(0, 0);
    EXPECT_EQ(5, raster.Draw(none.Bitmap(), 5, 5, std::wstring(100000, L'm'), kWhite));
}

// Characters that no font has, bytes that are no text, and what is no character at all.
TEST(TextRaster, EveryCharacterShows) {
    EXPECT_EQ(0, InkOf(L""));
    for (const wchar_t character : {L'\n', L'\xDC80', L'\xE000', L'\x7FFFFFFF'})
        EXPECT_GT(InkOf(std::wstring(1, character)), 0) << static_cast<long>(character);
    EXPECT_NE(InkOf(L"a"), InkOf(L"\u0416")) << "both are letters of their own";
}

TEST(TextRaster, SqueezesIntoTheRoomThereIs) {
    TextRaster raster;
    Canvas canvas(60, 15);
    const int natural = raster.Draw(canvas.Bitmap(), 0, 0, L"Lumetry", kWhite);
    EXPECT_EQ(natural, raster.Draw(canvas.Bitmap(), 0, 0, L"Lumetry", kWhite, natural));
    Canvas narrow(60, 15);
    EXPECT_NEAR(30, raster.Draw(narrow.Bitmap(), 0, 0, L"Lumetry", kWhite, 30), 3) << "whole pixels a letter";
    EXPECT_EQ(0, std::accumulate(narrow.bytes.begin(), narrow.bytes.end(), 0,
                                 [&, at = 0](int sum, int byte) mutable {
                                     return sum + (at++ / 3 % narrow.width > 33 ? byte : 0);
                                 }));
    EXPECT_EQ(natural, raster.Draw(canvas.Bitmap(), 0, 0, L"Lumetry", kWhite)) << "and the next one isn't";
}
