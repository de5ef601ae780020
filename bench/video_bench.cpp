/// What the video library does to a frame: every conversion between layouts, and turning it upside down; of
/// each size, on one thread, as it has no teams. The bytes are those of both frames without their padding;
/// how many operations a conversion has in integers is its own affair.

#include "bench/kept_for.h"
#include "bench/layouts.h"
#include "bench/register.h"
#include "bench/scene.h"
#include "video/convert.h"
#include "video/video_image.h"

#include <string>

namespace {

struct Frame {
    Frame(int layout, int width, int height) { CreateNoise(image, layout, width, height, 1); }

    rkVideoImage image;
    rkVideoImage target;
};

void Convert(benchmark::State& state, int source, int target, int width, int height) {
    Frame& frame = KeptFor<Frame>(source, width, height);
    if (!frame.target.Convert(frame.image, target, 0, false)) {
        state.SkipWithError("there is no such conversion");
        return;
    }
    const auto bytes = static_cast<double>(frame.image.PackedFrameBytes() + frame.target.PackedFrameBytes());
    Repeat(state, {bytes}, [&] { frame.target.Convert(frame.image, target, 0, false); });
}

void Flip(benchmark::State& state, int width, int height) {
    rkVideoImage& image = KeptFor<Frame>(int{RGB24}, width, height).image;
    if (!image.FlipVertical()) {
        state.SkipWithError("the frame can't be turned");
        return;
    }
    Repeat(state, {2 * static_cast<double>(image.PackedFrameBytes())}, [&] { image.FlipVertical(); });
}

}  // namespace

int main(int argc, char** argv) {
    for (const auto& [width, height] : kSizes) {
        const std::string size = "/" + SizeName(width, height);
        for (const auto& [source, sourceName] : kLayouts) {
            for (const auto& [target, targetName] : kLayouts) {
                if (rkFindConversion(source, target) == nullptr) continue;
                RegisterOnThreads(
                    std::string("video/") + sourceName + " to " + targetName + size,
                    [source = source, target = target, width = width, height = height](
                        benchmark::State& state) { Convert(state, source, target, width, height); },
                    false);
            }
        }
        RegisterOnThreads(
            "video/FlipVertical" + size,
            [width = width, height = height](benchmark::State& state) { Flip(state, width, height); }, false);
    }
    return RunRegistered(argc, argv);
}
