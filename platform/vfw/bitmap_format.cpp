#include "platform/vfw/bitmap_format.h"

#include "platform/byte_order.h"

namespace {

/// Calls `visit` with every field and its offset.
template <typename Format, typename Visit>
void ForEachField(Format& format, const Visit& visit) {
    visit(0, format.biSize);
    visit(4, format.biWidth);
    visit(8, format.biHeight);
    visit(12, format.biPlanes);
    visit(14, format.biBitCount);
    visit(16, format.biCompression);
    visit(20, format.biSizeImage);
    visit(24, format.biXPelsPerMeter);
    visit(28, format.biYPelsPerMeter);
    visit(32, format.biClrUsed);
    visit(36, format.biClrImportant);
}

}  // namespace

BITMAPINFOHEADER LoadBitmapFormat(const std::uint8_t* bytes) {
    BITMAPINFOHEADER format;
    ForEachField(format, [bytes]<typename Field>(int offset, Field& field) {
        field = static_cast<Field>(LoadLe<std::make_unsigned_t<Field>>(bytes + offset));
    });
    return format;
}

void StoreBitmapFormat(const BITMAPINFOHEADER& format, std::uint8_t* bytes) {
    ForEachField(format, [bytes]<typename Field>(int offset, const Field& field) {
        StoreLe(static_cast<std::make_unsigned_t<Field>>(field), bytes + offset);
    });
}
