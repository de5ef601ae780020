#include "platform/loose_threads.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace {

struct Running {
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
};

Running& Threads() {
    static auto& running = *new Running;  // never destroyed: threads may be left at the end of the process
    return running;
}

void Count(int change) {
    const std::lock_guard lock(Threads().mutex);
    Threads().count += change;
}

void Run(std::function<void()>& work) {
    work();
    work = nullptr;
    std::unique_lock lock(Threads().mutex);
    --Threads().count;
    // Not before the thread's own objects are gone as well.
    std::notify_all_at_thread_exit(Threads().changed, std::move(lock));
}

}  // namespace

void StartLooseThread(std::function<void()> work) {
    Count(1);
    try {
        std::thread([work = std::move(work)]() mutable { Run(work); }).detach();
    } catch (...) {
        Count(-1);
        throw;
    }
}

bool LooseThreadsEnd(std::chrono::milliseconds patience) {
    std::unique_lock lock(Threads().mutex);
    return Threads().changed.wait_for(lock, patience, [] { return Threads().count == 0; });
}
