#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// Byte geometry of a frame in a headerless file. Rows and planes follow each other without padding.

/// A whole frame's bytes divided by its height, in integer arithmetic; 0 for a tag that no raw file has, or
/// when the result doesn't fit an int.
int RawLineBytes(int colorSpace, int width);

/// Bytes of one frame: `RawLineBytes` times height; 0 for a tag without raw files, for a side below 1 and for
/// a frame of more than 2^31 - 1 bytes.
int RawFrameBytes(int colorSpace, int width, int height);

/// Bytes of a packed frame, the form in which sources and images hand frames over: a raw frame, or for the
/// tags that no raw file has its equivalent in memory, where rows of `RGB24` fill up to a multiple of 4 bytes
/// and those of `RGB32` to a multiple of 8. 0 as in `RawFrameBytes`, and for `VYUY` and `YVYU`.
int PackedFrameBytes(int colorSpace, int width, int height);

/// One plane of a packed frame, in bytes. At odd sizes of subsampled layouts a frame has fewer bytes than its
/// chroma planes address: rows overlap, and what lies past the frame's last sample means that sample.
struct PackedPlane {
    std::size_t offset = 0;    ///< from the frame's first byte
    std::size_t rowStep = 0;   ///< from row to row
    std::size_t rowBytes = 0;  ///< of the samples of a row
    int rows = 0;
};

/// Plane 0, 1 or 2 in the order of the file; a plane that the tag doesn't have is empty. `width` and `height`
/// are of a frame that `PackedFrameBytes` is above 0 for.
PackedPlane PackedPlaneOf(int colorSpace, int width, int height, int plane);

/// How many of the `rowBytes` bytes from `offset` on lie inside a frame of `frameBytes`.
inline std::size_t BytesInside(std::size_t offset, std::size_t rowBytes, std::size_t frameBytes) {
    return offset < frameBytes ? std::min(rowBytes, frameBytes - offset) : 0;
}
