#include "video/frame_bytes.h"

#include <atomic>

#include "kernels/bands.h"
#include "platform/file.h"

namespace {
/// A frame of 352 by 288 is read sooner than a thread is woken, and by one also if the machine is busy.
constexpr std::int64_t kBytesPerThread = 2 * Kernels::kLightPixelsPerThread;
}  // namespace

std::size_t ReadFrameBytes(const ReadOnlyFile& file, std::uint64_t offset, std::uint8_t* buffer,
                           std::size_t bytes) {
    std::atomic<std::size_t> whole = bytes;  // the bytes before the first gap
    const auto readPart = [&](const Kernels::Band& part) {
        const auto first = static_cast<std::size_t>(part.first);
        const auto end = static_cast<std::size_t>(part.end);
        const std::size_t found = first + file.ReadAt(offset + first, buffer + first, end - first);
        std::size_t known = whole;
        while (found < end && found < known && !whole.compare_exchange_weak(known, found)) {
        }
    };
    Kernels::ForEachBand(1, static_cast<int>(bytes), readPart, kBytesPerThread);
    return whole;
}
