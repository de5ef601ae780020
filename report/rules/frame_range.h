#pragma once

#include <optional>
#include <vector>

namespace Report {

/// The frames of a result, the part of them that is visible, and the current one. Every operation keeps
///     firstFrame <= visibleFirst <= current <= visibleLast <= lastFrame.
class FrameRange {
public:
    /// One frame, number 0.
    FrameRange() = default;
    /// The view that opens on frames `first` to `last`, `first` at most `last`: the middle frame, and around
    /// it half of the range or 1000 frames, whatever is less.
    FrameRange(int first, int last);

    int FirstFrame() const { return firstFrame; }
    int LastFrame() const { return lastFrame; }
    int VisibleFirst() const { return visibleFirst; }
    int VisibleLast() const { return visibleLast; }
    int Current() const { return current; }
    int Width() const { return visibleLast - visibleFirst; }

    /// Any number; it is taken into the visible range.
    void SetCurrent(int frame);
    /// Moves the visible range, at its width, as near as it can be to having `frame` in its middle.
    void Recentre(int frame);
    /// At least 2 and at most the whole range, around the current frame. Any number.
    void SetWidth(int width);

private:
    int firstFrame = 0;
    int lastFrame = 0;
    int visibleFirst = 0;
    int visibleLast = 0;
    int current = 0;
};

/// The first of the ascending `frames` behind `current`, and the last before it.
std::optional<int> NextFrame(const std::vector<int>& frames, int current);
std::optional<int> PreviousFrame(const std::vector<int>& frames, int current);

/// Wheels that turn in parts of a notch move by whole notches: what is left over counts with the next turn.
class WheelSteps {
public:
    /// `delta` is 120 for a notch.
    int Take(int delta);

private:
    int rest = 0;
};

/// The pace of a button that repeats while it is held: it gets faster with each repetition.
class HoldPace {
public:
    int DelayMs() const { return delayMs; }
    void Repeat() { delayMs = delayMs > kStepMs ? delayMs - kStepMs : 1; }
    void Restart() { delayMs = kFirstMs; }

private:
    static constexpr int kFirstMs = 100;
    static constexpr int kStepMs = 5;
    int delayMs = kFirstMs;
};

}  // namespace Report
