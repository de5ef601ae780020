#pragma once

#include <cstdint>

class rkVideoImage;
class rkIRawDataStream;

/// Reads frames, whatever the file. Frame numbers count from 0.
///
/// Errors are ints private to each class; 0 is always success, and `GetErrorText` says the rest. Nothing is
/// thrown for bad input. The text operations write at most `size` characters, the closing 0 included, and do
/// nothing for a null buffer or a size below 1. A source belongs to one thread at a time.
class rkIVideoSource {
public:
    virtual int ReadFrame(std::uint8_t* buffer, int frame) = 0;
    virtual int ReadNextFrame(std::uint8_t* buffer) = 0;
    virtual int ReadFrameImage(rkVideoImage& image, int frame) = 0;
    virtual int ReadNextFrameImage(rkVideoImage& image) = 0;
    /// Nobody will look at the chroma of what is read from now on: a source may leave it in its file, and an
    /// image holds anything there.
    virtual void ReadLumaOnly() {}
    /// The container's stream behind the source; null where there is none. Belongs to the source.
    virtual rkIRawDataStream* GetRawStream() { return nullptr; }
    virtual int Close() = 0;
    virtual void GetFullDescription(wchar_t* buffer, int size) = 0;
    virtual void GetDescription(wchar_t* buffer, int size) = 0;
    virtual void GetErrorText(int code, wchar_t* buffer, int size) = 0;
    virtual bool IsBadFrameNumber(int frame) = 0;
    virtual bool IsEndOfVideo() = 0;
    virtual int GetWidth() = 0;
    virtual int GetHeight() = 0;
    virtual int GetColorSpace() = 0;
    /// Frames a second are `GetRate() / GetScale()`; a rate of 0 is unknown.
    virtual int GetRate() { return 0; }
    virtual int GetScale() { return 1; }
    virtual int GetFrameCount() { return 0; }
    virtual int GetCurrentFrame() { return 0; }
    virtual ~rkIVideoSource() = default;
};
