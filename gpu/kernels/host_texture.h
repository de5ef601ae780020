#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace Gpu {

enum class TextureFilter {
    Point,   // the texel that holds the coordinate
    Linear,  // the mean of the four texels around it, weighted by nearness
};

/// A picture as the host backend's textures read it. Texel (i, j) covers the coordinates from i to i + 1
/// and j to j + 1, so its centre lies at the halves; a coordinate beyond a side gives the nearest texel.
///
/// A linear read rounds the place between two texels to 1/256, as cards do.
struct HostTexture {
    const std::byte* texels = nullptr;
    std::size_t pitchBytes = 0;  ///< from row to row
    int width = 0;
    int height = 0;
    TextureFilter filter = TextureFilter::Point;
    bool normalized = false;  ///< coordinates run from 0 to 1 over the picture, not over its texels

    /// The texel at (x, y), whatever the filter.
    template <class Element>
    Element ReadNearest(float x, float y) const {
        return Texel<Element>(Limited(static_cast<int>(x), width), Limited(static_cast<int>(y), height));
    }

    float ReadFloat(float x, float y) const {
        if (normalized) {
            x *= static_cast<float>(width);
            y *= static_cast<float>(height);
        }
        return filter == TextureFilter::Point ? ReadNearest<float>(x, y) : ReadBetween(x, y);
    }

private:
    /// The texel at or before a coordinate and the way from its centre to the next one's, 0 to below 1.
    struct Place {
        int texel;
        float way;
    };

    static int Limited(int texel, int size) { return std::clamp(texel, 0, size - 1); }

    static Place PlaceOf(float coordinate, int size) {
        const float fromFirst = std::clamp(coordinate - 0.5f, 0.0f, static_cast<float>(size - 1));
        const int steps = static_cast<int>(fromFirst * 256 + 0.5f);
        return {steps / 256, static_cast<float>(steps % 256) / 256};
    }

    template <class Element>
    Element Texel(int i, int j) const {
        Element element;
        std::memcpy(
            &element,
            texels + static_cast<std::size_t>(j) * pitchBytes + static_cast<std::size_t>(i) * sizeof element,
            sizeof element);
        return element;
    }

    float ReadBetween(float x, float y) const {
        const Place column = PlaceOf(x, width);
        const Place row = PlaceOf(y, height);
        const int right = Limited(column.texel + 1, width);
        const int below = Limited(row.texel + 1, height);
        return (1 - column.way) * (1 - row.way) * Texel<float>(column.texel, row.texel) +
               column.way * (1 - row.way) * Texel<float>(right, row.texel) +
               (1 - column.way) * row.way * Texel<float>(column.texel, below) +
               column.way * row.way * Texel<float>(right, below);
    }
};

}  // namespace Gpu
