/// What stSSIM does for a frame, part by part, of each size, with 1 and 2 threads; on frames of a scene of which
/// two thirds drift. What it takes as a whole, metrics_bench tells.

#include "bench/kept_for.h"
#include "bench/register.h"
#include "bench/scene.h"
#include "kernels/plane.h"
#include "kernels/smallest.h"
#include "kernels/space_time_ssim.h"
#include "metrics/gauss_window_ssim.h"
#include "metrics/stssim_history.h"
#include "metrics/stssim_lines.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace {

using namespace Metric;

/// The metric's members, filled with a window's frames.
struct Parts {
    Parts(int pictureWidth, int pictureHeight)
        : width(pictureWidth),
          height(pictureHeight),
          first(width, height),
          second(width, height),
          lines(width, height),
          ssim(width, height, Kernels::BorderReplicate),
          map(Kernels::MakeFloatPlane(lines.AlignedWidth(), height)),
          spaceTimeScratch(static_cast<std::uint8_t*>(
              Kernels::AllocZeroed(Kernels::GetSpaceTimeScratchSize(lines.AlignedWidth(), height)))),
          poolScratch(Kernels::MakeFloatPlane(width, height)) {
        for (int i = 0; i < kFrames; ++i) {
            original.emplace_back(width, height, i, 1);
            coded.emplace_back(width, height, i, 9);
        }
        for (int i = 0; i < Kernels::kWindowFrames; ++i) {
            const std::size_t frame = Next();
            first.Push(original[frame].image.GetY());
            second.Push(coded[frame].image.GetY());
            lines.Push(original[frame].image.GetY());
            found = lines.Find();
        }
        CompareInSpace();
    }

    /// The frames go there and back, so that something moves.
    std::size_t Next() {
        constexpr int kTurn = 2 * kFrames - 2;
        const int place = shown++ % kTurn;
        return static_cast<std::size_t>(place < kFrames ? place : kTurn - place);
    }

    void Remember() { first.Push(original[Next()].image.GetY()); }
    void FindLines() {
        lines.Push(original[Next()].image.GetY());
        found = lines.Find();
    }
    void CompareOverTime() {
        Kernels::SpaceTimeSSIM({first.Layout(), first.Tiles(), second.Tiles(), first.OldestSlot()},
                               kConstants.c1, kConstants.c2, {map.get(), lines.AlignedWidth(), height, found},
                               spaceTimeScratch.get());
    }
    void CompareInSpace() {
        ssim.Map({first.MiddleFrame(), second.MiddleFrame()}, width, height, kConstants, map.get());
    }
    void Pool() {
        const int rows = height * 6 / 100;
        benchmark::DoNotOptimize(
            Kernels::MeanOfSmallest(map.get(), width * height, width * rows, poolScratch.get()));
    }

    static constexpr int kFrames = 4;
    static constexpr SSIMConstants kConstants = {6.5025, 58.5225};

    int width;
    int height;
    std::deque<SceneFrame> original, coded;
    int shown = 0;
    SequenceHistory first;
    SequenceHistory second;
    MotionLines lines;
    const Kernels::LineSet* found = nullptr;
    GaussWindowSSIM ssim;
    Kernels::FloatPlane map;
    Kernels::BytePlane spaceTimeScratch;
    Kernels::FloatPlane poolScratch;
};

/// With the work of a pixel; what lines the motion makes, and so what is calculated, the pictures decide.
struct Part {
    const char* name;
    double bytes;
    double operations;
    void (Parts::*run)();
};

constexpr Part kParts[] = {
    {"remember a frame", 4 + 4 + 1, 2, &Parts::Remember},
    {"find the motion", 4 + 1 + 1, 0, &Parts::FindLines},
    {"compare over time", 2 * Kernels::kWindowFrames + 4, 0, &Parts::CompareOverTime},
    {"compare the middle frames", 12, 3 + 5 * 42 + 17 + 1, &Parts::CompareInSpace},  // as GaussSSIM
    {"pool a map", 4, 0, &Parts::Pool},
};

}  // namespace

int main(int argc, char** argv) {
    for (const auto& [width, height] : kSizes) {
        for (const Part& part : kParts) {
            RegisterOnThreads("metrics/stSSIM, " + std::string(part.name) + "/" + SizeName(width, height),
                              [&part, width = width, height = height](benchmark::State& state) {
                                  Parts& parts = KeptFor<Parts>(width, height);
                                  const double pixels = double{1} * width * height;
                                  Repeat(state, {part.bytes * pixels, part.operations * pixels},
                                         [&] { (parts.*part.run)(); });
                              });
        }
    }
    return RunRegistered(argc, argv);
}
