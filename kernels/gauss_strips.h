#pragma once

#include "kernels/bands.h"
#include "kernels/border.h"

#include <cstddef>

namespace Kernels {

/// The filters go down the picture in strips of this many columns, so that a thread's rows stay in the level
/// 1 cache: 64 columns were as fast, 192 slower.
inline constexpr int kStripWidth = 128;

/// What a filter in strips works on besides its planes.
struct StripFilter {
    int width;
    int height;
    int kernelSize;
    float sigma;
    BorderKind border;
    float borderValue;
    void* memory;  // GaussScratch::Bytes
};

/// Where a thread keeps the rows of a strip while it filters `quantities` planes at once.
class GaussScratch {
public:
    GaussScratch(const StripFilter& filter, int quantityCount, int thread)
        : kernelSize(filter.kernelSize),
          quantities(quantityCount),
          tapRows(reinterpret_cast<const float**>(static_cast<std::byte*>(filter.memory) +
                                                  BytesOfThread(kernelSize, quantityCount) *
                                                      static_cast<std::size_t>(thread))),
          floats(reinterpret_cast<float*>(tapRows + RoundedUp(kernelSize))) {}

    /// Memory for the biggest team that filters planes of this size.
    static std::size_t Bytes(int width, int height, int kernelSize, int quantities) {
        return BytesOfThread(kernelSize, quantities) * static_cast<std::size_t>(MaxTeamSize(width, height));
    }

    float* Taps() const { return floats; }

    /// For each tap the row that it weighs.
    const float** TapRows() const { return tapRows; }

    /// LineLength pixels of a picture row: the strip with what the window sees on its sides.
    float* Line(int quantity) const {
        return floats + RoundedUp(kernelSize) + quantity * LineLength(kernelSize);
    }
    static constexpr int LineLength(int kernelSize) { return RoundedUp(kStripWidth + kernelSize - 1); }

    /// Horizontally filtered rows of all quantities, one behind the other, kStripWidth pixels each. Slots 0
    /// to kernelSize - 1 are the ring, slot kernelSize stands for the rows outside the picture.
    float* RingRows(int slot) const { return Line(quantities) + slot * quantities * kStripWidth; }

    /// The same rows filtered both ways.
    float* Filtered() const { return RingRows(kernelSize + 1); }

private:
    static constexpr int RoundedUp(int count) { return (count + 15) / 16 * 16; }  // 64 bytes

    static constexpr std::size_t BytesOfThread(int kernelSize, int quantities) {
        const int floatsOfQuantity = LineLength(kernelSize) + (kernelSize + 2) * kStripWidth;
        return static_cast<std::size_t>(RoundedUp(kernelSize)) * (sizeof(float*) + sizeof(float)) +
               static_cast<std::size_t>(quantities * floatsOfQuantity) * sizeof(float);
    }

    int kernelSize;
    int quantities;
    const float** tapRows;
    float* floats;
};

}  // namespace Kernels
