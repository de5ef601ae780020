#pragma once

#include <cstddef>
#include <cstdint>

/// What this machine allows, for the benchmarks to be held against.
namespace Limits {

/// Copies so many bytes on a team.
void CopyOnTeam(const void* source, void* target, std::size_t bytes);

/// Makes so many products of floats and as many sums, in all, on a team and in as many chains as keep its units
/// busy. Rounded down to a whole round of these.
void CalculateOnTeam(std::int64_t productsAndSums);

// What the best team of up to so many threads does in a second; measured when it is first asked for.

/// Bytes read and written in copying, of which a copy has `bytes` together: what fits into a cache goes faster.
double CopyRate(std::int64_t bytes, int threads);

/// Products and sums together.
double ArithmeticRate(int threads);

}  // namespace Limits
