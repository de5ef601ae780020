#include "output/caption.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tests/output/results.h"

namespace {

constexpr Metric::Bgr kWhite = {255, 255, 255};

TextRaster& SharedRaster() {
    static TextRaster raster;
    return raster;
}

/// A black picture with what is drawn on it, rows from the top.
struct Canvas {
    Canvas(int canvasWidth, int canvasHeight) : width(canvasWidth), height(canvasHeight) {
        bytes.resize(static_cast<std::size_t>(3 * width * height));
    }
    Bitmap24 Bitmap() { return {bytes.data(), width, height, 3 * width}; }
    /// The column behind the text.
    int Draw(int x, int y, std::wstring_view text, int room = TextRaster::kAnyWidth) {
        return SharedRaster().Draw(Bitmap(), x, y, text, kWhite, room);
    }
    const std::uint8_t* At(int x, int y) const { return bytes.data() + 3 * (width * y + x); }
    /// The brightness of the rows from `first` up to `end`.
    int Ink(int first, int end) const { return std::accumulate(At(0, first), At(0, end), 0); }
    int Ink() const { return Ink(0, height); }

    int width, height;
    std::vector<std::uint8_t> bytes;
};

int InkOf(const std::wstring& text) {
    Canvas canvas(60, 40);
    canvas.Draw(10, 10, text);
    return canvas.Ink();
}

struct Caption : testing::Test {
    Caption() {
        AddResult(store, 0, {L"psnr", {L"/v/o.y4m", L"C:\\v\\\u0416.y4m"}});
        AddResult(store, 1, {L"psnr", {L"/v/o.y4m"}, {}, 5});
    }

    std::vector<CaptionText> Texts(const CaptionSettings& settings, bool isOriginal = false,
                                   int width = 400) {
        return CaptionTexts(width, 300 * width / 400, settings, {7, values, isOriginal, store, metrics});
    }

    const Metric::CMetricList& metrics = Metric::GetMetricList();
    CResultsStore store;
    std::vector<Metric::MetricValue> values = {{0, 35.1234567f}, {1, 100}};
};

}  // namespace

TEST_F(Caption, LineByLine) {
    const std::vector<CaptionText> expected = {
        {15, 15, L"Lumetry", true},      {55, 15, L"Tolvane 3.0"},
        {15, 30, L"Frame: 7"},           {15, 50, L"Files: o.y4m, \u0416.y4m"},
        {15, 65, L"PSNR YYUV: 35.1235"}, {15, 85, L"Files: o.y4m"},
        {15, 100, L"PSNR GRGB: 100"},
    };
    EXPECT_EQ(expected, Texts({0, true, true}));
    EXPECT_EQ((std::vector{expected[0], expected[1], expected[2], {15, 45, L"PSNR YYUV: Original"}}),
              Texts({0, true, true}, true));
    EXPECT_EQ((std::vector{expected[0], expected[1]}), Texts({0, false, false}));
}

TEST_F(Caption, Places) {
    const std::tuple<const char*, CaptionSettings, std::size_t, int, int> kCases[] = {
        {"bottom, everything", {1, true, true}, 2, 15, 300 - 30 - 15 - 70},
        {"bottom, no value to show", {1, true, true}, 0, 15, 255},
        {"bottom, the program alone", {1, false, false}, 2, 15, 270},
        {"bottom, higher than the picture", {1, true, false}, 9, 15, 0},
        {"right", {2, true, true}, 1, 250, 15},
        {"bottom right", {3, true, true}, 1, 250, 220},
        {"elsewhere", {4, true, true}, 1, 0, 0},
    };
    for (const auto& [what, settings, valueCount, x, y] : kCases) {
        values.resize(valueCount);
        EXPECT_EQ((CaptionText{x, y, L"Lumetry", true}), Texts(settings)[0]) << what;
    }
    EXPECT_EQ((CaptionText{0, 0, L"Lumetry", true}), Texts({3, true, true}, false, 100)[0]);
}

// As a stream prints a float: printf's %g.
TEST_F(Caption, Numbers) {
    const float numbers[] = {0.98765432f, 1234567, 0.0000125f, -0.5f, -INFINITY, -NAN, 0};
    const wchar_t* texts[] = {L"0.987654", L"1.23457e+06", L"1.25e-05", L"-0.5", L"-inf", L"nan", L"0"};
    for (int i = 0; i < 7; ++i) {
        values = {{0, numbers[i]}};
        EXPECT_EQ(std::wstring(L"PSNR YYUV: ") + texts[i], Texts({0, true, false}).back().text);
    }
}

// Beside its maker's, however wide the system's font is.
TEST_F(Caption, TheProgramsNameStandsAtItsPlace) {
    constexpr int kNameX = 15 + 40;
    Canvas drawn(200, 40), name(200, 40);
    DrawCaption(SharedRaster(), drawn.Bitmap(), {0, false, false}, {0, values, false, store, metrics});
    SharedRaster().Draw(name.Bitmap(), kNameX + 1, 16, L"Tolvane 3.0", {0x28, 0x28, 0x28});
    SharedRaster().Draw(name.Bitmap(), kNameX, 15, L"Tolvane 3.0", {0xDC, 0xDC, 0xDC});
    for (int y = 0; y < 40; ++y)
        EXPECT_TRUE(std::equal(name.At(kNameX, y), name.At(200, y), drawn.At(kNameX, y))) << y;
}

TEST(TextRaster, UprightWithinItsLine) {
    Canvas canvas(200, 60), letter(20, 15);
    ASSERT_TRUE(SharedRaster().HasFont());
    EXPECT_GT(canvas.Draw(10, 20, L"L_\u0416g|"), 30);
    EXPECT_EQ(canvas.Ink(), canvas.Ink(20, 20 + TextRaster::kLineHeight));
    letter.Draw(0, 0, L"L");
    EXPECT_GT(letter.Ink(8, 15), letter.Ink(0, 8)) << "the foot of an L is below";
}

// What a window shows of a text is what lies in it of the whole text.
TEST(TextRaster, CutAtThePicturesEdges) {
    Canvas whole(100, 60);
    whole.Draw(40, 20, L"gJW");
    for (int x = 0; x < 90; x += 3) {
        for (int y = 0; y < 50; y += 3) {
            Canvas window(7, 9);
            window.Draw(40 - x, 20 - y, L"gJW");
            for (int row = 0; row < 9; ++row)
                ASSERT_TRUE(std::equal(window.At(0, row), window.At(7, row), whole.At(x, y + row)))
                    << x << " " << y;
        }
    }
    EXPECT_EQ(5, Canvas(0, 0).Draw(5, 5, std::wstring(100000, L'm')));
}

// Characters that no font has, bytes that are no text, and what is no character at all.
TEST(TextRaster, EveryCharacterShows) {
    EXPECT_EQ(0, InkOf(L""));
    for (const wchar_t character : {L'\n', L'\xDC80', L'\xE000', L'\x7FFFFFFF'})
        EXPECT_GT(InkOf(std::wstring(1, character)), 0) << static_cast<long>(character);
    EXPECT_NE(InkOf(L"a"), InkOf(L"\u0416")) << "both are letters of their own";
}

TEST(TextRaster, SqueezesIntoTheRoomThereIs) {
    Canvas canvas(60, 15);
    const int natural = canvas.Draw(0, 0, L"Lumetry");
    EXPECT_EQ(natural, canvas.Draw(0, 0, L"Lumetry", natural));
    canvas.bytes.assign(canvas.bytes.size(), 0);
    EXPECT_NEAR(30, canvas.Draw(0, 0, L"Lumetry", 30), 3) << "whole pixels a letter";
    for (int y = 0; y < 15; ++y) EXPECT_EQ(0, std::accumulate(canvas.At(34, y), canvas.At(60, y), 0)) << y;
    EXPECT_EQ(natural, canvas.Draw(0, 0, L"Lumetry")) << "and the next one isn't";
}
