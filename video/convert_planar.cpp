#include "video/convert.h"
#include "video/raw_layout.h"
#include "video/video_image.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

// Planes to three full planes of bytes. A chroma row is expanded once and copied for the rows that share it.

namespace {

void CopyLuma(const rkVideoImage& source, rkVideoImage& target) {
    const auto rowBytes = static_cast<std::size_t>(source.VisibleWidth());
    for (int y = 0; y < source.VisibleHeight(); ++y)
        std::memcpy(target.Row(0, y), source.Row(0, y), rowBytes);
}

void RepeatSamples(const std::uint8_t* samples, int count, std::uint8_t* pixels) {
    for (int i = 0; i < count; ++i) pixels[2 * i] = pixels[2 * i + 1] = samples[i];
}

// Rows of a target plane, of which each `1 << shiftY` are equal; `expand(row, pixels)` writes the first of
// them.
template <typename Expand>
void FillPlane(rkVideoImage& target, int plane, int shiftY, const Expand& expand) {
    for (int y = 0; y < target.VisibleHeight(); ++y) {
        std::uint8_t* pixels = target.Row(plane, y);
        const int row = y >> shiftY;
        if (row << shiftY == y) {
            expand(row, pixels);
        } else {
            std::memcpy(pixels, target.Row(plane, y - 1), static_cast<std::size_t>(target.VisibleWidth()));
        }
    }
}

// `count` 16-bit samples to bytes, each written `repeat` times.
template <int repeat>
void NarrowSamples(const std::uint8_t* samples, int count, int shift, std::uint8_t* pixels) {
    static_assert(std::endian::native == std::endian::little, "the samples are little-endian");
    for (int i = 0; i < count; ++i) {
        std::uint16_t sample;
        std::memcpy(&sample, samples + 2 * i, sizeof sample);
        const auto byte = static_cast<std::uint8_t>(sample >> shift);
        for (int k = 0; k < repeat; ++k) pixels[repeat * i + k] = byte;
    }
}

// A chroma or luma row of a deep frame to bytes; samples that lie past the frame's end are its last one.
void NarrowRow(const std::uint8_t* frame, std::size_t frameBytes, std::size_t offset, std::size_t rowBytes,
               int shift, int shiftX, std::uint8_t* pixels) {
    const std::size_t inside = BytesInside(offset, rowBytes, frameBytes);
    const auto narrow = shiftX == 0 ? NarrowSamples<1> : NarrowSamples<2>;
    narrow(frame + std::min(offset, frameBytes), static_cast<int>(inside / 2), shift, pixels);
    if (inside == rowBytes) return;

    std::uint8_t last;
    NarrowSamples<1>(frame + frameBytes - 2, 1, shift, &last);
    std::memset(pixels + (inside / 2 << shiftX), last, (rowBytes - inside) / 2 << shiftX);
}

}  // namespace

void rkPlanarToPlanes(const rkVideoImage& source, rkVideoImage& target) {
    CopyLuma(source, target);
    const int samples = (source.VisibleWidth() + 1) / 2;
    const int shiftY = rkPlaneShapeOf(source.ColorSpace()).shiftY;
    for (int plane = 1; plane <= 2; ++plane) {
        const int targetPlane = source.ColorSpace() == YV12 ? 3 - plane : plane;  // YV12 has V first
        FillPlane(target, targetPlane, shiftY, [&](int row, std::uint8_t* pixels) {
            RepeatSamples(source.Row(plane, row), samples, pixels);
        });
    }
}

void rkDeepToPlanes(const rkVideoImage& source, rkVideoImage& target) {
    const int colorSpace = source.ColorSpace();
    const rkPlaneShape shape = rkPlaneShapeOf(colorSpace);
    const int shift = rkSampleBits(colorSpace) - 8;
    const std::uint8_t* frame = source.Data();
    const std::size_t frameBytes = source.PackedFrameBytes() / 2 * 2;  // whole samples
    for (int plane = 0; plane < 3; ++plane) {
        const PackedPlane from =
            PackedPlaneOf(colorSpace, source.VisibleWidth(), source.VisibleHeight(), plane);
        const int shiftX = plane == 0 ? 0 : shape.shiftX;
        const int shiftY = plane == 0 ? 0 : shape.shiftY;
        const int targetPlane = rkIsDeepRgb(colorSpace) ? (plane + 1) % 3 : plane;  // G, B, R to R, G, B
        FillPlane(target, targetPlane, shiftY, [&](int row, std::uint8_t* pixels) {
            const std::size_t offset = from.offset + static_cast<std::size_t>(row) * from.rowStep;
            NarrowRow(frame, frameBytes, offset, from.rowBytes, shift, shiftX, pixels);
        });
    }
}

void rkLumaToYuv(const rkVideoImage& source, rkVideoImage& target) {
    CopyLuma(source, target);
    for (int plane = 1; plane <= 2; ++plane) {
        for (int y = 0; y < target.VisibleHeight(); ++y) {
            std::memset(target.Row(plane, y), 0, static_cast<std::size_t>(target.VisibleWidth()));
        }
    }
}
