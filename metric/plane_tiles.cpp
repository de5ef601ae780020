#include "metric/plane_tiles.h"

#include <algorithm>
#include <cstddef>

namespace Metric {

PlaneTiles::PlaneTiles(CMetricImage& image, int component)
    : samples(image.GetSamples(component)), pictureWidth(image.GetWidth()), pictureHeight(image.GetHeight()) {
    if (samples == nullptr) plane = image.GetPlane(component);
}

void PlaneTiles::Read(int x, int y, int width, int height, float* tile) const {
    const int columns = std::min(width, pictureWidth - x);
    const int rows = std::min(height, pictureHeight - y);
    float* row = tile;
    for (int i = 0; i < rows; ++i, row += width) {
        if (samples != nullptr)
            LoadPixels(*samples, x, y + i, row, columns);
        else
            std::copy_n(plane + std::ptrdiff_t{y + i} * pictureWidth + x, columns, row);
        std::fill_n(row + columns, width - columns, row[columns - 1]);
    }
    for (int i = rows; i < height; ++i, row += width) std::copy_n(row - width, width, row);
}

}  // namespace Metric
