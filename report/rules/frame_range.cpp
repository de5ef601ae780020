#include "report/rules/frame_range.h"

#include <algorithm>
#include <cstdint>

namespace Report {

namespace {

constexpr int kWidestAtOpening = 1000;
constexpr int kNarrowest = 2;
constexpr int kNotch = 120;

}  // namespace

FrameRange::FrameRange(int first, int last) : firstFrame(first), lastFrame(last) {
    const std::int64_t length = std::int64_t{last} - first;
    const auto width = static_cast<int>(std::min<std::int64_t>(kWidestAtOpening, length / 2));
    current = static_cast<int>((std::int64_t{first} + last) / 2);
    visibleFirst = static_cast<int>(current - width * 0.5);
    visibleLast = static_cast<int>(current + width * 0.5);
    Recentre(current);
}

void FrameRange::SetCurrent(int frame) {
    current = std::clamp(frame, visibleFirst, visibleLast);
}

void FrameRange::Recentre(int frame) {
    const int width = Width();
    current = std::clamp(frame, firstFrame, lastFrame);
    // The clamped frame moves the visible range to the same end as the number itself would, and can't
    // overflow.
    visibleFirst = std::min(std::max(current - width / 2, firstFrame), lastFrame - width);
    visibleLast = std::min(visibleFirst + width, lastFrame);
}

void FrameRange::SetWidth(int width) {
    const int allowed = std::min(std::max(width, kNarrowest), lastFrame - firstFrame);
    visibleLast = visibleFirst + allowed;  // the width is all that `Recentre` takes from here
    Recentre(current);
    SetCurrent(current);
}

std::optional<int> NextFrame(const std::vector<int>& frames, int current) {
    const auto found = std::upper_bound(frames.begin(), frames.end(), current);
    if (found == frames.end()) return std::nullopt;
    return *found;
}

std::optional<int> PreviousFrame(const std::vector<int>& frames, int current) {
    const auto found = std::lower_bound(frames.begin(), frames.end(), current);
    if (found == frames.begin()) return std::nullopt;
    return *(found - 1);
}

int WheelSteps::Take(int delta) {
    if ((delta > 0) != (rest > 0)) rest = 0;  // the other way round begins anew
    rest += delta;
    const int steps = rest / kNotch;
    rest -= steps * kNotch;
    return steps;
}

}  // namespace Report
