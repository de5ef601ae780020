#include "video/avi/raw_frames.h"

#include <algorithm>
#include <cstring>

#include "video/color_space.h"
#include "video/raw_layout.h"

RawFrames::RawFrames(rkIRawDataStream& videoStream, int colorSpace, int width, int rows, bool topDown)
    : stream(videoStream),
      packedRowBytes(PackedPlaneOf(colorSpace, width, rows, 0).rowStep),
      height(static_cast<std::size_t>(rows)),
      sampleBytes(PackedFrameBytes(colorSpace, width, rows)),
      turned(topDown && rkIsRgb(colorSpace)) {
    // Rows of 4 bytes a pixel need no filling up in a file; in a packed frame odd ones have it.
    storedRowBytes = colorSpace == RGB32 ? 4 * static_cast<std::size_t>(width) : packedRowBytes;
    sampleBytes -= static_cast<int>((packedRowBytes - storedRowBytes) * height);
}

FrameResult RawFrames::Read(int frame, std::uint8_t* buffer) {
    int bytes = 0;
    stream.ReadSample(frame, nullptr, 0, &bytes);  // before the buffer is touched
    if (bytes != sampleBytes) return FrameResult::ReadFailed;
    if (!stream.ReadSample(frame, buffer, sampleBytes, &bytes) || bytes != sampleBytes)
        return FrameResult::ReadFailed;

    if (turned) {
        std::uint8_t* top = buffer;
        std::uint8_t* bottom = buffer + (height - 1) * storedRowBytes;
        for (; top < bottom; top += storedRowBytes, bottom -= storedRowBytes)
            std::swap_ranges(top, top + storedRowBytes, bottom);
    }
    if (packedRowBytes > storedRowBytes) SpreadRows(buffer);
    return FrameResult::Ok;
}

/// Moves the rows apart, the last one first, because its new place lies behind all old ones.
void RawFrames::SpreadRows(std::uint8_t* rows) const {
    for (std::size_t y = height; y-- > 0;) {
        std::uint8_t* row = rows + y * packedRowBytes;
        std::memmove(row, rows + y * storedRowBytes, storedRowBytes);
        std::memset(row + storedRowBytes, 0, packedRowBytes - storedRowBytes);
    }
}
