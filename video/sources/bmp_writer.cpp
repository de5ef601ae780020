#include "video/sources/bmp_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>

#include "kernels/plane.h"
#include "platform/byte_order.h"
#include "platform/text.h"
#include "platform/vfw/output_file.h"
#include "video/color_space.h"
#include "video/error_text.h"
#include "video/raw_layout.h"
#include "video/sources/bmp_format.h"
#include "video/video_image.h"

namespace {

constexpr std::array<const wchar_t*, 5> kErrorTexts = {
    L"No error occured!",                                     // NoError
    L"Failed to create BMP file with incorrect dimensions!",  // BadDimensions
    L"Failed to open file!",                                  // OpenFailed
    L"Failed to write to BMP file!",                          // WriteFailed
    L"Not enough memory!",                                    // NoMemory
};
static_assert(kErrorTexts.size() == rkBmpWriter::NoMemory + 1);

using Headers = std::array<std::uint8_t, kBmpHeaderBytes>;

Headers MakeHeaders(int width, int height, std::uint32_t pixelBytes) {
    Headers headers = {};
    const auto set16 = [&](std::size_t at, unsigned value) {
        StoreLe(static_cast<std::uint16_t>(value), &headers[at]);
    };
    const auto set32 = [&](std::size_t at, std::size_t value) {
        StoreLe(static_cast<std::uint32_t>(value), &headers[at]);
    };
    set16(kBmpSignatureAt, kBmpSignature);
    set32(kBmpFileSizeAt, kBmpHeaderBytes + pixelBytes);
    set32(kBmpPixelsOffsetAt, kBmpHeaderBytes);
    set32(kBmpInfoSizeAt, kBmpInfoHeaderBytes);
    set32(kBmpWidthAt, static_cast<std::size_t>(width));
    set32(kBmpHeightAt, static_cast<std::size_t>(height));
    set16(kBmpPlanesAt, kBmpPlanes);
    set16(kBmpBitsPerPixelAt, kBmpBitsPerPixel);
    set32(kBmpCompressionAt, kBmpUncompressed);
    set32(kBmpImageSizeAt, pixelBytes);
    return headers;
}

}  // namespace

int rkBmpWriter::Open(const std::wstring& name, int pictureWidth, int pictureHeight) {
    Close();
    if (name.empty()) return OpenFailed;
    if (PackedFrameBytes(RGB24, pictureWidth, pictureHeight) == 0) return BadDimensions;
    fileName = name;
    width = pictureWidth;
    height = pictureHeight;
    return NoError;
}

int rkBmpWriter::WriteFrameImage(rkVideoImage& image) {
    if (image.VisibleWidth() != width || image.VisibleHeight() != height || image.ColorSpace() != RGB24 ||
        !image.HasPixels())
        return BadDimensions;
    if (image.Width() == width && image.Height() == height) return WriteFrame(image.Data());

    try {
        const Kernels::BytePlane frame(
            static_cast<std::uint8_t*>(Kernels::AllocZeroed(image.PackedFrameBytes())));
        image.CopyVisibleTo(frame.get());
        return WriteFrame(frame.get());
    } catch (const std::bad_alloc&) {
        return NoMemory;
    }
}

int rkBmpWriter::WriteFrame(std::uint8_t* buffer) {
    const auto pixelBytes = static_cast<std::uint32_t>(PackedFrameBytes(RGB24, width, height));
    if (pixelBytes == 0 || buffer == nullptr) return BadDimensions;
    OutputFile file;
    if (!file.Open(fileName)) return OpenFailed;

    const Headers headers = MakeHeaders(width, height, pixelBytes);
    const bool isWritten = file.WriteAt(0, headers) && file.WriteAt(headers.size(), {buffer, pixelBytes});
    return file.Close() && isWritten ? NoError : WriteFailed;
}

std::string rkBmpFileBytes(rkVideoImage& image) {
    const int width = image.VisibleWidth();
    const int height = image.VisibleHeight();
    const auto pixelBytes = static_cast<std::size_t>(PackedFrameBytes(RGB24, width, height));
    const Headers headers = MakeHeaders(width, height, static_cast<std::uint32_t>(pixelBytes));
    std::string bytes(headers.size() + pixelBytes, '\0');
    std::copy(headers.begin(), headers.end(), bytes.begin());
    image.CopyVisibleTo(reinterpret_cast<std::uint8_t*>(bytes.data() + headers.size()));
    return bytes;
}

void rkBmpWriter::GetDescription(wchar_t* buffer, int size) {
    CopyText(L"width " + std::to_wstring(width) + L" height " + std::to_wstring(height), buffer, size);
}

void rkBmpWriter::GetErrorText(int code, wchar_t* buffer, int size) {
    CopyText(rkErrorText(L"writing", fileName, kErrorTexts, code), buffer, size);
}

int rkBmpWriter::Close() {
    fileName.clear();
    width = 0;
    height = 0;
    return NoError;
}
