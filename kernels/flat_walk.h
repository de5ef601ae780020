#pragma once

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// Two pictures of `width` by `height` bytes, no smaller than the window and no taller than
/// `FlatWalk::kMostRows`; a stride is bytes from row to row.
struct BytePictures {
    const std::uint8_t* first;
    std::ptrdiff_t firstStride;
    const std::uint8_t* second;
    std::ptrdiff_t secondStride;
    int width;
    int height;
};

/// Gives the rows of the map of `FlatSSIM` or `FlatContrastStructure` from the top, of pictures whose samples
/// are bytes: the same bits in half the time.
///
/// Of the order of additions that is part of the values little is left with bytes. The running sums down the
/// columns have to be made as told, from the picture's first row; but they are whole numbers. So the
/// difference of two of them is one, at most 8 * 255^2 and a bit, and the sum of eight differences below
/// 2^24: all of these additions are exact, in any order. The running sums of the samples themselves are exact
/// down to `kMostRows`; what they differ by needs no more than their 16 lowest bits, and two share a lane.
///
/// Memory  `memory` has `MemoryBytes`, aligned to 64; like the pictures it belongs to the caller and outlives
///         the walk.
/// Threads one.
class FlatWalk {
public:
    static constexpr int kMostRows = (1 << 24) / 255;  ///< further down a float can't hold a sum of samples

    /// The walk's next row of the map is `first`. What lies above it has to be summed up all the same, which
    /// takes a tenth of the time that it takes to make it.
    FlatWalk(const BytePictures& pictures, int first, void* memory);

    /// The values of the next row; the last one is height - 8. Value x is the window over the columns x - 7
    /// to x, from x = 7 on. `values` has room for `RowFloats`, aligned to 64.
    void NextSSIM(float c1, float c2, float* values);
    void NextContrastStructure(float c2, float* values);

    /// The length of a row rounded up to whole vectors.
    static constexpr int RowFloats(int width) { return (width + 15) / 16 * 16; }
    static std::size_t MemoryBytes(int width);

    /// What is kept of each column: the running sums of x + 65536 y, as an integer, and of x*x, y*y, x*y.
    static constexpr int kQuantities = 4;

    /// A row of the pictures, with the running sums after the row above and, where it puts its own, those
    /// after the row 8 above. Those of a quantity lie `quantityFloats` behind those of the one before.
    struct Row {
        const std::uint8_t* first;
        const std::uint8_t* second;
        const float* above;
        float* sums;
        std::ptrdiff_t quantityFloats;
        int width;
    };

private:
    Row TakeRow();
    float* SumsOf(int row) const;

    BytePictures pictures;
    float* memory;
    int y = 0;  // the row of the pictures that comes next
};

}  // namespace Kernels
