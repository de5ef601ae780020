#pragma once

#include <omp.h>

#include <cstdint>

/// Teams have this many threads for as long as it lives, then as many as before.
class TeamOf {
public:
    explicit TeamOf(int threads) : before(omp_get_max_threads()) { omp_set_num_threads(threads); }
    ~TeamOf() { omp_set_num_threads(before); }
    TeamOf(const TeamOf&) = delete;
    TeamOf& operator=(const TeamOf&) = delete;

private:
    int before;
};

/// Calls use(first, end) on a team, each thread for its share of `count` things.
template <class Use>
void ShareOut(std::int64_t count, const Use& use) {
#pragma omp parallel
    {
        const std::int64_t thread = omp_get_thread_num();
        const std::int64_t team = omp_get_num_threads();
        use(count * thread / team, count * (thread + 1) / team);
    }
}
