#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

/// The blocking measure in plain loops, as it is defined.
namespace Metric::Reference {

struct BlockingFrame {
    float value = 0;
    std::vector<float> map;  ///< `width` by `height`, 0 where nothing is painted
};

/// The strength at place `y` of a grid line behind place `x` across it; sample(y, x) is the picture seen
/// along the line. `limited`: at most 255, except at the last place of a block.
template <class Sample>
int BlockingStrength(const Sample& sample, int y, int x, bool limited) {
    const int place = y % 8;
    const int first = place == 0 ? y : y - 1;
    const int last = place == 7 ? y : y + 1;
    const int n = last - first + 1;
    const auto step = [&](int r, int c) { return static_cast<int>(sample(r, c) - sample(r, c + 1)); };
    const auto busy = [&](int r) { return std::abs(step(r, x - 1)) + std::abs(step(r, x + 1)); };

    int jump = 0;
    int slope = 0;
    int surroundings = 0;
    for (int r = first; r <= last; ++r) {
        jump += step(r, x) - ((step(r, x - 1) + step(r, x + 1)) >> 1);
        slope += step(r, x);
        surroundings += busy(r);
    }
    if (std::abs(slope) / n > 40) return -1;

    const int magnitude = std::abs(jump);
    const float s = n == 2 ? static_cast<float>(magnitude) * 0.5f : static_cast<float>(magnitude / 3.0);
    const float h = s * 0.5f;
    const auto along = [&](int c) {
        float sum = std::fabs(sample(first, c) - sample(first + 1, c));
        if (n == 2) return static_cast<int>(sum);
        sum += std::fabs(sample(first + 1, c) - sample(last, c));
        return static_cast<int>(sum) >> 1;
    };
    const int activity = along(x) + along(x + 1);

    float result;
    if (activity + surroundings < n + 1) {
        result = static_cast<float>(static_cast<int>(s) * 16);
    } else {
        const float m = static_cast<float>(double{h} / (activity + 1));
        float sum = 0;
        for (int r = first; r <= last; ++r) sum += static_cast<float>(double{h} / (busy(r) + 1));
        result = n == 2 ? s * m * sum * 0.5f : s * m * (sum / 3.0f);
    }
    return static_cast<int>(limited && place != 7 ? std::min(result, 255.0f) : result);
}

/// The value and the map of one frame; both sides are multiples of 8.
inline BlockingFrame Blocking(const float* plane, int width, int height) {
    BlockingFrame frame;
    frame.map.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0.0f);
    const auto pixel = [&](int y, int x) { return plane[(height - 1 - y) * width + x]; };  // upside down
    const auto turned = [&](int y, int x) { return pixel(x, y); };

    float sum = 0;
    int counted = 0;
    int previous = 0;
    const auto take = [&](int strength, int place, float& before, float& behind) {
        if (strength != 0 && strength != -1) {
            sum += static_cast<float>(strength);
            ++counted;
        }
        if (strength == 0 || place % 8 != 0) strength = std::clamp(strength, previous - 50, previous + 50);
        previous = strength;
        before = behind = std::min(static_cast<float>(strength), 255.0f);
    };
    for (int x = 7; x < width - 7; x += 8) {
        for (int y = 0; y < height; ++y) {
            float* cell = &frame.map[static_cast<std::size_t>((height - 1 - y) * width + x)];
            take(BlockingStrength(pixel, y, x, true), y, cell[0], cell[1]);
        }
    }
    for (int y = 7; y < height - 7; y += 8) {
        for (int x = 0; x < width; ++x) {
            float* cell = &frame.map[static_cast<std::size_t>((height - 1 - y) * width + x)];
            take(BlockingStrength(turned, x, y, false), x, cell[0], cell[width]);
        }
    }
    frame.value = counted == 0 ? 0.0f : std::max(sum / static_cast<float>(counted), 0.0f);
    return frame;
}

}  // namespace Metric::Reference
