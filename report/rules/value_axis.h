#pragma once

#include <string>
#include <vector>

#include "report/rules/plot_geometry.h"

namespace Report {

/// Where the vertical axis has ticks: `first`, `first` + `step` and so on, below the largest value.
struct AxisSteps {
    float step = 1;
    float first = 0;
};
AxisSteps StepsOf(ValueRange range);

/// How many decimals the labels have: four digits in all, at least, and the first of the step.
int AxisDecimals(ValueRange range, float step);

/// A horizontal line of the plot with its label.
struct AxisLine {
    float value = 0;
    int y = 0;
    bool isEnd = false;  // the first and the last: across the plot, also without a grid
    std::string label;
    int labelX = 0;  // of its left end
    int labelY = 0;  // of its middle
};

/// From the lowest up. A line whose label would read as the one before it is left out; a label that would
/// touch the one before it stands above that.
std::vector<AxisLine> ValueAxis(const PlotScale& scale, int charWidth, int textHeight);

}  // namespace Report
