#pragma once

#include "gpu/level.h"
#include "gpu/storage.h"

namespace Gpu {

/// Adds up maps of a level and of smaller ones. The device adds in blocks, see `reduce6`, the host adds the
/// blocks' sums in index order, all in float: the order belongs to the measures.
class MapSum : NotCopied {
public:
    MapSum(const CheckedGpu& gpu, const GpuLevel& level, int line = __builtin_LINE());

    /// The sum over the positions of the level's own size in a map with rows of its aligned width. Returns
    /// when the stream has done all that was given to it before.
    float SumOfMap(const GpuLevel& level, const float* map, StreamHandle stream, int line = __builtin_LINE());
    /// That sum by the number of the positions.
    float MeanOfMap(const GpuLevel& level, const float* map, StreamHandle stream,
                    int line = __builtin_LINE());

    /// The sum of the `n` elements of `map`, for which a block has `threads`.
    float SumOnGpu(int n, int threads, int blocks, const float* map, StreamHandle stream,
                   int line = __builtin_LINE());

    /// Device memory of the aligned size that holds nothing between sums.
    float* Compact() const { return compact.Get(); }

private:
    /// Leaves one partial sum a block in `blockSums`.
    void ReduceBlocks(int n, int threads, int blocks, const float* map, StreamHandle stream, int line);

    const CheckedGpu& gpu;
    DeviceBuffer<float> compact;
    DeviceBuffer<float> blockSums;
    PinnedBlock hostSums;
};

}  // namespace Gpu
