#pragma once

#include <cstdint>
#include <string>

/// What became of reading a frame. The numbers are those of `rkAviSource::Error`.
enum class FrameResult { Ok = 0, ReadFailed = 5, DecodeFailed = 6, NoMemory = 9 };

/// How the frames of a video stream are made of its samples. Frames are numbered as the samples are. Not for
/// two threads at once.
class AviFrames {
public:
    virtual ~AviFrames() = default;

    /// One packed frame; `frame` is a sample's number. On a failure the bytes of the buffer are open.
    virtual FrameResult Read(int frame, std::uint8_t* buffer) = 0;

    /// For people: "raw stream", or what decodes the samples.
    virtual std::wstring Description() const = 0;
};
