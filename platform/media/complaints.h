#pragma once

#include <atomic>

#include "platform/media/libav.h"

/// Whether a container reader or a decoder reported an error, or a decoder that it made up a part of a
/// picture. Where data are damaged, the libraries often go on with what they make up, and their message is all
/// that tells it. Takes part in the libraries' log, which stays silent.
class Complaints {
public:
    Complaints();
    ~Complaints();
    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;

    /// From now on; this object must outlive the context, whose field `opaque` it takes.
    void ListenTo(AVFormatContext& context) { context.opaque = this; }
    void ListenTo(AVCodecContext& context) { context.opaque = this; }

    bool Heard() const { return heard; }
    /// Whether there was one since the last call.
    bool Take() { return heard.exchange(false); }

private:
    static void Note(void* speaker, int level, const char* format, va_list arguments);

    std::atomic<bool> heard = false;  // set by the libraries' threads
};
