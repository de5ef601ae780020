#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "kernels/bands.h"
#include "kernels/plane.h"
#include "kernels/rows.h"
#include "kernels/ssim_planes.h"

/// The pictures that the benchmarks of kernels share, rows without gaps.
struct KernelPlanes {
    KernelPlanes(int planeWidth, int planeHeight);

    static constexpr int kMargin = 48;  ///< of pictures that are searched for motion

    int width;
    int height;
    int stride;             ///< of floats
    int marginStride;       ///< of bytes with margins
    int marginHeight;       ///< their rows
    std::ptrdiff_t inside;  ///< where the picture begins behind its margins
    std::size_t pixels;

    // Floats.
    Kernels::FloatPlane first;         ///< from 0 to 255
    Kernels::FloatPlane second;        ///< the same
    Kernels::FloatPlane samples;       ///< the same, whole numbers
    Kernels::FloatPlane deepSamples;   ///< the same, quarters
    Kernels::FloatPlane squares[3];    ///< from 0 to 65025
    Kernels::FloatPlane similarities;  ///< from 0 to 1
    Kernels::FloatPlane ones;          ///< they stay ones if they are squared
    Kernels::FloatPlane results[3];

    // Bytes.
    Kernels::BytePlane bytes[2];
    Kernels::BytePlane words[2];          ///< of 10 bits
    Kernels::BytePlane units;             ///< four bytes a pixel
    Kernels::BytePlane classes;           ///< 0 to 2, in areas as pictures have them
    Kernels::BytePlane withMargins;       ///< a picture for motion
    Kernels::BytePlane marginResults[3];  ///< what is made of it
    Kernels::BytePlane floatsWithMargins;
    Kernels::BytePlane picture;  ///< three bytes a pixel
    Kernels::BytePlane scratch;  ///< as much as any kernel wants

    const float* RowOf(const Kernels::FloatPlane& plane, int y) const {
        return Kernels::Row(plane.get(), stride, y);
    }
    float* ResultRow(int y, std::size_t result = 0) const {
        return Kernels::Row(results[result].get(), stride, y);
    }
    Kernels::SSIMPlanes Pair(float* map) const {
        return {first.get(), stride, second.get(), stride, map, stride, width, height};
    }

    /// Calls useRow(y) for all rows on a team, as those do that have light work for each.
    template <class UseRow>
    void ForEachRow(const UseRow& useRow) const {
        Kernels::ForEachRow(width, height, useRow, Kernels::kLightPixelsPerThread);
    }
};

/// A kernel, with the work of a pixel, on average, and a call that goes over the whole planes. Work that no
/// number of operations stands for (look-ups, sorting, powers, choices) has 0; conversions and memory are free, a
/// Gaussian window counts with all of its products and sums.
struct KernelCase {
    const char* name;
    double bytes;
    double operations;
    void (*run)(const KernelPlanes& planes);
    bool isForTeams = true;  ///< false: it is of one thread, as its caller's other work is shared out
};

// By theme; static storage.
std::span<const KernelCase> ArithmeticKernels();
std::span<const KernelCase> ColorKernels();
std::span<const KernelCase> FilterKernels();
std::span<const KernelCase> SimilarityKernels();
std::span<const KernelCase> MotionKernels();
std::span<const KernelCase> MetricKernels();
