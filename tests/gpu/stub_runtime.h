#pragma once

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "gpu/host_runtime.h"

namespace Gpu {

/// The host as a machine with devices of the given numbers of multiprocessors; its memory is garbage at
/// first. One call can be made to fail, and so does one from a thread whose current device isn't the chosen
/// one.
class StubRuntime : public HostRuntime {
public:
    static constexpr Status kFailure = 2;

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
    Status Malloc(void*& buffer, std::size_t bytes) override {
        const Status status = OnDevice("Malloc", [&] { return HostRuntime::Malloc(buffer, bytes); });
        if (status == kSuccess) std::memset(buffer, 0xFF, bytes);  // not a number
        return status;
    }
    Status Free(void* buffer) override {
        return OnDevice("Free", [&] { return HostRuntime::Free(buffer); });
    }
    Status HostAlloc(void*& block, std::size_t bytes, bool writeCombined) override {
        return OnDevice("HostAlloc", [&] { return HostRuntime::HostAlloc(block, bytes, writeCombined); });
    }
    Status FreeHost(void* block) override {
        return OnDevice("FreeHost", [&] { return HostRuntime::FreeHost(block); });
    }
    Status MallocArray(ArrayHandle& array, int channels, int width, int height) override {
        return OnDevice("MallocArray",
                        [&] { return HostRuntime::MallocArray(array, channels, width, height); });
    }
    Status FreeArray(ArrayHandle array) override {
        return OnDevice("FreeArray", [&] { return HostRuntime::FreeArray(array); });
    }
    Status CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) override {
        return OnDevice("CreateTexture", [&] { return HostRuntime::CreateTexture(texture, array, filter); });
    }
    Status CreateBufferTexture(Texture& texture, const float* buffer, int width, int height,
                               std::size_t pitchBytes) override {
        return OnDevice("CreateBufferTexture", [&] {
            return HostRuntime::CreateBufferTexture(texture, buffer, width, height, pitchBytes);
        });
    }
    Status DestroyTexture(Texture texture) override {
        return OnDevice("DestroyTexture", [&] { return HostRuntime::DestroyTexture(texture); });
    }
    Status Memcpy(void* to, const void* from, std::size_t bytes) override {
        return OnDevice("Memcpy", [&] { return HostRuntime::Memcpy(to, from, bytes); });
    }
    Status MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle stream) override {
        return OnDevice("MemcpyAsync", [&] { return HostRuntime::MemcpyAsync(to, from, bytes, stream); });
    }
    Status Memcpy2D(void* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
                    std::size_t widthBytes, int height) override {
        return OnDevice("Memcpy2D", [&] {
            return HostRuntime::Memcpy2D(to, toPitchBytes, from, fromPitchBytes, widthBytes, height);
        });
    }
    Status Memcpy2DToArrayAsync(ArrayHandle array, const void* from, std::size_t fromPitchBytes,
                                std::size_t widthBytes, int height, StreamHandle stream) override {
        return OnDevice("Memcpy2DToArrayAsync", [&] {
            return HostRuntime::Memcpy2DToArrayAsync(array, from, fromPitchBytes, widthBytes, height, stream);
        });
    }
    Status StreamCreate(StreamHandle& stream) override {
        return OnDevice("StreamCreate", [&] { return HostRuntime::StreamCreate(stream); });
    }
    Status StreamDestroy(StreamHandle stream) override {
        return OnDevice("StreamDestroy", [&] { return HostRuntime::StreamDestroy(stream); });
    }
    Status StreamSynchronize(StreamHandle stream) override {
        return OnDevice("StreamSynchronize", [&] { return HostRuntime::StreamSynchronize(stream); });
    }
    Status Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle stream) override {
        return OnDevice("Launch", [&] { return HostRuntime::Launch(kernel, shape, stream); });
    }
    Status LaunchReduction(const Reduction& reduction, StreamHandle stream) override {
        return OnDevice("LaunchReduction", [&] { return HostRuntime::LaunchReduction(reduction, stream); });
    }

    std::size_t failingCall = std::numeric_limits<std::size_t>::max();
    std::string failingName;
    std::vector<std::string> calls;
    int chosen = 0;

private:
    Status Turn(const char* name) {
        calls.push_back(name);
        return calls.size() - 1 == failingCall || name == failingName ? kFailure : kSuccess;
    }

    template <class Call>
    Status OnDevice(const char* name, const Call& call) {
        const Status status = Turn(name);
        return status == kSuccess && current == chosen ? call() : kFailure;
    }

    std::vector<int> multiProcessors;
    static inline thread_local int current = 0;
};

}  // namespace Gpu
