#include "video/video_image.h"

#include "video/convert.h"
#include "video/raw_layout.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace {

constexpr int kAlignment = 16;      // pixels
constexpr int kBorderStep = 8;      // pixels
constexpr int kY410Alignment = 48;  // pixels: 8 blocks of 6

std::int64_t RoundUp(std::int64_t value, std::int64_t step) {
    return (value + step - 1) / step * step;
}

bool IsDeepPlanar(int colorSpace) {
    return rkIsDeepYuv(colorSpace) || rkIsDeepRgb(colorSpace);
}

// Bytes from pixel to pixel in the first plane, by which the stride is computed.
int FirstPlaneBytes(int colorSpace) {
    return IsDeepPlanar(colorSpace) ? 1 : rkPlaneShapeOf(colorSpace).sampleBytes;
}

// Bytes an allocated pixel takes in the block: the budget, or the stride's share where that is more.
int BlockBytesPerPixel(int colorSpace) {
    return std::max(rkPixelUnit(colorSpace), FirstPlaneBytes(colorSpace));
}

}  // namespace

void rkVideoImage::SetGeometry(int pictureWidth, int pictureHeight, int newColorSpace, int newBorder) {
    const std::int64_t w = std::max(pictureWidth, 0);
    const std::int64_t h = std::max(pictureHeight, 0);
    const std::int64_t b = RoundUp(std::max(newBorder, 0), kBorderStep);
    const std::int64_t allocatedWidth = newColorSpace == Y410
                                            ? RoundUp(w, kY410Alignment) + RoundUp(2 * b, kY410Alignment)
                                            : RoundUp(w, kAlignment) + 2 * b;
    const std::int64_t allocatedHeight = RoundUp(h, kAlignment) + 2 * b;
    const std::int64_t rowBytes = allocatedWidth * BlockBytesPerPixel(newColorSpace);
    constexpr std::int64_t kMax = std::numeric_limits<int>::max();
    // The sides first: their product must not pass 64 bits before it is looked at.
    if (rowBytes > kMax || allocatedHeight > kMax || rowBytes * allocatedHeight > kMax) {
        throw std::length_error("video frame of 2 GiB or more");
    }

    width = static_cast<int>(allocatedWidth);
    height = static_cast<int>(allocatedHeight);
    stride = width * FirstPlaneBytes(newColorSpace);
    visibleWidth = static_cast<int>(w);
    visibleHeight = static_cast<int>(h);
    colorSpace = newColorSpace;
    border = static_cast<int>(b);
    padded = visibleWidth != width || visibleHeight != height || border != 0;
    target = nullptr;
    if (padded) Reserve();
}

void rkVideoImage::Create(int pictureWidth, int pictureHeight, int newColorSpace, int newBorder) {
    SetGeometry(pictureWidth, pictureHeight, newColorSpace, newBorder);
    Reserve();
}

int rkVideoImage::BlockBytes() const {
    return width * height * BlockBytesPerPixel(colorSpace);
}

void rkVideoImage::Reserve() {
    const int need = BlockBytes();
    if (need <= capacity) return;
    data = nullptr;
    capacity = 0;
    buffer.reset();  // before the new block is asked for, so that the two never stand side by side
    buffer.reset(static_cast<std::uint8_t*>(Kernels::AllocZeroed(static_cast<std::size_t>(need))));
    data = buffer.get();
    capacity = need;
}

std::size_t rkVideoImage::PackedFrameBytes() const {
    return static_cast<std::size_t>(::PackedFrameBytes(colorSpace, visibleWidth, visibleHeight));
}

std::size_t rkVideoImage::PlaneOffset(int plane) const {
    if (plane == 0) return 0;
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    const std::size_t luma = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
    return luma + (plane == 2 ? luma >> (shape.shiftX + shape.shiftY) : 0);
}

int rkVideoImage::PlaneStride(int plane) const {
    return plane == 0 ? stride : stride >> rkPlaneShapeOf(colorSpace).shiftX;
}

std::size_t rkVideoImage::RowOffset(int plane, int y) const {
    rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    if (plane == 0) shape.shiftX = shape.shiftY = 0;
    const auto row = static_cast<std::size_t>((border >> shape.shiftY) + y);
    const auto column = static_cast<std::size_t>((border >> shape.shiftX) * shape.sampleBytes);
    return PlaneOffset(plane) + row * static_cast<std::size_t>(PlaneStride(plane)) + column;
}

void rkVideoImage::LoadFrame(const std::uint8_t* packed) {
    Reserve();
    const std::size_t frameBytes = PackedFrameBytes();
    if (frameBytes > 0) std::memcpy(data, packed, frameBytes);
    UnpackFrame();
    target = packed;
}

void rkVideoImage::UnpackFrame(int planeCount) {
    const std::size_t frameBytes = PackedFrameBytes();
    if (!padded || frameBytes == 0 || IsDeepPlanar(colorSpace)) return;
    // Every sample moves away from the block's start, if at all: the last row goes first.
    const std::uint8_t last = data[frameBytes - 1];
    for (int plane = std::min(planeCount, rkPlaneShapeOf(colorSpace).planes) - 1; plane >= 0; --plane) {
        const PackedPlane from = PackedPlaneOf(colorSpace, visibleWidth, visibleHeight, plane);
        for (int y = from.rows - 1; y >= 0; --y) {
            const std::size_t offset = from.offset + static_cast<std::size_t>(y) * from.rowStep;
            const std::size_t inside = BytesInside(offset, from.rowBytes, frameBytes);
            std::uint8_t* row = Row(plane, y);
            if (row == data + offset && inside == from.rowBytes) break;  // so are all rows above
            std::memmove(row, data + std::min(offset, frameBytes), inside);
            std::memset(row + inside, last, from.rowBytes - inside);
        }
    }
    WritePadding(planeCount);
}

void rkVideoImage::CopyVisibleTo(std::uint8_t* packed) const {
    const std::size_t frameBytes = PackedFrameBytes();
    if (!HasPixels() || frameBytes == 0) return;
    if (IsDeepPlanar(colorSpace)) {
        std::memcpy(packed, data, frameBytes);
        return;
    }
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    for (int plane = 0; plane < shape.planes; ++plane) {
        const PackedPlane to = PackedPlaneOf(colorSpace, visibleWidth, visibleHeight, plane);
        // Rows that overlap don't cover their part of the frame.
        if (plane == 1 && to.rowStep < to.rowBytes)
            std::memset(packed + to.offset, 0, frameBytes - to.offset);
        std::size_t offset = to.offset;
        for (int y = 0; y < to.rows; ++y, offset += to.rowStep) {
            const std::size_t inside = BytesInside(offset, to.rowBytes, frameBytes);
            std::memcpy(packed + std::min(offset, frameBytes), Row(plane, y), inside);
            if (plane == 0) std::memset(packed + offset + to.rowBytes, 0, to.rowStep - to.rowBytes);
        }
    }
}

void rkVideoImage::CopyPicture(const rkVideoImage& source) {
    if (IsDeepPlanar(colorSpace)) {
        std::memcpy(data, source.data, PackedFrameBytes());
        return;
    }
    for (int plane = 0; plane < rkPlaneShapeOf(colorSpace).planes; ++plane) {
        const PackedPlane extent = PackedPlaneOf(colorSpace, visibleWidth, visibleHeight, plane);
        for (int y = 0; y < extent.rows; ++y) {
            std::memcpy(Row(plane, y), source.Row(plane, y), extent.rowBytes);
        }
    }
}

bool rkVideoImage::Convert(const rkVideoImage& source, int newColorSpace, int newBorder,
                           bool /*interlaced*/) {
    if (!source.HasPixels() || source.data == data) return false;
    const bool sameShape = data != nullptr && newColorSpace == colorSpace &&
                           source.visibleWidth == visibleWidth && source.visibleHeight == visibleHeight;
    const std::uint8_t* keptTarget = sameShape ? target : nullptr;
    Create(source.visibleWidth, source.visibleHeight, newColorSpace, newBorder);
    target = keptTarget;

    const rkConversion convert = rkFindConversion(source.colorSpace, newColorSpace);
    const bool isCopy = newColorSpace == source.colorSpace && rkPlaneShapeOf(newColorSpace).planes > 0;
    if (!convert && !isCopy) return false;
    if (visibleWidth == 0 || visibleHeight == 0) return true;
    if (isCopy) {
        CopyPicture(source);
    } else {
        convert(source, *this);
    }
    WritePadding();
    return true;
}

bool rkVideoImage::FlipVertical() {
    if (colorSpace != RGB24 || !HasPixels()) return false;
    const int rowBytes = 3 * visibleWidth;
    for (int top = 0, bottom = visibleHeight - 1; top < bottom; ++top, --bottom) {
        std::swap_ranges(Row(0, top), Row(0, top) + rowBytes, Row(0, bottom));
    }
    WritePadding();
    return true;
}

void rkVideoImage::WritePadding(int planeCount) {
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    const bool hasPadding = colorSpace != Y410 && colorSpace != Packed422Deep && !IsDeepPlanar(colorSpace);
    if (!padded || !hasPadding || visibleWidth == 0 || visibleHeight == 0) return;
    for (int plane = 0; plane < std::min(planeCount, shape.planes); ++plane)
        WritePlanePadding(plane, shape.sampleBytes);
}

void rkVideoImage::WritePlanePadding(int plane, int sampleBytes) {
    const PackedPlane extent = PackedPlaneOf(colorSpace, visibleWidth, visibleHeight, plane);
    const auto step = static_cast<std::size_t>(PlaneStride(plane));
    const std::size_t roomBytes =
        step - (RowOffset(plane, 0) - PlaneOffset(plane)) % step;  // to the row's end
    const bool isRowFull = extent.rowBytes == roomBytes;
    for (int y = 0; y < extent.rows && !isRowFull; ++y) {
        std::uint8_t* row = Row(plane, y);
        if (sampleBytes == 1) {
            std::memset(row + extent.rowBytes, row[extent.rowBytes - 1], roomBytes - extent.rowBytes);
        } else {
            for (std::size_t i = extent.rowBytes; i < roomBytes; ++i)
                row[i] = row[i - static_cast<std::size_t>(sampleBytes)];
        }
    }
    const std::uint8_t* last = Row(plane, extent.rows - 1);
    const int shiftY = plane == 0 ? 0 : rkPlaneShapeOf(colorSpace).shiftY;
    const int roomRows = (height - border) >> shiftY;
    for (int y = extent.rows; y < roomRows; ++y) std::memcpy(Row(plane, y), last, roomBytes);
}
