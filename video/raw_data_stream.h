#pragma once

#include <cstdint>

struct AVISTREAMINFOW;

/// A container's stream of samples. Sample numbers count from `GetStart`; only `IsKeyFrame` of a stream that
/// a container parser walked itself counts its entries from 0. Belongs to its parser; not for two threads at
/// once.
class rkIRawDataStream {
public:
    virtual bool IsVideo() = 0;
    virtual bool IsAudio() = 0;
    /// False if the sample doesn't exist, doesn't fit in `bufferSize` or can't be read whole. `actualBytes`
    /// is the sample's size; a call with a size of 0 asks for it.
    virtual bool ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) = 0;
    /// Fields that the container doesn't have stay as the caller left them.
    virtual bool GetStreamInfo(AVISTREAMINFOW* info) = 0;
    virtual bool IsKeyFrame(int sample) = 0;
    virtual int GetLength() = 0;
    virtual int GetStart() = 0;
    virtual int GetEnd() = 0;
    virtual int GetFormatSize() = 0;
    virtual bool GetFormat(std::uint8_t* buffer, int size) = 0;
    virtual ~rkIRawDataStream() = default;
};
