#pragma once

#include "platform/media/libav.h"

/// Turns bottom-up RGB24 frames (rows padded to 4 bytes) into what an encoder is fed with: RGB by mere
/// rearrangement, 4:2:0 and 4:4:4 by the matrix of ITU-R BT.601 in the encoder's range. Throws
/// std::bad_alloc.
class FrameIntake {
public:
    explicit FrameIntake(const AVCodecContext& encoder);

    /// The picture of a frame, valid until the next call; null if it can't be made.
    AVFrame* Take(const std::uint8_t* frame);

private:
    FramePtr rgb;      ///< top-down, with rows as the scaler likes them; null where the picture is RGB itself
    ScalerPtr scaler;  ///< null likewise
    FramePtr picture;
};
