#pragma once

#include <array>
#include <string>
#include <vector>

namespace Metric {

/// One plane of a picture, by the number that settings store and the whole system passes on.
enum ColorComponent : int {
    ComponentY = 0,
    ComponentU = 1,
    ComponentV = 2,
    ComponentL = 3,
    ComponentR = 4,
    ComponentG = 5,
    ComponentB = 6,
};
constexpr int kComponentCount = 7;

/// All components in the order in which they are displayed.
constexpr std::array<int, kComponentCount> kDisplayOrder = {ComponentY, ComponentU, ComponentV, ComponentR,
                                                            ComponentG, ComponentB, ComponentL};

/// The component's text in captions, column heads and log lines: "YYUV", "UYUV", "VYUV", "LLUV", "RRGB",
/// "GRGB", "BRGB"; empty for any other number. Static storage.
const wchar_t* ComponentName(int component);

/// What a metric is constructed with.
struct MetricParameters {
    int component = ComponentY;
    int width = 0;           ///< picture width in pixels
    int height = 0;          ///< picture height in pixels
    int reserved = 0;        ///< copied, never interpreted
    std::wstring text;       ///< copied, never interpreted
    bool maskOpen = false;   ///< the run has a mask
    bool blackMask = false;  ///< the mask marks its pixels in black
};

/// One result of a frame or of the whole sequence.
struct MetricValue {
    int resultId = 0;
    float value = 0;
};

/// One result that a metric will deliver.
struct MetricResultInfo {
    int resultId = 0;
    std::vector<int> files;  ///< positions, from 0, of the measurement's files that the result speaks of
    std::wstring name;       ///< appended to the metric's display name; empty for a metric with one result
};

}  // namespace Metric
