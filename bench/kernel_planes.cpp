#include "bench/kernels_bench.h"
#include "bench/noise.h"
#include "kernels/border.h"
#include "kernels/flat_ssim.h"
#include "kernels/flat_walk.h"
#include "kernels/gauss.h"
#include "kernels/gauss_ssim.h"
#include "kernels/ordered_class_sums.h"
#include "kernels/sobel.h"

#include <algorithm>
#include <random>

namespace {

using namespace Kernels;

BytePlane MakeBytes(std::size_t bytes) {
    return BytePlane(static_cast<std::uint8_t*>(AllocZeroed(bytes)));
}

// Noise between 0 and `greatest` on `steps` steps.
void Fill(FloatPlane& plane, std::size_t pixels, unsigned seed, float greatest, int steps = 1 << 24) {
    std::mt19937 random(seed);
    const float step = greatest / static_cast<float>(steps - 1);
    std::generate_n(plane.get(), pixels,
                    [&] { return step * static_cast<float>(random() % static_cast<unsigned>(steps)); });
}

// Areas of one class, as pictures have them.
void FillClasses(std::uint8_t* classes, std::size_t pixels) {
    std::mt19937 random(7);
    for (std::size_t i = 0; i < pixels; ++i)
        classes[i] = static_cast<std::uint8_t>(i % 40 == 0 ? random() % kSumClasses : classes[i - 1]);
}

}  // namespace

KernelPlanes::KernelPlanes(int planeWidth, int planeHeight)
    : width(planeWidth),
      height(planeHeight),
      stride(width * static_cast<int>(sizeof(float))),
      marginStride(width + 2 * kMargin),
      marginHeight(height + 2 * kMargin),
      inside(std::ptrdiff_t{kMargin} * (marginStride + 1)),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    for (FloatPlane* plane : {&first, &second, &samples, &deepSamples, &squares[0], &squares[1], &squares[2],
                              &similarities, &ones, &results[0], &results[1], &results[2]})
        *plane = MakeFloatPlane(width, height);
    Fill(first, pixels, 1, 255);
    Fill(second, pixels, 2, 255);
    Fill(samples, pixels, 3, 255, 256);
    Fill(deepSamples, pixels, 4, 255.75f, 1024);
    for (unsigned i = 0; i < 3; ++i) Fill(squares[i], pixels, 5 + i, 65025);
    Fill(similarities, pixels, 8, 1);
    std::fill_n(ones.get(), pixels, 1.0f);

    for (BytePlane& plane : bytes) plane = MakeBytes(pixels);
    for (BytePlane& plane : words) plane = MakeBytes(2 * pixels);
    for (unsigned i = 0; i < 2; ++i) {
        FillWithNoise(bytes[i].get(), pixels, 1 + i);
        FillWithNoise(reinterpret_cast<std::uint16_t*>(words[i].get()), pixels, 3 + i, 10);
    }
    units = MakeBytes(4 * pixels);
    FillWithNoise(units.get(), 4 * pixels, 5);
    classes = MakeBytes(pixels);
    FillClasses(classes.get(), pixels);
    picture = MakeBytes(3 * pixels);

    const auto pixelsWithMargins =
        static_cast<std::size_t>(marginStride) * static_cast<std::size_t>(marginHeight);
    for (BytePlane* plane : {&withMargins, &marginResults[0], &marginResults[1], &marginResults[2]})
        *plane = MakeBytes(pixelsWithMargins);
    CopyReplicateBorder(bytes[0].get(), width, width, height, withMargins.get(), marginStride, marginStride,
                        marginHeight, kMargin, kMargin);
    floatsWithMargins = MakeBytes(pixelsWithMargins * sizeof(float));

    scratch = MakeBytes(std::max({GetGaussScratchSize(width, height, kGaussWindow),
                                  GetGaussSSIMScratchSize(width, height), GetFlatSSIMScratchSize(width),
                                  FlatWalk::MemoryBytes(width), GetSobelScratchSize(width, height)}));
}
