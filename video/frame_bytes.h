#pragma once

#include <cstddef>
#include <cstdint>

class ReadOnlyFile;

/// Reads up to `bytes` bytes of a frame from `offset` on, as many as there are; how many that was. Behind them
/// anything may be left in the buffer. Frames of some size are read by a team of threads, each its part of the
/// file: to copy a frame out of the system's memory takes as long as a light metric takes with it.
std::size_t ReadFrameBytes(const ReadOnlyFile& file, std::uint64_t offset, std::uint8_t* buffer,
                           std::size_t bytes);
