#include "video/avi/avi_file_writer.h"

#include <array>
#include <cstdlib>
#include <new>

#include "platform/text.h"
#include "video/color_space.h"
#include "video/raw_layout.h"
#include "video/video_image.h"

namespace {

constexpr std::array<const wchar_t*, 11> kErrorTexts = {
    L"No error occured!",                 // NoError
    L"Error in compressor!",              // CompressorError
    L"Failed to create file!",            // CreateFailed
    L"Failed to create stream in file!",  // CreateStreamFailed
    L"Failed to compress frame!",         // CompressFailed
    L"Failed to get stream format!",      // FormatFailed
    L"Failed to start compression!",      // CompressStartFailed
    L"Not enough memory!",                // NoMemory
    L"Bad frame number occured!",         // BadFrameNumber
    L"Failed to write to stream!",        // WriteFailed
    L"Null poiter occured!",              // NullPointer
};
static_assert(kErrorTexts.size() == rkAviFileWriter::NullPointer + 1);

/// What a compressor answers for a frame that it left out.
constexpr int kDroppedBytes = 1;

std::unique_ptr<std::uint8_t[]> Allocate(int bytes) {
    return std::unique_ptr<std::uint8_t[]>(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(bytes)]);
}

bool IsFormatOf(const BITMAPINFOHEADER& format, std::int64_t width, std::int64_t height) {
    return format.biWidth == width && format.biHeight == height && format.biBitCount == 24 &&
           format.biCompression == 0;
}

}  // namespace

int rkAviFileWriter::Open(const std::wstring& name, const BITMAPINFOHEADER* format,
                          const AVISTREAMINFOW* info, bool compress) {
    Close();
    return OpenFile(name, format, info, compress);
}

int rkAviFileWriter::OpenWithSettings(const std::wstring& name, const BITMAPINFOHEADER* format,
                                      const AVISTREAMINFOW* info, const rkCompressorSettings& choice) {
    Close();
    settings = choice;
    return OpenFile(name, format, info, false);
}

int rkAviFileWriter::OpenFile(const std::wstring& name, const BITMAPINFOHEADER* format,
                              const AVISTREAMINFOW* info, bool choose) {
    if (name.empty() || format == nullptr || info == nullptr) return NullPointer;
    const auto& rect = info->rcFrame;
    const std::int64_t columns = std::abs(std::int64_t{rect.right} - rect.left);
    const std::int64_t rows = std::abs(std::int64_t{rect.bottom} - rect.top);
    if (!IsFormatOf(*format, columns, rows)) return FormatFailed;
    width = format->biWidth;
    height = format->biHeight;
    frameBytes = PackedFrameBytes(RGB24, width, height);
    if (frameBytes == 0) return FormatFailed;

    inputFormat.resize(kBitmapFormatBytes);
    StoreBitmapFormat(*format, inputFormat.data());
    streamInfo = *info;
    streamInfo.dwSuggestedBufferSize = 0;
    if (choose) settings.Choose(*format);
    FindCompressor();

    const int result = CreateStream(name);
    if (result != NoError) Close();
    fileName = name;
    return result;
}

void rkAviFileWriter::FindCompressor() {
    if (settings.fccHandler != 0) compressor = settings.OpenCompressor();
    streamInfo.fccHandler = compressor ? settings.fccHandler : kFccDibZero;
}

int rkAviFileWriter::CreateStream(const std::wstring& name) {
    std::vector<std::uint8_t> format = inputFormat;
    // Before the file is touched: a compressor that refuses the frames must not cost an older file of that
    // name.
    if (compressor) {
        if (const int result = StartCompressor(format); result != NoError) return result;
    }
    if (AVIFileOpenW(file, name, OF_WRITE | OF_CREATE) != 0) return CreateFailed;
    if (AVIFileCreateStreamW(file, stream, streamInfo) != 0) return CreateStreamFailed;
    if (AVIStreamSetFormat(*stream, 0, format.data(), static_cast<int>(format.size())) != 0)
        return FormatFailed;
    firstPosition = position = static_cast<int>(streamInfo.dwStart);
    return NoError;
}

/// Makes the compressor ready; `format` is that of its samples.
int rkAviFileWriter::StartCompressor(std::vector<std::uint8_t>& format) {
    const CompressRate rate = {.scale = static_cast<int>(streamInfo.dwScale),
                               .rate = static_cast<int>(streamInfo.dwRate),
                               .quality = settings.quality,
                               .dataRate = settings.dataRate};
    if (ICSetRate(compressor, rate) != ICERR_OK) return CompressStartFailed;
    const int formatSize = ICCompressGetFormatSize(compressor, InputFormat());
    if (formatSize < 1) return FormatFailed;
    format.resize(static_cast<std::size_t>(formatSize));
    if (ICCompressGetFormat(compressor, InputFormat(), format.data()) != ICERR_OK) return FormatFailed;

    const int size = ICCompressGetSize(compressor, InputFormat());
    if (size < 1 || ICCompressBegin(compressor, InputFormat()) != ICERR_OK) return CompressStartFailed;
    compressedBuffer = Allocate(size);
    return compressedBuffer ? NoError : NoMemory;
}

int rkAviFileWriter::WriteFrame(std::uint8_t* buffer) {
    if (position < 0) return BadFrameNumber;
    if (buffer == nullptr) return NullPointer;
    if (compressor) {
        if (const int result = WriteCompressed(buffer); result != NoError) return result;
    } else if (AVIStreamWrite(*stream, position, buffer, static_cast<std::size_t>(frameBytes),
                              AVIIF_KEYFRAME) != 0) {
        return WriteFailed;
    }
    ++position;
    return NoError;
}

int rkAviFileWriter::WriteCompressed(const std::uint8_t* frame) {
    const std::uint32_t wanted = position == firstPosition ? ICCOMPRESS_KEYFRAME : 0;
    int bytes = 0;
    std::uint32_t flags = 0;
    if (ICCompress(compressor, wanted, frame, position, compressedBuffer.get(), bytes, flags) != ICERR_OK)
        return CompressFailed;
    if (bytes == kDroppedBytes) {
        --positionShift;
        return NoError;
    }
    const auto size = static_cast<std::size_t>(bytes);
    const int result = AVIStreamWrite(*stream, position + positionShift, compressedBuffer.get(), size, flags);
    return result == 0 ? NoError : WriteFailed;
}

int rkAviFileWriter::WriteFrameImage(rkVideoImage& image) {
    const bool fits = image.VisibleWidth() == width && image.VisibleHeight() == height &&
                      image.ColorSpace() == RGB24 && image.HasPixels();
    if (!fits) return NullPointer;
    if (image.Width() == width && image.Height() == height) return WriteFrame(image.Data());

    if (!frameBuffer) frameBuffer = Allocate(frameBytes);
    if (!frameBuffer) return NoMemory;
    image.CopyVisibleTo(frameBuffer.get());
    return WriteFrame(frameBuffer.get());
}

int rkAviFileWriter::Close() {
    int result = NoError;
    if (stream && AVIStreamRelease(stream) != 0) result = WriteFailed;
    if (compressor) ICCompressEnd(compressor);
    compressor.reset();
    if (file && AVIFileRelease(file) != 0) result = WriteFailed;
    stream.reset();
    file.reset();
    settings = {};
    streamInfo = {};
    frameBuffer.reset();
    compressedBuffer.reset();
    fileName.clear();
    width = height = frameBytes = 0;
    position = -1;
    positionShift = 0;
    return result;
}

void rkAviFileWriter::GetDescription(wchar_t* buffer, int size) {
    const std::wstring prefix = fileName.empty() ? L"" : L"file \"" + fileName + L"\" ";
    ICINFO info;
    const bool isCompressed = compressor && ICGetInfo(compressor, info) == ICERR_OK;
    const std::wstring text =
        isCompressed ? std::wstring(L"decompressor ") + info.szDescription : L"uncompressed";
    CopyText(prefix + text, buffer, size);
}

void rkAviFileWriter::GetErrorText(int code, wchar_t* buffer, int size) {
    const std::wstring prefix = fileName.empty() ? L"" : L"Error when writing file \"" + fileName + L"\": ";
    const auto index = static_cast<std::size_t>(code);
    const bool known = code >= 0 && index < kErrorTexts.size();
    CopyText(prefix + (known ? kErrorTexts[index] : L"Unrecognized error!"), buffer, size);
}
