#pragma once

#include <cstdint>

class rkVideoImage;

/// Writes frames, whatever the file. Errors as in `rkIVideoSource`. A writer belongs to one thread at a time.
class rkIVideoWriter {
public:
    virtual int WriteFrameImage(rkVideoImage& image) = 0;
    virtual int WriteFrame(std::uint8_t* buffer) = 0;
    virtual void GetDescription(wchar_t* buffer, int size) = 0;
    virtual void GetErrorText(int code, wchar_t* buffer, int size) = 0;
    virtual int GetPosition() = 0;
    virtual int Close() = 0;
    virtual ~rkIVideoWriter() = default;
};
