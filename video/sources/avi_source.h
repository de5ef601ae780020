#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/vfw/bitmap_format.h"
#include "platform/vfw/stream_info.h"
#include "video/avi/avi_frames.h"
#include "video/avi/stream_container.h"
#include "video/sources/file_source.h"

/// The first video stream of an AVI file or a script, uncompressed or through a decompressor.
///
/// Frames are numbered as the stream numbers its samples, which may begin above 0; `GetCurrentFrame` counts
/// from 0. A read that fails stays at its frame. Rows of RGB come bottom-up whatever their order in the file.
class rkAviSource : public rkFileSource {
public:
    enum Error {
        NoError = 0,
        DecompressorError = 1,
        OpenFailed = 2,
        OpenStreamFailed = 3,
        NullPointer = 4,
        ReadFailed = 5,
        DecompressFailed = 6,
        NoFormat = 7,
        StartFailed = 8,
        NoMemory = 9,
        BadFrameNumber = 10,
        StreamReadFailed = 11,
        BadFormat = 12,
        NoDecompressor = 13,
        StartRgbFailed = 14,
        UnsupportedColorSpace = 15
    };

    rkAviSource();

    /// `useAviFile` opens the file through the system's own file interface, as scripts need it. With
    /// `preferPlanar` a decompressor is asked for `YV12`, then `YUY2`, and without it, at a width that isn't
    /// a multiple of 4 and at an odd height for `RGB24` only.
    int Open(const std::wstring& name, bool preferPlanar, bool useAviFile);
    int Close() override;

    /// `buffer` has room for `PackedFrameBytes` of `GetColorSpace()` and the sides.
    int ReadFrame(std::uint8_t* buffer, int frame) override;
    /// Leaves the buffer as it is behind the last frame, which is no error.
    int ReadNextFrame(std::uint8_t* buffer) override;

    rkIRawDataStream* GetRawStream() override { return stream; }
    void GetFullDescription(wchar_t* buffer, int size) override;
    bool IsBadFrameNumber(int frame) override {
        return frame < firstFrame || frame - firstFrame >= frameCount;
    }
    bool IsEndOfVideo() override { return IsBadFrameNumber(position); }
    int GetRate() override;
    int GetScale() override;
    int GetCurrentFrame() override { return position - firstFrame; }

private:
    std::wstring Description() const override;
    int OpenStream(const std::wstring& name, bool useAviFile);
    int ReadFormat();
    int OpenFrames(bool preferPlanar, bool useAviFile);
    int OpenRaw(int layout);
    int OpenCompressed(bool planar, bool useAviFile);
    bool HasRate() const;

    std::unique_ptr<rkStreamContainer> container;
    rkIRawDataStream* stream = nullptr;  // the container's
    std::unique_ptr<AviFrames> frames;   // refers to the stream
    AVISTREAMINFOW streamInfo = {};
    std::vector<std::uint8_t> formatBytes;  // the stream's format with what follows it
    BITMAPINFOHEADER format = {};           // its head
    int firstFrame = 0;
};
