#include "platform/media/complaints.h"

#include <mutex>
#include <set>

namespace {

void Install(void (*callback)(void*, int, const char*, va_list)) {
    static std::once_flag once;
    std::call_once(once, [callback] { av_log_set_callback(callback); });
}

/// The objects that listen. Contexts of other code have something else in the field that leads to them.
struct Listeners {
    std::mutex lock;
    std::set<const void*> objects;
};

Listeners& AllListeners() {
    static Listeners listeners;
    return listeners;
}

}  // namespace

Complaints::Complaints() {
    const std::lock_guard guard(AllListeners().lock);
    AllListeners().objects.insert(this);
}

Complaints::~Complaints() {
    const std::lock_guard guard(AllListeners().lock);
    AllListeners().objects.erase(this);
}

void Complaints::ListenTo(AVFormatContext& context) {
    Install(Note);
    context.opaque = this;
}

void Complaints::ListenTo(AVCodecContext& context) {
    Install(Note);
    context.opaque = this;
}

void Complaints::Note(void* speaker, int level, const char*, va_list) {
    if (speaker == nullptr || level > AV_LOG_ERROR) return;
    const AVClass* kind = *static_cast<const AVClass* const*>(speaker);
    void* listener = nullptr;
    if (kind == avcodec_get_class()) listener = static_cast<AVCodecContext*>(speaker)->opaque;
    if (kind == avformat_get_class()) listener = static_cast<AVFormatContext*>(speaker)->opaque;
    const std::lock_guard guard(AllListeners().lock);
    if (AllListeners().objects.contains(listener)) static_cast<Complaints*>(listener)->heard = true;
}
