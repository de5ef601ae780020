#pragma once

#include "gpu/runtime.h"

namespace Gpu {

/// The device that the GPU metrics of a process run on.
struct GpuDevice {
    GpuRuntime* runtime = nullptr;
    int index = 0;
};

/// Chooses the device with the most multiprocessors, the first among equals. The answer is the number of
/// devices: 0 without any or without a runtime, -1 when they can't be counted. `device` is written for an
/// answer above 0. Nothing is begun on a device: that takes a card some tenths of a second and memory.
int SelectGpuDevice(GpuRuntime* runtime, GpuDevice& device);

/// Whether the device takes work and the program has kernels for it. Makes it the calling thread's.
bool IsUsable(const GpuDevice& device);

/// A device as one metric uses it: a call that fails ends the process.
class CheckedGpu {
public:
    /// `sourceName`: what messages name as the source, static storage.
    CheckedGpu(const GpuDevice& gpuDevice, const char* sourceName) : device(gpuDevice), source(sourceName) {}

    GpuRuntime* operator->() const { return device.runtime; }

    /// Returns for a success. Anything else is told on standard error with the source and the line of the
    /// caller, and ends the process with status -1 at once: nothing more is written to any file.
    void Check(Status status, int line = __builtin_LINE()) const { Check(status, "cudaSafeCall", line); }
    /// The same for the copy of a sum.
    void CheckNoSync(Status status, int line = __builtin_LINE()) const {
        Check(status, "cudaSafeCallNoSync", line);
    }

    /// Makes the device that of the calling thread. Every thread that works with it does this first:
    /// threads begin with device 0.
    void Use(int line = __builtin_LINE()) const { Check(device.runtime->SetDevice(device.index), line); }

private:
    void Check(Status status, const char* checkName, int line) const;

    GpuDevice device;
    const char* source;
};

}  // namespace Gpu
