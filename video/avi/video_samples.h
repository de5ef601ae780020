#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "video/avi/avi_frames.h"
#include "video/raw_data_stream.h"

/// The samples of a container's video stream, numbered from `First()` to `Last()`. Refers to the stream.
///
/// A stream none of whose samples is marked as a key counts as having one at its start.
class VideoSamples {
public:
    /// `keysCountFromZero`: the stream numbers its key samples from 0 instead of `GetStart`.
    VideoSamples(rkIRawDataStream& stream, bool keysCountFromZero);

    int First() const { return first; }
    int Last() const { return last; }
    bool IsKey(int sample) const;
    /// Where decoding starts on the way to `sample`: the last key sample at or before it, or the first
    /// sample, which a codec without references decodes although nobody marked it.
    int StartFor(int sample);

    /// Reads a sample into `bytes`, which stay until the next call.
    FrameResult Read(int sample, std::span<const std::uint8_t>& bytes);
    /// The first sample from the first key on that isn't empty; nothing if it can't be read.
    std::span<const std::uint8_t> ReadFirstFilled(int& sample);

private:
    rkIRawDataStream& stream;
    int first, last;
    int keyBase;  // what the stream counts key samples from
    int firstKey;
    // Decoding starts at the one for all samples up to the other: otherwise going through a long stream with
    // few keys would take the square of its length.
    int knownStart, knownEnd;
    std::unique_ptr<std::uint8_t[]> buffer;
    int capacity = 0;
};
