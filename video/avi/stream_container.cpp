#include "video/avi/stream_container.h"

#include "platform/vfw/bitmap_format.h"

rkIRawDataStream* rkStreamContainer::GetStream(int n, StreamKind kind) const {
    for (const auto& stream : streams) {
        const bool matches =
            stream && (kind == Video ? stream->IsVideo() : kind == Audio && stream->IsAudio());
        if (matches && n-- == 0) return stream.get();
    }
    return nullptr;
}

rkStreamContainer::StreamKind rkStreamContainer::KindOf(std::uint32_t type) {
    if (type == FourCC('v', 'i', 'd', 's')) return Video;
    return type == FourCC('a', 'u', 'd', 's') ? Audio : Other;
}
