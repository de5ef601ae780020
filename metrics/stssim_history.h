#pragma once

#include <cstdint>
#include <vector>

#include "kernels/frame_tiles.h"
#include "kernels/plane.h"

namespace Metric {

/// What stSSIM remembers of one sequence: the last 33 frames in bytes, for the comparison over time, and the
/// last 17 as they came, of which the oldest is the middle one of the 33.
class SequenceHistory {
public:
    SequenceHistory(int pictureWidth, int pictureHeight);

    /// Takes in a frame of the pictures' size without gaps between the rows.
    void Push(const float* frame);

    /// The frame 16 before the newest; black until there are so many.
    const float* MiddleFrame() const {
        return frames[newestFrame + 1 == frames.size() ? 0 : newestFrame + 1].get();
    }

    const Kernels::FrameTiles& Layout() const { return layout; }
    const std::uint8_t* Tiles() const { return tiles.get(); }
    /// Slot of the tiles with the oldest of the 33 frames.
    int OldestSlot() const { return (newestSlot + 1) % layout.slots; }

private:
    Kernels::FrameTiles layout;
    Kernels::BytePlane tiles;
    int newestSlot;
    std::vector<Kernels::FloatPlane> frames;
    std::size_t newestFrame = 0;
};

}  // namespace Metric
