#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/file.h"

/// A way to lay a frame's samples out in a headerless file.
struct RawFormat {
    const char* name;
    bool isPlanar;  ///< 4:2:0, otherwise interleaved 4:2:2
    bool hasChroma;
    bool startsWithU;  ///< planar: U stands before V
    /// Interleaved: where Y, U, second Y and V of a pair of pixels stand in the file.
    std::array<std::size_t, 4> pair;
};

/// The format of that name, in any case; null for none: YV12, I420, Y8, UYVY, YUYV, VYUY, YVYU.
const RawFormat* FindRawFormat(const std::string& name);

/// A headerless file of 8-bit frames without gaps. Planar formats become planes Y, V, U with all chroma 128
/// where there is none, interleaved ones Y U Y V.
///
/// Sizes are even where chroma is shared by neighbours: others are refused, for readers don't agree where the
/// chroma of a last odd row or column stands. A partial last frame isn't counted.
class RawVideo {
public:
    /// Why the file can't be opened, in UTF-8; empty if it is open.
    std::string Open(const std::string& path, int width, int height, const RawFormat& rawFormat);

    int FrameCount() const { return frameCount; }
    bool ReadFrame(int frame, std::uint8_t* buffer) const;

private:
    void SortPairs(std::uint8_t* buffer) const;

    ReadOnlyFile file;
    const RawFormat* format = nullptr;
    std::size_t lumaBytes = 0;
    std::size_t fileBytes = 0;  // of a frame in the file
    int frameCount = 0;
};
