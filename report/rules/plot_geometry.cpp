#include "report/rules/plot_geometry.h"

#include <algorithm>
#include <cmath>

namespace Report {

namespace {

constexpr int kLeastGrabWidth = 7;  // in a long run the band is thinner than a pointer can hit

/// Cut to whole pixels and to the extent of the plot; what is no number stands at 0.
int Within(float position, int extent) {
    if (!(position > 0)) return 0;
    return position < static_cast<float>(extent) ? static_cast<int>(position) : extent;
}

/// A frame's distance from another, as a float has it.
float Frames(int from, int to) {
    return static_cast<float>(to) - static_cast<float>(from);
}

int BandStart(const PlotScale& scale, int bandFirst) {
    return static_cast<int>(Frames(scale.rangeFirst, bandFirst) * scale.FrameStep());
}

}  // namespace

PlotGeometry PlotGeometry::In(int windowWidth, int windowHeight, int charWidth, int textHeight) {
    PlotGeometry plot;
    plot.left = 7 * charWidth + textHeight + 2;
    plot.bottom = windowHeight - 2 * textHeight - 5;
    plot.width = std::max(windowWidth - plot.left - 7 * charWidth, 0);
    plot.height = std::max(plot.bottom - textHeight, 0);
    return plot;
}

float PlotScale::FrameStep() const {
    if (rangeLast <= rangeFirst) return 0;
    return static_cast<float>(plot.width) / Frames(rangeFirst, rangeLast);
}

int PlotScale::FrameX(int frame) const {
    return plot.left + CurveX(frame);
}

int PlotScale::ValueY(float value) const {
    const float valueStep = (values.max - values.min) / static_cast<float>(plot.height);
    return plot.bottom - Within((value - values.min) / valueStep, plot.height);
}

int PlotScale::CurveX(int frame) const {
    return Within(Frames(rangeFirst, frame) * FrameStep(), plot.width);
}

int PlotScale::CurveY(float value) const {
    const float pixelsPerValue = static_cast<float>(plot.height) / (values.max - values.min);
    return Within(static_cast<float>(plot.height) - (value - values.min) * pixelsPerValue, plot.height);
}

int PlotScale::FrameAt(int x) const {
    const float step = FrameStep();
    if (!(step > 0)) return rangeFirst;
    const float frames = static_cast<float>(x - plot.left) / step;
    constexpr float kFar = 1e9F;  // further than any window is wide
    return static_cast<int>(
        std::clamp(static_cast<double>(rangeFirst) + std::trunc(std::clamp(frames, -kFar, kFar)), -2e9, 2e9));
}

bool BandDrag::IsOnBand(const PlotScale& scale, int bandFirst, int bandLast, int x) {
    const int width = scale.FrameX(bandLast) - scale.FrameX(bandFirst);
    const int room = std::max(kLeastGrabWidth - width, 0);
    const int offset = x - scale.plot.left - BandStart(scale, bandFirst) + room / 2;
    return offset >= 0 && offset < width + room;
}

bool BandDrag::Start(const PlotScale& scale, int bandFirst, int bandLast, int x) {
    offset = x - scale.plot.left - BandStart(scale, bandFirst);
    underWay = IsOnBand(scale, bandFirst, bandLast, x);
    return underWay;
}

int BandDrag::CentreAt(const PlotScale& scale, int bandFirst, int bandLast, int x) const {
    return (bandLast - bandFirst) / 2 + scale.FrameAt(x - offset);
}

}  // namespace Report
