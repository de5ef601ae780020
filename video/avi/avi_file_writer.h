#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/vfw/avi_file.h"
#include "platform/vfw/compressor.h"
#include "platform/vfw/stream_info.h"
#include "video/avi/compressor_settings.h"
#include "video/video_writer.h"

/// Writes `RGB24` frames, bottom-up, as the one video stream of an AVI file, uncompressed or compressed.
///
/// Closed until one of the `Open` succeeds. A file is complete once `Close` has answered 0.
class rkAviFileWriter : public rkIVideoWriter {
public:
    enum Error {
        NoError = 0,
        CompressorError = 1,
        CreateFailed = 2,
        CreateStreamFailed = 3,
        CompressFailed = 4,
        FormatFailed = 5,
        CompressStartFailed = 6,
        NoMemory = 7,
        BadFrameNumber = 8,
        WriteFailed = 9,
        NullPointer = 10
    };

    rkAviFileWriter() = default;
    ~rkAviFileWriter() override { Close(); }

    /// `format` is that of the frames that come, 24 bits a pixel and bottom-up; `info` has the frame rate,
    /// the size in `rcFrame`, the number of the first frame in `dwStart` and the stream's name. `NullPointer`
    /// for an empty name or a missing record, `FormatFailed` for another format, other sizes, or a frame of 2
    /// GiB and more.
    ///
    /// With `compress` the user is asked for a compressor; a user who refuses gets an uncompressed file.
    int Open(const std::wstring& name, const BITMAPINFOHEADER* format, const AVISTREAMINFOW* info,
             bool compress);
    /// With a choice made before. Without such a compressor the file is uncompressed.
    int OpenWithSettings(const std::wstring& name, const BITMAPINFOHEADER* format, const AVISTREAMINFOW* info,
                         const rkCompressorSettings& choice);

    /// An `RGB24` image of the writer's size, else `NullPointer`.
    int WriteFrameImage(rkVideoImage& image) override;
    /// Rows of (3 * width + 3) rounded down to a multiple of 4 bytes. `BadFrameNumber` when closed.
    int WriteFrame(std::uint8_t* buffer) override;

    void GetDescription(wchar_t* buffer, int size) override;
    void GetErrorText(int code, wchar_t* buffer, int size) override;
    int GetPosition() override { return 0; }

    /// Completes the file. `WriteFailed` if that failed, as on a full disk; the writer is closed in every
    /// case.
    int Close() override;

private:
    int OpenFile(const std::wstring& name, const BITMAPINFOHEADER* format, const AVISTREAMINFOW* info,
                 bool choose);
    int CreateStream(const std::wstring& name);
    void FindCompressor();
    int StartCompressor(std::vector<std::uint8_t>& format);
    int WriteCompressed(const std::uint8_t* frame);
    FormatView InputFormat() const { return {inputFormat.data(), static_cast<int>(inputFormat.size())}; }

    std::shared_ptr<AviFile> file;
    std::shared_ptr<AviStream> stream;
    HIC compressor;  // null: uncompressed
    rkCompressorSettings settings;
    AVISTREAMINFOW streamInfo = {};
    std::vector<std::uint8_t> inputFormat;  // of the frames that come
    std::unique_ptr<std::uint8_t[]> frameBuffer;
    std::unique_ptr<std::uint8_t[]> compressedBuffer;
    std::wstring fileName;
    int width = 0;
    int height = 0;
    int frameBytes = 0;
    int firstPosition = 0;
    int position = -1;      // of the next frame; below 0 when closed
    int positionShift = 0;  // frames that the compressor dropped so far, as a negative number
};
