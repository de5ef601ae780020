#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Metric {

/// Where a block of the current picture is found in the reference.
struct MotionVector {
    int x = 0;  ///< quarter pixels to the right
    int y = 0;  ///< quarter pixels down
    int cost = 0;

    bool operator==(const MotionVector&) const = default;
};

/// The motion of one block of 16 by 16 pixels. Quadrants, and the 4 by 4 blocks of a quadrant, are numbered
/// in raster order from 0.
struct BlockMotion {
    int partition = 16;                                   ///< 16: whole block, 8: split into quadrants
    std::array<int, 4> quadrantPartition = {8, 8, 8, 8};  ///< 8: whole quadrant, 4: split into 4 by 4 blocks
    /// Entry 0 of the whole block; entry 4q of quadrant q; entries 4q to 4q + 3 of its 4 by 4 blocks.
    std::array<MotionVector, 16> vectors;

    /// The vector of 4 by 4 block `small` of quadrant `quadrant`, or of what it wasn't split from.
    const MotionVector& VectorOf(int quadrant, int small) const {
        if (partition == 16) return vectors[0];
        const bool split = quadrantPartition[static_cast<std::size_t>(quadrant)] == 4;
        return vectors[static_cast<std::size_t>(4 * quadrant + (split ? small : 0))];
    }

    /// Calls use(vector, share) for every vector of the partition, in order. `share` is how many blocks of
    /// the size that the vector belongs to make up 16 by 16 pixels: 1, 4 or 16.
    template <class Use>
    void ForEachVector(const Use& use) const {
        if (partition == 16) return use(vectors[0], 1);
        for (std::size_t quadrant = 0; quadrant < 4; ++quadrant) {
            if (quadrantPartition[quadrant] == 8) {
                use(vectors[4 * quadrant], 4);
            } else {
                for (std::size_t small = 0; small < 4; ++small) use(vectors[4 * quadrant + small], 16);
            }
        }
    }
};

/// The blocks of a picture in raster order.
struct MotionField {
    int columns = 0;
    int rows = 0;
    std::vector<BlockMotion> blocks;

    bool Contains(int column, int row) const {
        return column >= 0 && column < columns && row >= 0 && row < rows;
    }
    std::size_t Index(int column, int row) const { return static_cast<std::size_t>(row * columns + column); }
    const BlockMotion& At(int column, int row) const { return blocks[Index(column, row)]; }
    BlockMotion& At(int column, int row) { return blocks[Index(column, row)]; }
};

}  // namespace Metric
