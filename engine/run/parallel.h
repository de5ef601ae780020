#pragma once

#include <omp.h>

#include <exception>

/// Runs `action` in the engine's one critical section. What it throws is thrown on behind the section, which
/// nothing may leave by an exception.
template <typename Action>
void InCriticalSection(const Action& action) {
    std::exception_ptr failure;
#pragma omp critical(engine)
    {
        try {
            action();
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

/// Calls `body(0)` to `body(count - 1)`, each once, and returns when all are done: on a team of threads with
/// a fixed division, or without `onTeam` on the calling thread alone, which leaves the threads to the loops
/// inside a body (on a team those run on one thread each). The first exception of a body is thrown on at the
/// end.
template <typename Body>
void ForEachInParallel(int count, bool onTeam, const Body& body) {
    std::exception_ptr failure;
    const auto call = [&](int i) {
        try {
            body(i);
        } catch (...) {
            InCriticalSection([&] {
                if (!failure) failure = std::current_exception();
            });
        }
    };
    if (onTeam) {
#pragma omp parallel for schedule(static)
        for (int i = 0; i < count; ++i) call(i);
    } else {
        // Not by an `if` of the loop above: it would still count as a level, and inside one the runtime starts
        // new threads for each loop instead of keeping some.
        for (int i = 0; i < count; ++i) call(i);
    }
    if (failure) std::rethrow_exception(failure);
}
