#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "kernels/bands.h"
#include "kernels/flat_ssim.h"
#include "kernels/flat_walk.h"
#include "kernels/ordered_sum.h"
#include "kernels/plane.h"
#include "metric/metric_image.h"

namespace Metric {

/// The pictures' own bytes of a component, if that is what the planes of both images hold and they aren't too
/// tall for a walk.
std::optional<Kernels::BytePictures> BytePicturesOf(const std::vector<CMetricImage*>& images, int component);

/// Sums over the map of a `FlatWalk`, without the pictures as float planes and in half the time.
///
/// Map     `width` by `height` floats, rows contiguous. It is filled, but for its last 7 rows, if the caller
///         wants it; else it is left with whatever. Columns 0 to 6 repeat column 7.
/// Threads one at a time, whose call a team shares, where the next parallel level may have one.
class FlatByteWindows {
public:
    FlatByteWindows(int width, int height);

    /// What `OrderedSum` gives for the windows of the whole map, which nextRow(walk, values) makes.
    template <class Number, class NextRow>
    Number Sum(const Kernels::BytePictures& pictures, float* map, bool wantsMap, const NextRow& nextRow);

private:
    /// What a thread takes at least: each has to sum up all that lies above its rows, needs room for it, and
    /// hands its values over from cache to cache.
    std::int64_t PixelsPerThread() const;
    int MostThreads() const;
    void* MemoryOf(int thread) const;
    float* RowOf(int thread) const;

    int width;
    int height;
    Kernels::BytePlane memory;  ///< of a walk for each thread
    Kernels::FloatPlane rows;   ///< a row of values for each thread
};

template <class Number, class NextRow>
Number FlatByteWindows::Sum(const Kernels::BytePictures& pictures, float* map, bool wantsMap,
                            const NextRow& nextRow) {
    constexpr int kBefore = Kernels::kFlatWindow - 1;  // columns to the left of the first window's value
    const int mapRows = height - kBefore;
    Number sum = 0;
    int added = 0;  // rows
    const auto sumBand = [&](const Kernels::Band& band) {
        // The first band is added as it comes; the others wait in the map for their turn.
        const bool isFirst = band.first == 0;
        Kernels::FlatWalk walk(pictures, band.first, MemoryOf(band.thread));
        float* const values = RowOf(band.thread);
        Number sumOfBand = 0;
        for (int y = band.first; y < band.end; ++y) {
            nextRow(walk, values);
            if (isFirst) sumOfBand = Kernels::OrderedSum(sumOfBand, values + kBefore, 0, width - kBefore, 1);
            if (isFirst && !wantsMap) continue;
            std::fill_n(values, kBefore, values[kBefore]);
            std::copy_n(values, width, map + std::ptrdiff_t{y} * width);
        }
        if (!isFirst) return;
        sum = sumOfBand;
        added = band.end;
    };
    Kernels::ForEachBand(width, mapRows, sumBand, PixelsPerThread());
    return Kernels::OrderedSum(sum, map + std::ptrdiff_t{added} * width + kBefore,
                               width * static_cast<int>(sizeof(float)), width - kBefore, mapRows - added);
}

}  // namespace Metric
