#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "metrics/vqm_tables.h"

/// VQM in plain loops, as it is defined.
namespace Metric::Reference {

struct VqmFrame {
    float value = 0;
    std::vector<float> map;  ///< `width` by `height`
};

using VqmBlock = std::array<float, 64>;

/// The weighted contrasts of the block at `samples`, in rows of `stride` floats.
inline VqmBlock WeightedContrasts(const float* samples, int stride) {
    const VqmTables& tables = VqmTables::Get();
    const auto matrix = [&](int u, int x) { return tables.dctMatrix[static_cast<std::size_t>(u * 8 + x)]; };
    double rows[8][8];
    for (int y = 0; y < 8; ++y) {
        for (int u = 0; u < 8; ++u) {
            double sum = 0;
            for (int k = 0; k < 8; ++k)
                sum += static_cast<std::int16_t>(samples[y * stride + k]) * matrix(u, k);
            rows[y][u] = sum;
        }
    }
    VqmBlock block;
    for (int v = 0; v < 8; ++v) {
        for (int u = 0; u < 8; ++u) {
            double sum = 0;
            for (int k = 0; k < 8; ++k) sum += matrix(v, k) * rows[k][u];
            const auto rounded = static_cast<std::int16_t>(static_cast<int>(std::floor(sum + 0.499999)));
            block[static_cast<std::size_t>(v * 8 + u)] = rounded;
        }
    }
    const float dc = block[0];
    const float gain = dc == 0 ? 0.0f : std::pow(dc * 0.0009765625f, 0.65f) / dc;
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = block[i] * gain / tables.quantTable[i];
    return block;
}

/// The value and the map of one frame; both sides are multiples of 8.
inline VqmFrame Vqm(const float* first, const float* second, int width, int height) {
    VqmFrame frame;
    frame.map.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    float meanSum = 0;
    float maxDiff = 0;
    for (int y = 0; y < height; y += 8) {
        for (int x = 0; x < width; x += 8) {
            const VqmBlock a = WeightedContrasts(first + y * width + x, width);
            const VqmBlock b = WeightedContrasts(second + y * width + x, width);
            float sum = 0;
            for (std::size_t i = 0; i < a.size(); ++i) {
                const float d = std::fabs(a[i] - b[i]);
                sum += d;
                maxDiff = std::max(maxDiff, d);
            }
            const float mean = sum * 0.015625f;
            meanSum += mean;
            for (int row = y; row < y + 8; ++row) {
                std::fill_n(frame.map.begin() + row * width + x, 8, std::min(255.0f, mean * 256000));
            }
        }
    }
    frame.value = ((meanSum * 64000) / static_cast<float>(width * height) + maxDiff * 5) * 10;
    return frame;
}

}  // namespace Metric::Reference
