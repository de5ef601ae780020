#pragma once

#include <cstdint>
#include <string>

#include "video/avi/stream_container.h"

/// An AVI file, taken apart by its own RIFF structure: `idx1` and OpenDML indexes, files of any size.
///
/// The walk covers the first RIFF chunk; the segments behind it are reached through the index. Samples are
/// what the index lists, so a file without an index has streams of length 0. A file that contradicts itself
/// fails.
class rkAviOpenDMLParser : public rkStreamContainer {
public:
    explicit rkAviOpenDMLParser(const std::wstring& fileName);

    /// Frames of all segments as the file's headers claim; the length of a stream is what the index lists.
    std::uint32_t GetTotalFrames() const { return totalFrames; }

private:
    std::uint32_t totalFrames = 0;
};
