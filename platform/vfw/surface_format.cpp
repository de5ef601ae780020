#include "platform/vfw/surface_format.h"

namespace {

constexpr struct {
    Surface surface;
    std::uint32_t compression;
    std::uint16_t bits;
} kForms[] = {
    {Surface::YV12, kFccYv12, 12},
    {Surface::YUY2, kFccYuy2, 16},
    {Surface::RGB24, 0, 24},
};

}  // namespace

std::optional<Surface> SurfaceOf(const BITMAPINFOHEADER& format) {
    for (const auto& form : kForms) {
        if (form.compression == format.biCompression && form.bits == format.biBitCount) return form.surface;
    }
    return std::nullopt;
}

BITMAPINFOHEADER FormatOf(Surface surface, int width, int height) {
    BITMAPINFOHEADER format = {};
    format.biSize = kBitmapFormatBytes;
    format.biWidth = width;
    format.biHeight = height;
    format.biPlanes = 1;
    for (const auto& form : kForms) {
        if (form.surface != surface) continue;
        format.biCompression = form.compression;
        format.biBitCount = form.bits;
    }
    format.biSizeImage = static_cast<std::uint32_t>(SurfaceBytes(surface, width, height));
    return format;
}
