#pragma once

#include <cstddef>

#include "gpu/device.h"

// What a metric owns on the device and beside it: made whole or not at all, given back when it goes. None of
// it outlives the `CheckedGpu` that it is made with. Messages of a failure name the line that asked for it.

namespace Gpu {

class NotCopied {
public:
    NotCopied() = default;
    NotCopied(const NotCopied&) = delete;
    NotCopied& operator=(const NotCopied&) = delete;
};

/// `count` elements of device memory, uninitialised; none at all for 0.
template <class Element>
class DeviceBuffer : NotCopied {
public:
    DeviceBuffer(const CheckedGpu& checkedGpu, std::size_t count, int line = __builtin_LINE())
        : gpu(checkedGpu) {
        void* made = nullptr;
        if (count > 0) gpu.Check(gpu->Malloc(made, count * sizeof(Element)), line);
        elements = static_cast<Element*>(made);
    }
    ~DeviceBuffer() {
        if (elements != nullptr) gpu.Check(gpu->Free(elements));
    }

    Element* Get() const { return elements; }

private:
    const CheckedGpu& gpu;
    Element* elements = nullptr;
};

/// Who reads a block of pinned memory: only the device, or the host too.
enum class PinnedFor { Upload, Results };

/// `count` floats of host memory that the device reaches directly, uninitialised.
class PinnedBlock : NotCopied {
public:
    PinnedBlock(const CheckedGpu& gpu, std::size_t count, PinnedFor use, int line = __builtin_LINE());
    ~PinnedBlock();

    float* Get() const { return floats; }

private:
    const CheckedGpu& gpu;
    float* floats = nullptr;
};

/// A picture of `width` by `height` elements of `channels` floats, and the texture that reads it.
class TextureArray : NotCopied {
public:
    TextureArray(const CheckedGpu& gpu, int channels, int width, int height, TextureFilter filter,
                 int line = __builtin_LINE());
    ~TextureArray();

    /// Fills `columns` by `rows` elements at the top left, from rows `rowStep` elements apart on either side.
    void CopyFrom(const void* elements, int rowStep, int columns, int rows, StreamHandle stream,
                  int line = __builtin_LINE());

    Gpu::Texture Texture() const { return texture; }

private:
    const CheckedGpu& gpu;
    std::size_t elementBytes;
    ArrayHandle array = nullptr;
    Gpu::Texture texture;
};

/// The texture over a float buffer, which outlives it; see `GpuRuntime::CreateBufferTexture`.
class BufferTexture : NotCopied {
public:
    BufferTexture(const CheckedGpu& gpu, const float* buffer, int width, int height, int rowStep,
                  int line = __builtin_LINE());
    ~BufferTexture();

    Gpu::Texture Texture() const { return texture; }

private:
    const CheckedGpu& gpu;
    Gpu::Texture texture;
};

class Stream : NotCopied {
public:
    explicit Stream(const CheckedGpu& gpu, int line = __builtin_LINE());
    ~Stream();

    StreamHandle Get() const { return stream; }

private:
    const CheckedGpu& gpu;
    StreamHandle stream = nullptr;
};

}  // namespace Gpu
