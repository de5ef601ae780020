#include "video/avi/opendml_raw_stream.h"

#include <algorithm>
#include <limits>

#include "platform/vfw/stream_info.h"
#include "video/frame_bytes.h"

bool rkOpenDMLRawStream::Open(const std::wstring& fileName, int index, std::uint64_t base) {
    if (!file.Open(fileName)) return false;
    fileSize = file.Size();
    streamIndex = index;
    baseOffset = base;
    return true;
}

bool rkOpenDMLRawStream::ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) {
    *actualBytes = 0;
    const std::int64_t i = std::int64_t{sample} - GetStart();
    if (i < 0 || i >= GetLength()) return false;

    // A size is told only as far as the file goes, so that nobody makes room for a claim.
    const AviIndexEntry& entry = entries[static_cast<std::size_t>(i)];
    const std::uint64_t position = baseOffset + entry.offset + kChunkHeaderBytes;
    const std::uint64_t available = fileSize - std::min(position, fileSize);
    const std::uint64_t bytes = std::min<std::uint64_t>(entry.size, available);
    if (bytes > std::numeric_limits<int>::max()) return false;
    *actualBytes = static_cast<int>(bytes);
    if (*actualBytes > bufferSize) return false;

    *actualBytes = static_cast<int>(ReadFrameBytes(file, position, buffer, bytes));
    return static_cast<std::uint32_t>(*actualBytes) == entry.size;
}

bool rkOpenDMLRawStream::GetStreamInfo(AVISTREAMINFOW* info) {
    info->fccType = header.type;
    info->fccHandler = header.handler;
    info->dwFlags = header.flags;
    info->wPriority = header.priority;
    info->wLanguage = header.language;
    info->dwScale = header.scale;
    info->dwRate = header.rate;
    info->dwStart = header.start;
    info->dwLength = header.length;
    info->dwInitialFrames = header.initialFrames;
    info->dwSuggestedBufferSize = header.suggestedBufferSize;
    info->dwQuality = header.quality;
    info->dwSampleSize = header.sampleSize;
    info->rcFrame = {header.left, header.top, header.right, header.bottom};
    return true;
}

bool rkOpenDMLRawStream::IsKeyFrame(int sample) {
    return sample >= 0 && sample < GetLength() &&
           (entries[static_cast<std::size_t>(sample)].flags & AVIIF_KEYFRAME) != 0;
}

bool rkOpenDMLRawStream::GetFormat(std::uint8_t* buffer, int size) {
    if (format.empty() || size < GetFormatSize()) return false;
    std::copy(format.begin(), format.end(), buffer);
    return true;
}
