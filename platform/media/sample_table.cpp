#include "platform/media/sample_table.h"

#include <algorithm>

namespace {

/// `numerator / denominator` rounded to the nearest; the denominator is positive.
int Rounded(int numerator, int denominator) {
    const int half = denominator / 2;
    return (numerator < 0 ? numerator - half : numerator + half) / denominator;
}

int MapSample(SampleMap map, int sample, int depth) {
    const int largest = (1 << depth) - 1;
    const int unit = depth > 8 ? 1 << (depth - 8) : 1;
    switch (map) {
        case SampleMap::VideoRange:
            return Rounded(sample, unit);
        case SampleMap::FullToVideoLuma:
            return 16 + Rounded(219 * sample, largest);
        case SampleMap::FullToVideoChroma:
            return 128 + Rounded(224 * (sample - (1 << (depth - 1))), largest);
        case SampleMap::FullRange:
            return Rounded(255 * sample, largest);
        case SampleMap::VideoToFullLuma:
            return Rounded(255 * (sample - 16 * unit), 219 * unit);
    }
    return 0;
}

}  // namespace

std::vector<std::uint8_t> SampleTable(SampleMap map, int depth) {
    const bool depthOnly = map == SampleMap::VideoRange || map == SampleMap::FullRange;
    if (depth == 8 && depthOnly) return {};

    std::vector<std::uint8_t> table(std::size_t{1} << depth);
    for (std::size_t sample = 0; sample < table.size(); ++sample) {
        const int value = MapSample(map, static_cast<int>(sample), depth);
        table[sample] = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
    }
    return table;
}
