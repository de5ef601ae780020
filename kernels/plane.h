#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Kernels {

/// Memory for one plane, zero-filled, aligned to 64 bytes; rows lie one behind the other without a gap.
///
/// `stride` receives the bytes from row to row: `width` samples. A side below 1 counts as 0. The pages are
/// handed out by the system as they are first touched, so a plane that nobody fills costs no memory. Throws
/// std::bad_alloc. The plane belongs to the caller, who gives it back with `FreePlane`; any thread.
float* AllocPlaneFloat(int width, int height, int& stride);
std::uint8_t* AllocPlaneByte(int width, int height, int& stride);

/// The same without a shape: `bytes` zeroed bytes, aligned to 64.
void* AllocZeroed(std::size_t bytes);

/// Gives back what one of the functions above returned; null is allowed.
void FreePlane(void* plane);

struct PlaneDeleter {
    void operator()(void* plane) const { FreePlane(plane); }
};

using FloatPlane = std::unique_ptr<float[], PlaneDeleter>;
using BytePlane = std::unique_ptr<std::uint8_t[], PlaneDeleter>;

/// A plane that frees itself, for the callers that know the stride: `width` samples.
FloatPlane MakeFloatPlane(int width, int height);

}  // namespace Kernels
