#include "gpu/device.h"

#include <cstdio>
#include <cstdlib>

namespace Gpu {

int SelectGpuDevice(GpuRuntime* runtime, GpuDevice& device) {
    int count = 0;
    if (runtime == nullptr) return 0;
    if (runtime->GetDeviceCount(count) != kSuccess) return -1;
    if (count <= 0) return 0;

    int chosen = 0;
    int most = 0;
    for (int index = 0; index < count; ++index) {
        int multiProcessors = 0;
        if (runtime->GetMultiProcessorCount(index, multiProcessors) != kSuccess || multiProcessors <= most)
            continue;
        chosen = index;
        most = multiProcessors;
    }
    device = {runtime, chosen};
    return count;
}

bool IsUsable(const GpuDevice& device) {
    return device.runtime->SetDevice(device.index) == kSuccess && device.runtime->LoadKernels() == kSuccess;
}

void CheckedGpu::Check(Status status, const char* checkName, int line) const {
    if (status == kSuccess) return;
    std::fprintf(stderr, "%s(%i) : %s() Runtime API error : %s.\n", source, line, checkName,
                 device.runtime->GetErrorString(status));
    // Not `exit`: other threads are at work, and what they use mustn't be torn down under them.
    std::_Exit(-1);
}

}  // namespace Gpu
