#pragma once

#include <cstdint>

/// Four characters as the containers store them, first one in the lowest byte.
constexpr std::uint32_t FourCC(char a, char b, char c, char d) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(a)) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(d)) << 24;
}

/// The format of a video stream's pictures, as it stands in files: 40 bytes, little-endian, behind which a
/// codec's own data may follow. A negative `biHeight` means rows from the top down.
struct BITMAPINFOHEADER {
    std::uint32_t biSize;
    std::int32_t biWidth;
    std::int32_t biHeight;
    std::uint16_t biPlanes;
    std::uint16_t biBitCount;
    std::uint32_t biCompression;
    std::uint32_t biSizeImage;
    std::int32_t biXPelsPerMeter;
    std::int32_t biYPelsPerMeter;
    std::uint32_t biClrUsed;
    std::uint32_t biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);
constexpr int kBitmapFormatBytes = 40;

/// `biCompression` of uncompressed pictures: 0 for RGB, or one of these. Under bit fields masks follow the
/// format.
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kFccYv12 = FourCC('Y', 'V', '1', '2');
constexpr std::uint32_t kFccYuy2 = FourCC('Y', 'U', 'Y', '2');

/// From and to 40 bytes as files hold them.
BITMAPINFOHEADER LoadBitmapFormat(const std::uint8_t* bytes);
void StoreBitmapFormat(const BITMAPINFOHEADER& format, std::uint8_t* bytes);

/// A bitmap format as files hold it, with the bytes that follow. Doesn't own them.
struct FormatView {
    const std::uint8_t* data = nullptr;  ///< little-endian, whatever the machine
    int size = 0;                        ///< at least 40
};
