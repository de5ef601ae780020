#include "app/shell/run_feed.h"

#include <utility>

void RunFeed::Add(RunEvent event) {
    const std::lock_guard lock(mutex);
    const bool replaces = event.kind == RunEvent::Kind::Position && !events.empty() &&
                          events.back().kind == RunEvent::Kind::Position;
    if (replaces)
        events.back() = std::move(event);
    else
        events.push_back(std::move(event));
}

std::vector<RunEvent> RunFeed::Take() {
    const std::lock_guard lock(mutex);
    return std::exchange(events, {});
}
