#include "video/sources/bmp_source.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/byte_order.h"
#include "platform/file.h"
#include "video/color_space.h"
#include "video/flip_rows.h"
#include "video/raw_layout.h"
#include "video/sources/bmp_format.h"

namespace {

constexpr std::array<const wchar_t*, 6> kErrorTexts = {
    L"No error occured!",                                  // NoError
    L"Error in YUV reader!",                               // ReaderError
    L"Failed to open file! File is missed or corrupted.",  // OpenFailed
    L"Unrecognized error!",                                // NoMemory
    L"Failed to open file! File is missed or corrupted.",  // BadFile
    L"Bad frame number occured!",                          // BadFrameNumber
};
static_assert(kErrorTexts.size() == rkBmpSource::BadFrameNumber + 1);

using Headers = std::array<std::uint8_t, kBmpHeaderBytes>;

/// The pixels are taken directly behind the headers, wherever the file says that they are.
bool IsReadable(const Headers& headers) {
    return LoadLe<std::uint32_t>(&headers[kBmpInfoSizeAt]) == kBmpInfoHeaderBytes &&
           LoadLe<std::uint16_t>(&headers[kBmpBitsPerPixelAt]) == kBmpBitsPerPixel &&
           LoadLe<std::uint32_t>(&headers[kBmpCompressionAt]) == kBmpUncompressed;
}

}  // namespace

rkBmpSource::rkBmpSource() : rkFileSource(kErrorTexts) {}

int rkBmpSource::Open(const std::wstring& name) {
    Close();
    const int result = OpenFile(name);
    if (result != NoError) Close();
    fileName = name;
    return result;
}

int rkBmpSource::OpenFile(const std::wstring& name) {
    ReadOnlyFile file;
    if (!file.Open(name)) return OpenFailed;
    Headers headers;
    if (file.ReadAt(0, headers.data(), headers.size()) != headers.size() || !IsReadable(headers))
        return BadFile;

    const auto storedHeight = static_cast<std::int32_t>(LoadLe<std::uint32_t>(&headers[kBmpHeightAt]));
    const bool topDown = storedHeight < 0;
    const int pictureWidth = static_cast<std::int32_t>(LoadLe<std::uint32_t>(&headers[kBmpWidthAt]));
    const int pictureHeight = topDown ? -std::max(storedHeight, -INT32_MAX) : storedHeight;
    const int bytes = PackedFrameBytes(RGB24, pictureWidth, pictureHeight);
    const auto pixelBytes = static_cast<std::size_t>(bytes);
    if (bytes == 0 || file.Size() < kBmpHeaderBytes + pixelBytes) return BadFile;
    if (!Allocate(picture, bytes)) return NoMemory;
    if (file.ReadAt(kBmpHeaderBytes, picture.get(), pixelBytes) != pixelBytes) return BadFile;

    SetShape(RGB24, pictureWidth, pictureHeight);
    SetFrameCount(1);
    holdsFrame = true;
    if (topDown) {
        const std::size_t rowBytes = PackedPlaneOf(RGB24, width, height, 0).rowStep;
        FlipRows(picture.get(), rowBytes, rowBytes, height);
    }
    return NoError;
}

int rkBmpSource::ReadFrame(std::uint8_t* buffer, int frame) {
    if (frame != 0) return BadFrameNumber;
    position = 0;
    return ReadNextFrame(buffer);
}

int rkBmpSource::ReadNextFrame(std::uint8_t* buffer) {
    if (IsEndOfVideo() || buffer == nullptr) return ReaderError;
    std::memcpy(buffer, picture.get(), static_cast<std::size_t>(PackedFrameBytes(RGB24, width, height)));
    position = 1;
    return NoError;
}

int rkBmpSource::Close() {
    picture.reset();
    return rkFileSource::Close();
}

std::wstring rkBmpSource::Description() const {
    return L"width " + std::to_wstring(width) + L" height " + std::to_wstring(height);
}
