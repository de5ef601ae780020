#pragma once

#include <omp.h>

#include <algorithm>
#include <cstdint>

namespace Kernels {

/// Fewer pixels than this a thread are done sooner than a sleeping thread is woken, which takes tens of
/// microseconds: of operations of a nanosecond or more a pixel, and of light ones, such as a copy, a
/// conversion or a sum, of a fifth of one.
inline constexpr std::int64_t kPixelsPerThread = 16384;
inline constexpr std::int64_t kLightPixelsPerThread = 65536;

/// The rows from `first` to before `end`, the share of thread `thread` of a team.
struct Band {
    int first;
    int end;
    int thread;
};

/// The most threads that an operation on `height` rows of `width` pixels ever uses, anywhere. At least 1.
inline int MaxTeamSize(int width, int height, std::int64_t pixelsPerThread = kPixelsPerThread) {
    const std::int64_t worthwhile = std::int64_t{width} * height / pixelsPerThread;
    return static_cast<int>(std::clamp<std::int64_t>(worthwhile, 1, std::max(height, 1)));
}

/// The threads that it uses now: what the next parallel level may have. That is one inside a team that is
/// already at work, unless the program allows nested teams: the cores are used once.
inline int TeamSize(int width, int height, std::int64_t pixelsPerThread) {
    if (omp_get_active_level() >= omp_get_max_active_levels()) return 1;
    return std::min(MaxTeamSize(width, height, pixelsPerThread), omp_get_max_threads());
}

/// Calls use(Band) so that the bands together hold each of the `height` rows once, one band a thread of the
/// team. `use` must not throw.
template <class UseBand>
void ForEachBand(int width, int height, const UseBand& use, std::int64_t pixelsPerThread = kPixelsPerThread) {
    if (width <= 0 || height <= 0) return;
    const int threads = TeamSize(width, height, pixelsPerThread);
    if (threads == 1) {
        use(Band{0, height, 0});
        return;
    }
    // Always the whole team: the runtime ends the threads that a smaller one has no use for.
#pragma omp parallel
    {
        const std::int64_t thread = omp_get_thread_num();
        const std::int64_t count = std::min(threads, omp_get_num_threads());
        if (thread < count) {
            use(Band{static_cast<int>(height * thread / count),
                     static_cast<int>(height * (thread + 1) / count), static_cast<int>(thread)});
        }
    }
}

/// Calls first() and second(), side by side if the next parallel level may have two threads. Neither may
/// throw.
template <class First, class Second>
void RunBoth(const First& first, const Second& second) {
    if (omp_get_active_level() >= omp_get_max_active_levels()) {
        first();
        second();
        return;
    }
#pragma omp parallel sections
    {
#pragma omp section
        first();
#pragma omp section
        second();
    }
}

/// Calls useRow(y) for every row, on the team of `ForEachBand`.
template <class UseRow>
void ForEachRow(int width, int height, const UseRow& useRow,
                std::int64_t pixelsPerThread = kPixelsPerThread) {
    ForEachBand(
        width, height,
        [&](const Band& band) {
            for (int y = band.first; y < band.end; ++y) useRow(y);
        },
        pixelsPerThread);
}

}  // namespace Kernels
