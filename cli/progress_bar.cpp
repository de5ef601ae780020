#include "cli/progress_bar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "engine/model/measuring_line.h"
#include "platform/text.h"

namespace {

constexpr int kCells = 30;
constexpr std::chrono::milliseconds kRedrawInterval{100};

/// Minutes and seconds, from an hour on hours as well.
std::string Duration(double seconds) {
    const long whole = std::lround(std::min(seconds, 359999.0));  // 99:59:59
    const auto twoDigits = [](long number) { return (number < 10 ? ":0" : ":") + std::to_string(number); };
    const std::string tail = twoDigits(whole % 60);
    if (whole < 3600) return std::to_string(whole / 60) + tail;
    return std::to_string(whole / 3600) + twoDigits(whole / 60 % 60) + tail;
}

}  // namespace

std::string ProgressText(int done, int length, double seconds) {
    const double part = length > 0 ? std::min(1.0, static_cast<double>(done) / length) : 1.0;
    const auto filled = static_cast<std::size_t>(part * kCells);
    const double rate = seconds > 0 ? done / seconds : 0;
    const double left = rate > 0 ? (length - done) / rate : 0;

    char numbers[64];
    std::snprintf(numbers, sizeof numbers, "] %3d %%  %.1f fps  ", static_cast<int>(part * 100), rate);
    return "[" + std::string(filled, '#') + std::string(kCells - filled, '.') + numbers + Duration(left) +
           " left";
}

ProgressBar::ProgressBar(Terminal& barTerminal, bool isQuiet) : terminal(barTerminal), quiet(isQuiet) {}

void ProgressBar::Start(const MetricSelection& selection, const std::vector<std::wstring>& names) {
    if (!quiet) terminal.Line(ToUtf8(MeasuringLine(selection, names)));
    start = Clock::now();
    drawn = {};
}

void ProgressBar::SetPosition(int frame) {
    const Clock::time_point now = Clock::now();
    if (now - drawn < kRedrawInterval && frame + 1 < length) return;
    drawn = now;
    terminal.ShowBar(ProgressText(frame + 1, length, std::chrono::duration<double>(now - start).count()));
}
