#include "metrics/vqm.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "kernels/bands.h"
#include "metric/plane_tiles.h"
#include "metrics/painted_map.h"
#include "metrics/vqm_blocks.h"

namespace Metric {

namespace {
constexpr float kMeanOfBlock = 0.015625f;  // 1 / 64
constexpr int kTileWidth = 128;            // pixels; eight rows of both pictures fit the first cache
}  // namespace

CVQMMetric::CVQMMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), kVqmBlockSize, kVqmBlockSize, true),
      blockColumns(paddedWidth / kVqmBlockSize),
      blockRows(paddedHeight / kVqmBlockSize),
      blockSums(static_cast<std::size_t>(blockColumns) * static_cast<std::size_t>(blockRows)),
      greatest(static_cast<std::size_t>(blockRows)) {
    id = L"vqm";
    name = L"VQM";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#vqm");
    higherIsBetter = false;
}

std::vector<MetricValue> CVQMMetric::Measure(const std::vector<CMetricImage*>& images) {
    CompareFrame(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CVQMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                         rkVideoImage& target) {
    CompareFrame(images);
    FillMap(GetMap(parameters.component));
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CVQMMetric::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintGrey);
}

void CVQMMetric::CompareFrame(const std::vector<CMetricImage*>& images) {
    const PlaneTiles first(*images[0], parameters.component);
    const PlaneTiles second(*images[1], parameters.component);
    Kernels::ForEachRow(paddedWidth * kVqmBlockSize, blockRows, [&](int row) {
        alignas(64) std::array<float, kVqmBlockSize * kTileWidth> a;
        alignas(64) std::array<float, kVqmBlockSize * kTileWidth> b;
        float* const sums = blockSums.data() + std::ptrdiff_t{row} * blockColumns;
        float& most = greatest[static_cast<std::size_t>(row)];
        most = 0;
        for (int x = 0; x < paddedWidth; x += kTileWidth) {
            const int width = std::min(kTileWidth, paddedWidth - x);
            first.Read(x, row * kVqmBlockSize, width, kVqmBlockSize, a.data());
            second.Read(x, row * kVqmBlockSize, width, kVqmBlockSize, b.data());
            most =
                std::max(most, CompareVqmBlocks(tables, a.data(), b.data(), width, sums + x / kVqmBlockSize));
        }
    });

    float meanSum = 0;
    for (float blockSum : blockSums) meanSum += blockSum * kMeanOfBlock;
    float maxDiff = 0;
    for (float difference : greatest) maxDiff = std::max(maxDiff, difference);
    const auto pixels = static_cast<float>(PaddedPixelCount());
    value = ((meanSum * 64000) / pixels + maxDiff * 5) * 10;
}

void CVQMMetric::FillMap(float* map) const {
    const float* blockSum = blockSums.data();
    for (int row = 0; row < blockRows; ++row) {
        float* first = map + std::ptrdiff_t{row} * kVqmBlockSize * paddedWidth;
        for (int column = 0; column < blockColumns; ++column, ++blockSum) {
            const float grey = std::min(255.0f, *blockSum * kMeanOfBlock * 256000);
            std::fill_n(first + column * kVqmBlockSize, kVqmBlockSize, grey);
        }
        for (int y = 1; y < kVqmBlockSize; ++y) std::copy_n(first, paddedWidth, first + y * paddedWidth);
    }
}

}  // namespace Metric
