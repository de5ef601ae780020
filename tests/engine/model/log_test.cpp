#include "engine/model/log.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/model/measuring_line.h"
#include "platform/text.h"
#include "tests/engine/fake_metric.h"
#include "tests/temporary_directory.h"

namespace {

/// Every digit as a 9: the time isn't known.
std::string WithoutDigits(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }, '9');
    return text;
}

TEST(Log, FileGrowsOverRunsAndTheConsoleRepeatsTheLine) {
    const TemporaryDirectory directory;
    const std::wstring path = FromUtf8(directory.Path("log.txt"));
    testing::internal::CaptureStdout();
    EXPECT_TRUE(CLogFile(path).Log(L"first run"));
    EXPECT_TRUE(CLogConsole(path).Log(L"caf\xE9 \x1F600"));
    EXPECT_FALSE(CLogConsole(path + L"/log.txt").Log(L"lost, as there is no file"));
    EXPECT_EQ("99:99:99 : caf\xC3\xA9 \xF0\x9F\x98\x80\n",
              WithoutDigits(testing::internal::GetCapturedStdout()));
    // Two bytes a letter, low byte first; U+1F600 is the surrogate pair D83D DE00.
    std::string expected;
    for (const char c : std::string("99:99:99 : first run\r\n99:99:99 : caf\xE9 ")) expected += {c, '\0'};
    expected += std::string("\x3D\xD8\x00\xDE\r\0\n\0", 8);
    EXPECT_EQ(expected, WithoutDigits(ReadWhole(directory.Path("log.txt"))));
}

TEST(MeasuringLine, NamesMetricsAndFiles) {
    FakeKind psnr, ssim;
    psnr.name = L"PSNR";
    ssim.name = L"SSIM (fast)";
    const MetricSelection selection = {{1, 0, {}}, {0, 6, {}}, {0, 1, {}}};
    const std::wstring line =
        MeasuringLine(selection, {L"C:\\v\\a.yuv", L"/v/b.yuv", L"whole.y4m"}, FakeList({psnr, ssim}));
    EXPECT_EQ("99:99:99 : Measuring UYUV-PSNR, BRGB-PSNR, YYUV-SSIM (fast) on a.yuv b.yuv whole.y9m ",
              WithoutDigits(ToUtf8(line)));
    const int hour = std::stoi(line.substr(0, 2));
    EXPECT_TRUE(hour >= 1 && hour <= 12) << hour;
}

}  // namespace
