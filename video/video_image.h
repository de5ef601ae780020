#pragma once

#include <cstddef>
#include <cstdint>

#include "kernels/plane.h"
#include "video/color_space.h"

/// One frame in any layout: the picture's samples with its rows aligned and padded for block-based code.
///
/// Geometry  a picture of w by h has rows of `Width()` and columns of `Height()` pixels, both rounded up to
///           multiples of 16 (`Y410`: the width to a multiple of 48), plus twice the border. The first
///           plane's rows are `Stride()` bytes apart. The planes of planar tags stand at multiples of stride
///           times height; see `PlaneOffset`.
/// Padding   right of the picture every row repeats its last pixel, below it the last row is repeated; a
///           chroma plane repeats its last sample and row. `Y410` and `Packed422Deep` have none written.
/// Deep      tags 17 to 28 hold the frame as in a file, packed from `Data()`: only the visible size describes
///           those bytes, see `PackedPlaneOf`.
/// Errors    std::bad_alloc when a block can't be had, std::length_error for a geometry of 2 GiB or more;
///           both leave an image that can be used again.
///
/// The image owns its block; it grows and never shrinks. Its pixels may be read by several threads and are
/// written by one.
class rkVideoImage {
public:
    rkVideoImage() = default;
    virtual ~rkVideoImage() = default;
    rkVideoImage(const rkVideoImage&) = delete;
    rkVideoImage& operator=(const rkVideoImage&) = delete;

    /// Computes the geometry of a picture of `width` by `height` (below 0 counts as 0) with a border in
    /// pixels, rounded up to a multiple of 8. Forgets the target; allocates only when the result is padded
    /// and doesn't fit the block.
    void SetGeometry(int width, int height, int colorSpace, int border);

    /// `SetGeometry`, then makes sure of a block for it. A new block is zero-filled, a block that fits keeps
    /// its bytes.
    void Create(int width, int height, int colorSpace, int border);

    /// Copies a packed frame of the visible size in and writes the padding. `packed` holds as many bytes as
    /// `PackedFrameBytes` says. It is remembered as `Target()`, never freed.
    void LoadFrame(const std::uint8_t* packed);

    /// The same for a packed frame that already lies at `Data()`, as a source reads it: moves the rows of its
    /// first planes, as many as `planeCount`, to their places and writes their padding. The others hold
    /// anything then.
    void UnpackFrame(int planeCount = 3);

    /// Makes this image the source's picture in another layout. False for a pair that there is no conversion
    /// for, a source without pixels, or the image itself; the geometry may have changed by then. `interlaced`
    /// changes nothing.
    bool Convert(const rkVideoImage& source, int colorSpace, int border, bool interlaced);

    /// Reverses the order of the visible rows of an `RGB24` image and writes the padding anew. False for
    /// other tags and without pixels.
    bool FlipVertical();

    /// Writes the visible picture as a packed frame of `PackedFrameBytes` bytes. Does nothing without pixels.
    /// Bytes of it that no sample has are set to 0: the ends of RGB rows, gaps of chroma planes at odd sizes.
    void CopyVisibleTo(std::uint8_t* packed) const;

    /// Whether there is a block that the geometry fits in.
    bool HasPixels() const { return data != nullptr && BlockBytes() <= capacity; }

    bool IsPadded() const { return padded; }
    int Width() const { return width; }                  ///< allocated pixels a row
    int Height() const { return height; }                ///< allocated rows
    int Stride() const { return stride; }                ///< bytes from row to row of the first plane
    int VisibleWidth() const { return visibleWidth; }    ///< the picture's own width
    int VisibleHeight() const { return visibleHeight; }  ///< the picture's own height
    int ColorSpace() const { return colorSpace; }
    int Border() const { return border; }      ///< pixels, a multiple of 8
    int Capacity() const { return capacity; }  ///< bytes of the block
    std::uint8_t* Data() { return data; }      ///< null before the first `Create`
    const std::uint8_t* Data() const { return data; }
    const std::uint8_t* Target() const { return target; }

    /// Bytes from `Data()` to plane 0, 1 or 2 of an 8-bit tag, in the order of the file, and the bytes from
    /// row to row of that plane.
    std::size_t PlaneOffset(int plane) const;
    int PlaneStride(int plane) const;

    /// The picture's first sample in row `y` of such a plane, behind the border; the plane's own rows count.
    const std::uint8_t* Row(int plane, int y) const { return data + RowOffset(plane, y); }
    std::uint8_t* Row(int plane, int y) { return data + RowOffset(plane, y); }

    /// Bytes of a packed frame of the visible size, as `LoadFrame` reads and `CopyVisibleTo` writes it.
    std::size_t PackedFrameBytes() const;

private:
    int BlockBytes() const;
    void Reserve();
    void CopyPicture(const rkVideoImage& source);
    void WritePadding(int planeCount = 3);
    void WritePlanePadding(int plane, int sampleBytes);
    std::size_t RowOffset(int plane, int y) const;

    bool padded = false;
    int width = 0;
    int height = 0;
    int stride = 0;
    int visibleWidth = 0;
    int visibleHeight = 0;
    int colorSpace = RGB24;
    int border = 0;
    int capacity = 0;
    Kernels::BytePlane buffer;
    std::uint8_t* data = nullptr;
    const std::uint8_t* target = nullptr;
};
