#pragma once

#include <cstdint>
#include <memory>

#include "platform/vfw/avi_file.h"
#include "video/avi/stream_container.h"
#include "video/raw_data_stream.h"

/// A stream that the system's own file interface hands out. `IsKeyFrame` counts from `GetStart` too.
class rkAviFileRawStream : public rkIRawDataStream {
public:
    explicit rkAviFileRawStream(std::shared_ptr<AviStream> aviStream);

    bool IsVideo() override { return kind == rkStreamContainer::Video; }
    bool IsAudio() override { return kind == rkStreamContainer::Audio; }
    bool ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) override;
    bool GetStreamInfo(AVISTREAMINFOW* streamInfo) override;
    bool IsKeyFrame(int sample) override;
    int GetLength() override { return static_cast<int>(info.dwLength); }
    int GetStart() override { return static_cast<int>(info.dwStart); }
    int GetEnd() override { return GetStart() + GetLength() - 1; }
    int GetFormatSize() override;
    bool GetFormat(std::uint8_t* buffer, int size) override;

private:
    std::shared_ptr<AviStream> stream;
    AVISTREAMINFOW info = {};  // all 0 if the stream doesn't tell
    rkStreamContainer::StreamKind kind;
};
