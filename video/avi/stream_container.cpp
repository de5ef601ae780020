#include "video/avi/stream_container.h"

#include "platform/vfw/stream_info.h"

rkIRawDataStream* rkStreamContainer::GetStream(int n, StreamKind kind) const {
    for (const auto& stream : streams) {
        const bool matches =
            stream && (kind == Video ? stream->IsVideo() : kind == Audio && stream->IsAudio());
        if (matches && n-- == 0) return stream.get();
    }
    return nullptr;
}

rkStreamContainer::StreamKind rkStreamContainer::KindOf(std::uint32_t type) {
    if (type == kFccVideo) return Video;
    return type == kFccAudio ? Audio : Other;
}
