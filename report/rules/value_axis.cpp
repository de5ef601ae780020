#include "report/rules/value_axis.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace Report {

namespace {

constexpr int kFewestSteps = 3;
constexpr float kCoarse = 5;  // a step above 1 is a multiple of this, until it is halved

bool HasWhole(float quotient) {
    return std::trunc(quotient) != 0;
}

/// The largest multiple of 5 that goes into `third`, or 1 where none does.
float FirstStep(float third) {
    const float coarse = std::floor(third / kCoarse) * kCoarse;
    return coarse < kCoarse ? 1 : coarse;
}

std::string LabelText(float value, int decimals) {
    std::array<char, 10> text{};
    std::snprintf(text.data(), text.size(), "%-.*f", decimals, static_cast<double>(value));
    return text.data();
}

int LabelX(const PlotScale& scale, const std::string& label, int charWidth) {
    return scale.plot.left - (static_cast<int>(label.size()) + 1) * charWidth;
}

}  // namespace

AxisSteps StepsOf(ValueRange range) {
    const float third = std::fabs(range.max - range.min) / kFewestSteps;
    float step = FirstStep(third);
    while (step > 0 && !HasWhole(third / step)) step /= 2;

    const auto firstTick = [&range](float width) { return (std::trunc(range.min / width) + 1) * width; };
    float first = firstTick(step);
    // Values so large that a float has no ticks between them end the halving.
    while (std::trunc((range.max - first) / step) < kFewestSteps && first + step / 2 != first) {
        step /= 2;
        first = firstTick(step);
    }
    return {step, first};
}

int AxisDecimals(ValueRange range, float step) {
    int decimals = 0;
    if (!HasWhole(step)) {
        for (decimals = 1; decimals < 3 && !HasWhole(std::pow(10.0F, static_cast<float>(decimals)) * step);)
            ++decimals;
    }
    const auto reaches = [](float value, int digits) {
        return std::fabs(value) / std::pow(10.0F, static_cast<float>(digits - 1)) > 1;
    };
    int digits = 1;
    while (reaches(range.max, digits) && reaches(range.min, digits)) ++digits;
    return digits + decimals < 4 ? 4 - digits : decimals;
}

std::vector<AxisLine> ValueAxis(const PlotScale& scale, int charWidth, int textHeight) {
    const ValueRange range = scale.values;
    const AxisSteps steps = StepsOf(range);
    const int decimals = AxisDecimals(range, steps.step);

    std::vector<AxisLine> lines;
    const auto add = [&](float value, int y, bool isEnd) {
        AxisLine line = {value, y, isEnd, LabelText(value, decimals), 0, y};
        if (!lines.empty()) {
            const AxisLine& previous = lines.back();
            if (line.label == previous.label) return;
            if (line.labelY > previous.labelY - textHeight) line.labelY = previous.labelY - textHeight;
        }
        line.labelX = LabelX(scale, line.label, charWidth);
        lines.push_back(line);
    };

    add(range.min, scale.plot.bottom, true);
    for (float tick = steps.first; tick < range.max;) {
        add(tick, scale.ValueY(tick), false);
        const float next = tick + steps.step;
        if (!(next > tick)) break;
        tick = next;
    }
    add(range.max, scale.plot.Top(), true);
    return lines;
}

}  // namespace Report
