#include "platform/media/complaints.h"

#include <mutex>
#include <set>
#include <string_view>

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

/// Which contexts have a listener in their field. Asked for before anything speaks: the libraries that call `Note` don't
/// bear an exception.
struct Kinds {
    const AVClass* codec = avcodec_get_class();
    const AVClass* container = avformat_get_class();
};

const Kinds& GetKinds() {
    static const Kinds kinds;
    return kinds;
}

/// A decoder that makes up what a picture lacks mentions it among its news. With several threads nothing else tells
/// it reliably: the mark on the picture comes too late for one that another thread has handed over.
bool IsOfConcealment(const char* format) {
    return std::string_view(format).starts_with("concealing ");
}

}  // namespace

Complaints::Complaints() {
    GetKinds();
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

void Complaints::Note(void* speaker, int level, const char* format, va_list) {
    const bool isComplaint = level <= AV_LOG_ERROR || (level <= AV_LOG_INFO && IsOfConcealment(format));
    if (speaker == nullptr || !isComplaint) return;
    const AVClass* kind = *static_cast<const AVClass* const*>(speaker);
    void* listener = nullptr;
    if (kind == GetKinds().codec) listener = static_cast<AVCodecContext*>(speaker)->opaque;
    if (kind == GetKinds().container) listener = static_cast<AVFormatContext*>(speaker)->opaque;

    Listeners& listeners = GetListeners();
    const std::lock_guard lock(listeners.mutex);
    if (listeners.all.count(listener) > 0) static_cast<Complaints*>(listener)->heard = true;
}
