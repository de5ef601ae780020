#pragma once

#include "kernels/frame_tiles.h"

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// A line of pixels sees its frames as a window of space and time: 11 pixels by 33 frames.
inline constexpr int kWindowFrames = 33;
inline constexpr int kWindowPixels = 11;

/// Along which lines through a pixel its surroundings are compared; a pixel's value is the mean of its
/// lines'.
enum class LineSet : std::uint8_t {
    Horizontal,
    Vertical,
    Cross,  // both
    Star,   // and the two diagonals
};

/// Side of the squares of pixels that share a line set.
inline constexpr int kLineCell = 4;

/// Two sequences of the last 33 frames, multiples of 8 wide.
struct SpaceTimeFrames {
    FrameTiles layout;  // 33 slots
    const std::uint8_t* first;
    const std::uint8_t* second;
    int oldestSlot;  // the frames follow it in order of time, from the last slot to slot 0
};

/// The values of the pixels of the middle frame.
struct SpaceTimeMap {
    float* values;         // rows of `width` one behind the other
    int width;             // a multiple of 8; columns beyond the frames repeat their last one
    int rows;              // no more than the frames have
    const LineSet* lines;  // of each square, width / 4 a row
};

/// Structural similarity over time, at each pixel of the middle frame along some lines through it.
///
/// Formula  of the weighted sums mx, my, exx, eyy, exy of a line's 33 times 11 samples x, y, their squares
///          and product:
///            (2 mx my + c1) (2 (exy - mx my) + c2) / ((mx^2 + my^2 + c1) (exx - mx^2 - my^2 + eyy + c2)),
///          limited to 0 to 1. The weights are a Gaussian of sigma 1.5 in frames and pixels, with the sum 1;
///          outside the frames a line sees the nearest pixel.
/// Numbers  double. The weights are a product of one Gaussian in time and one in space, so the sums over
///          time, which all lines of all pixels share, come first: 33 + 11 terms a line and not 363. Vector
///          code runs across pixels only: the same bits everywhere. A value differs from that of the plain
///          sums by some 1e-12, the rounding of double, which hardly ever shows in the float.
/// Cost     25 to 45 ms at 1080p with AVX-512, for one and for four lines at every pixel.
/// Memory   `scratch` has `GetSpaceTimeScratchSize` bytes, aligned to 64; its contents don't matter before or
///          after. Allocates nothing. Any thread; big planes are shared out to a team.
void SpaceTimeSSIM(const SpaceTimeFrames& frames, double c1, double c2, const SpaceTimeMap& map,
                   void* scratch);

std::size_t GetSpaceTimeScratchSize(int mapWidth, int mapRows);

}  // namespace Kernels
