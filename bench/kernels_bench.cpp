/// Every kernel, and the vector code that belongs to one metric, on planes of each size, with 1 and 2 threads.
/// What takes a line at a time is called for every row of the plane.

#include "bench/kernels_bench.h"

#include "bench/kept_for.h"
#include "bench/register.h"
#include "bench/scene.h"

int main(int argc, char** argv) {
    for (const auto& [width, height] : kSizes) {
        for (const auto& kernels : {ArithmeticKernels(), ColorKernels(), FilterKernels(), SimilarityKernels(),
                                    MotionKernels(), MetricKernels()}) {
            for (const KernelCase& kernel : kernels) {
                RegisterOnThreads(
                    "kernels/" + std::string(kernel.name) + "/" + SizeName(width, height),
                    [&kernel, width = width, height = height](benchmark::State& state) {
                        const auto& planes = KeptFor<KernelPlanes>(width, height);
                        const auto pixels = static_cast<double>(planes.pixels);
                        Repeat(state, {kernel.bytes * pixels, kernel.operations * pixels},
                               [&] { kernel.run(planes); });
                    },
                    kernel.isForTeams);
            }
        }
    }
    return RunRegistered(argc, argv);
}
