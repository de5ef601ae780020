#include "kernels/frame_tiles.h"

#include "kernels/arithmetic.h"
#include "kernels/bands.h"
#include "kernels/rows.h"

#include <hwy/cache_control.h>

#include <algorithm>

namespace Kernels {

namespace {

// The tiles of a slot are lines of memory that nobody has touched since they were last written, far apart: a
// store that waited for each of them would take longer than the conversion.
constexpr int kTilesAhead = 12;

}  // namespace

void StoreFrame(const float* plane, int stride, const FrameTiles& layout, int slot, std::uint8_t* tiles) {
    ForEachRow(
        layout.width, layout.height,
        [&](int y) {
            std::uint8_t* tile =
                tiles + y * layout.RowBytes() + std::ptrdiff_t{slot} * FrameTiles::kTileWidth;
            for (int x = 0; x < layout.width; x += FrameTiles::kTileWidth, tile += layout.TileBytes()) {
                hwy::Prefetch(tile + kTilesAhead * layout.TileBytes());
                const int count = std::min(FrameTiles::kTileWidth, layout.width - x);
                ConvertToBytes(Row(plane, stride, y) + x, stride, tile, FrameTiles::kTileWidth, count, 1);
            }
        },
        kLightPixelsPerThread);
}

}  // namespace Kernels
