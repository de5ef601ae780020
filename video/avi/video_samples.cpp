#include "video/avi/video_samples.h"

#include <algorithm>
#include <new>

VideoSamples::VideoSamples(rkIRawDataStream& videoStream, bool keysCountFromZero)
    : stream(videoStream),
      first(stream.GetStart()),
      last(stream.GetEnd()),
      keyBase(keysCountFromZero ? first : 0),
      firstKey(first),
      knownStart(first),
      knownEnd(first) {
    while (firstKey <= last && !stream.IsKeyFrame(firstKey - keyBase)) ++firstKey;
    if (firstKey > last) firstKey = first;
}

bool VideoSamples::IsKey(int sample) const {
    return sample == firstKey || stream.IsKeyFrame(sample - keyBase);
}

int VideoSamples::StartFor(int sample) {
    int start = sample;
    while (start > first && !IsKey(start)) {
        if (start >= knownStart && start <= knownEnd) {
            start = knownStart;
            break;
        }
        --start;
    }
    knownEnd = start == knownStart ? std::max(knownEnd, sample) : sample;
    knownStart = start;
    return start;
}

FrameResult VideoSamples::Read(int sample, std::span<const std::uint8_t>& bytes) {
    int size = 0;
    const bool isEmpty = stream.ReadSample(sample, nullptr, 0, &size);
    bytes = {};
    if (isEmpty) return FrameResult::Ok;
    if (size <= 0) return FrameResult::ReadFailed;
    if (size > capacity) {
        capacity = 0;
        buffer.reset(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(size)]);
        if (!buffer) return FrameResult::NoMemory;
        capacity = size;
    }
    if (!stream.ReadSample(sample, buffer.get(), capacity, &size)) return FrameResult::ReadFailed;
    bytes = {buffer.get(), static_cast<std::size_t>(size)};
    return FrameResult::Ok;
}

std::span<const std::uint8_t> VideoSamples::ReadFirstFilled(int& sample) {
    std::span<const std::uint8_t> bytes;
    for (sample = firstKey; sample <= last; ++sample) {
        if (Read(sample, bytes) != FrameResult::Ok) return {};
        if (!bytes.empty()) break;
    }
    return bytes;
}
