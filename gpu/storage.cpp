#include "gpu/storage.h"

namespace Gpu {

PinnedBlock::PinnedBlock(const CheckedGpu& checkedGpu, std::size_t count, PinnedFor use, int line)
    : gpu(checkedGpu) {
    void* made = nullptr;
    gpu.Check(gpu->HostAlloc(made, count * sizeof(float), use == PinnedFor::Upload), line);
    floats = static_cast<float*>(made);
}

PinnedBlock::~PinnedBlock() {
    gpu.Check(gpu->FreeHost(floats));
}

TextureArray::TextureArray(const CheckedGpu& checkedGpu, int channels, int width, int height,
                           TextureFilter filter, int line)
    : gpu(checkedGpu), elementBytes(static_cast<std::size_t>(channels) * sizeof(float)) {
    gpu.Check(gpu->MallocArray(array, channels, width, height), line);
    gpu.Check(gpu->CreateTexture(texture, array, filter), line);
}

TextureArray::~TextureArray() {
    gpu.Check(gpu->DestroyTexture(texture));
    gpu.Check(gpu->FreeArray(array));
}

void TextureArray::CopyFrom(const void* elements, int rowStep, int columns, int rows, StreamHandle stream,
                            int line) {
    const auto bytes = [this](int count) { return static_cast<std::size_t>(count) * elementBytes; };
    gpu.Check(gpu->Memcpy2DToArrayAsync(array, elements, bytes(rowStep), bytes(columns), rows, stream), line);
}

BufferTexture::BufferTexture(const CheckedGpu& checkedGpu, const float* buffer, int width, int height,
                             int rowStep, int line)
    : gpu(checkedGpu) {
    const std::size_t pitchBytes = static_cast<std::size_t>(rowStep) * sizeof(float);
    gpu.Check(gpu->CreateBufferTexture(texture, buffer, width, height, pitchBytes), line);
}

BufferTexture::~BufferTexture() {
    gpu.Check(gpu->DestroyTexture(texture));
}

Stream::Stream(const CheckedGpu& checkedGpu, int line) : gpu(checkedGpu) {
    gpu.Check(gpu->StreamCreate(stream), line);
}

Stream::~Stream() {
    gpu.Check(gpu->StreamDestroy(stream));
}

}  // namespace Gpu
