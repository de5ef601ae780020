#include "gpu/runtime.h"

namespace Gpu {

GpuRuntime* DeviceRuntime() {
    return nullptr;
}

}  // namespace Gpu
