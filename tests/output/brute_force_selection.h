#pragma once

#include <cmath>
#include <cstddef>
#include <set>
#include <vector>

#include "engine/model/results_store.h"

/// The bad frames of a series or of differences by the rules read one by one: again and again the worst frame
/// that is left, the earliest of equal ones, is looked for and taken unless an earlier choice passes over it.
inline std::vector<int> BruteForceSelection(std::vector<FrameValue> values, bool differences, int type,
                                            int count, int radius, bool higherIsBetter) {
    const auto isWorse = [&](float a, float b) {
        if (std::isnan(a) || std::isnan(b)) return !std::isnan(a);
        if (differences && type < 2) return std::fabs(a) > std::fabs(b);
        if (type == 2 || type == 0) return higherIsBetter ? a < b : a > b;
        if (type == 3) return higherIsBetter ? a > b : a < b;
        return a > b;
    };
    std::vector<int> selected;
    std::set<int> passedOver;
    while (!values.empty() && (count == 0 || static_cast<int>(selected.size()) < count)) {
        std::size_t worst = 0;
        for (std::size_t i = 1; i < values.size(); ++i)
            if (isWorse(values[i].value, values[worst].value)) worst = i;
        const int frame = values[worst].frame;
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(worst));
        if (passedOver.contains(frame)) continue;
        selected.push_back(frame);
        for (int passed = frame - radius; passed < frame + radius; ++passed) passedOver.insert(passed);
    }
    return selected;
}
