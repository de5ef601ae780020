#include "output/caption.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

struct Caption : testing::Test {
    Caption() {
        ResultRecord record;  // PSNR stands first in the list of metrics
        for (const wchar_t* file : {L"/v/o.y4m", L"C:\\v\\\u0416.y4m"})
            record.files.emplace_back().name = file;
        store.SetResultRecord(0, record);
        record.files.pop_back();
        record.component = 5;
        store.SetResultRecord(1, record);
    }

    std::vector<CaptionText> Texts(const CaptionSettings& settings, bool isOriginal = false) {
        return CaptionTexts(400, 300, settings, {7, values, isOriginal, store, Metric::GetMetricList()});
    }

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

    const std::vector<CaptionText> ofOriginal = {
        expected[0], expected[1], expected[2], {15, 45, L"PSNR YYUV: Original"}};
    EXPECT_EQ(ofOriginal, Texts({0, true, true}, true));
    EXPECT_EQ((std::vector<CaptionText>{expected[0], expected[1]}), Texts({0, false, false}));
}

TEST_F(Caption, Places) {
    const struct {
        const char* what;
        CaptionSettings settings;
        std::size_t values;
        int x, y;
    } kCases[] = {
        {"bottom, everything", {1, true, true}, 2, 15, 300 - 30 - 15 - 70},
        {"bottom, no value to show", {1, true, true}, 0, 15, 255},
        {"bottom, the program alone", {1, false, false}, 2, 15, 270},
        {"bottom, higher than the picture", {1, true, false}, 9, 15, 0},
        {"right", {2, true, true}, 1, 250, 15},
        {"bottom right", {3, true, true}, 1, 250, 220},
        {"elsewhere", {4, true, true}, 1, 0, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        values.resize(c.values);
        EXPECT_EQ((CaptionText{c.x, c.y, L"Lumetry", true}), Texts(c.settings).front());
    }
    EXPECT_EQ(
        0, CaptionTexts(100, 50, {3, true, true}, {0, values, false, store, Metric::GetMetricList()})[0].x);
}

// As a stream prints a float: printf's %g.
TEST_F(Caption, Numbers) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::pair<float, const wchar_t*> kCases[] = {
        {0.98765432f, L"0.987654"},
        {1234567, L"1.23457e+06"},
        {0.0000125f, L"1.25e-05"},
        {-0.5f, L"-0.5"},
        {kInfinity, L"inf"},
        {-kInfinity, L"-inf"},
        {-std::numeric_limits<float>::quiet_NaN(), L"nan"},
        {0, L"0"},
    };
    for (const auto& [value, text] : kCases) {
        values = {{0, value}};
        EXPECT_EQ(std::wstring(L"PSNR YYUV: ") + text, Texts({0, true, false}).back().text);
    }
}

// Beside its maker's, however wide the system's font is.
TEST_F(Caption, TheProgramsNameStandsAtItsPlace) {
    constexpr int kWidth = 200, kHeight = 40, kNameX = 15 + 40;
    constexpr std::size_t kRowBytes = 3 * kWidth;
    std::vector<std::uint8_t> drawn(kRowBytes * kHeight), name(drawn);
    TextRaster raster;
    DrawCaption(raster, {drawn.data(), kWidth, kHeight, kRowBytes}, {0, false, false},
                {0, values, false, store, Metric::GetMetricList()});
    const Bitmap24 bitmap = {name.data(), kWidth, kHeight, kRowBytes};
    raster.Draw(bitmap, kNameX + 1, 16, L"Tolvane 3.0", {0x28, 0x28, 0x28});
    raster.Draw(bitmap, kNameX, 15, L"Tolvane 3.0", {0xDC, 0xDC, 0xDC});
    for (std::size_t at = 3 * kNameX; at < drawn.size(); at += kRowBytes)
        EXPECT_TRUE(std::equal(&name[at], &name[at] + kRowBytes - 3 * kNameX, &drawn[at])) << at / kRowBytes;
}
