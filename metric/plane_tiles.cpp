#include "metric/plane_tiles.h"

#include <algorithm>
#include <cstddef>

namespace Metric {

PlaneTiles::PlaneTiles(CMetricImage& metricImage, int colorComponent)
    : image(metricImage),
      component(colorComponent),
      samples(metricImage.GetSamples(colorComponent)),
      pictureWidth(metricImage.GetWidth()),
      pictureHeight(metricImage.GetHeight()) {
    if (samples == nullptr && !image.IsMadeAsRead(component)) plane = metricImage.GetPlane(component);
}

void PlaneTiles::Read(int x, int y, int width, int height, float* tile) const {
    const int columns = std::min(width, pictureWidth - x);
    const int rows = std::min(height, pictureHeight - y);
    float* row = tile;
    for (int i = 0; i < rows; ++i, row += width) {
        if (samples != nullptr)
            LoadPixels(*samples, x, y + i, row, columns);
        else if (plane != nullptr)
            std::copy_n(plane + std::ptrdiff_t{y + i} * pictureWidth + x, columns, row);
        else
            image.MakePixels(component, x, y + i, row, columns);
        std::fill_n(row + columns, width - columns, row[columns - 1]);
    }
    for (int i = rows; i < height; ++i, row += width) std::copy_n(row - width, width, row);
}

}  // namespace Metric
