#include "platform/media/complaints.h"

#include <mutex>
#include <set>

namespace {

/// All that listen. What others keep in their contexts' field isn't among them.
struct Listeners {
    std::mutex mutex;
    std::set<const void*> all;
};

Listeners& GetListeners() {
    // Kept to the end of the process: the libraries may speak until then.
    static auto& listeners = *new Listeners;
    return listeners;
}

}  // namespace

Complaints::Complaints() {
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(Note); });
    Listeners& listeners = GetListeners();
    const std::lock_guard lock(listeners.mutex);
    listeners.all.insert(this);
}

Complaints::~Complaints() {
    Listeners& listeners = GetListeners();
    const std::lock_guard lock(listeners.mutex);
    listeners.all.erase(this);
}

void Complaints::Note(void* speaker, int level, const char*, va_list) {
    if (speaker == nullptr || level > AV_LOG_ERROR) return;
    const AVClass* kind = *static_cast<const AVClass* const*>(speaker);
    void* listener = nullptr;
    if (kind == avcodec_get_class()) listener = static_cast<AVCodecContext*>(speaker)->opaque;
    if (kind == avformat_get_class()) listener = static_cast<AVFormatContext*>(speaker)->opaque;

    Listeners& listeners = GetListeners();
    const std::lock_guard lock(listeners.mutex);
    if (listeners.all.count(listener) > 0) static_cast<Complaints*>(listener)->heard = true;
}
