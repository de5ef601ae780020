#pragma once

#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "gpu/host_runtime.h"

namespace Gpu {

/// The host as a machine with devices of the given numbers of multiprocessors; its memory is garbage at
/// first. One call can be made to fail, and so does one from a thread whose current device isn't the chosen
/// one.
class StubRuntime : public GpuRuntime {
public:
    using Host = HostRuntime;

    explicit StubRuntime(std::vector<int> multiProcessorCounts = {1})
        : multiProcessors(std::move(multiProcessorCounts)) {
        current = 0;
    }

    Status GetDeviceCount(int& count) override {
        count = static_cast<int>(multiProcessors.size());
        return Turn("GetDeviceCount");
    }
    Status GetMultiProcessorCount(int device, int& count) override {
        count = multiProcessors[static_cast<std::size_t>(device)];
        return Turn("GetMultiProcessorCount");
    }
    Status SetDevice(int device) override {
        chosen = current = device;
        return Turn("SetDevice");
    }
    Status LoadKernels() override { return Turn("LoadKernels"); }
    const char* GetErrorString(Status status) override { return host.GetErrorString(status); }

    Status Malloc(void*& buffer, std::size_t bytes) override {
        const Status status = On("Malloc", &Host::Malloc, buffer, bytes);
        if (status == kSuccess) std::memset(buffer, 0xFF, bytes);  // not a number
        return status;
    }
    Status Free(void* buffer) override { return On("Free", &Host::Free, buffer); }
    Status HostAlloc(void*& block, std::size_t bytes, bool writeCombined) override {
        return On("HostAlloc", &Host::HostAlloc, block, bytes, writeCombined);
    }
    Status FreeHost(void* block) override { return On("FreeHost", &Host::FreeHost, block); }
    Status MallocArray(ArrayHandle& array, int channels, int w, int h) override {
        return On("MallocArray", &Host::MallocArray, array, channels, w, h);
    }
    Status FreeArray(ArrayHandle array) override { return On("FreeArray", &Host::FreeArray, array); }
    Status CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) override {
        return On("CreateTexture", &Host::CreateTexture, texture, array, filter);
    }
    Status CreateBufferTexture(Texture& t, const float* buffer, int w, int h, std::size_t pitch) override {
        return On("CreateBufferTexture", &Host::CreateBufferTexture, t, buffer, w, h, pitch);
    }
    Status DestroyTexture(Texture t) override { return On("DestroyTexture", &Host::DestroyTexture, t); }
    Status Memcpy(void* to, const void* from, std::size_t bytes) override {
        return On("Memcpy", &Host::Memcpy, to, from, bytes);
    }
    Status MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle s) override {
        return On("MemcpyAsync", &Host::MemcpyAsync, to, from, bytes, s);
    }
    Status Memcpy2D(void* to, std::size_t toPitch, const void* from, std::size_t pitch, std::size_t w,
                    int h) override {
        return On("Memcpy2D", &Host::Memcpy2D, to, toPitch, from, pitch, w, h);
    }
    Status Memcpy2DToArrayAsync(ArrayHandle to, const void* from, std::size_t pitch, std::size_t w, int h,
                                StreamHandle s) override {
        return On("Memcpy2DToArrayAsync", &Host::Memcpy2DToArrayAsync, to, from, pitch, w, h, s);
    }
    Status StreamCreate(StreamHandle& s) override { return On("StreamCreate", &Host::StreamCreate, s); }
    Status StreamDestroy(StreamHandle s) override { return On("StreamDestroy", &Host::StreamDestroy, s); }
    Status StreamSynchronize(StreamHandle s) override {
        return On("StreamSynchronize", &Host::StreamSynchronize, s);
    }
    Status Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle s) override {
        return On("Launch", &Host::Launch, kernel, shape, s);
    }
    Status LaunchReduction(const Reduction& reduction, StreamHandle s) override {
        return On("LaunchReduction", &Host::LaunchReduction, reduction, s);
    }

    std::size_t failingCall = std::numeric_limits<std::size_t>::max();
    std::string failingName;
    std::vector<std::string> calls;
    int chosen = 0;

private:
    static constexpr Status kFailure = 2;

    Status Turn(const char* name) {
        calls.push_back(name);
        return calls.size() - 1 == failingCall || name == failingName ? kFailure : kSuccess;
    }

    template <class... Parameters, class... Arguments>
    Status On(const char* name, Status (Host::*call)(Parameters...), Arguments&&... arguments) {
        const bool isDone = Turn(name) == kSuccess && current == chosen;
        return isDone ? (host.*call)(std::forward<Arguments>(arguments)...) : kFailure;
    }

    Host host;
    std::vector<int> multiProcessors;
    static inline thread_local int current = 0;
};

}  // namespace Gpu
