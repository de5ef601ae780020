/// The way of a frame to a metric's plane, of each size, with 1 and 2 threads: a component of every family from
/// every layout, and PSNR of it, which needs no plane; then all seven components and the four forms of PSNR at
/// once, as a run has them. A conversion counts the frame's bytes that must be looked at, the floats of its
/// plane and its formula (that of L has a power, and no number), PSNR the bytes of both frames and its own
/// three operations.

#include "bench/kept_for.h"
#include "bench/layouts.h"
#include "bench/register.h"
#include "bench/scene.h"
#include "engine/run/parallel.h"
#include "kernels/bands.h"
#include "metric/convert_frame.h"
#include "metric/metric_image.h"
#include "metrics/psnr.h"
#include "metrics/psnr_variants.h"
#include "video/color_space.h"
#include "video/video_image.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace Metric;

/// A frame and its images, one for each component, as a run makes them.
class Frame {
public:
    Frame(int layout, int width, int height, unsigned seed) {
        CreateNoise(frame, layout, width, height, seed);
        for (int component = 0; component < kComponentCount; ++component) targets.emplace_back(width, height);
    }

    CMetricImage* Image(int component) { return &targets[static_cast<std::size_t>(component)].image; }

    /// Prepares the component's image; false if that can't be.
    bool Convert(int component) {
        Target& target = targets[static_cast<std::size_t>(component)];
        return ConvertFrame(frame, target.scratch[0], target.scratch[1], target.image, 0, component);
    }

    /// The bytes of the frame without padding, or where it is enough of its luma.
    double Bytes(int component) const {
        const int layout = frame.ColorSpace();
        const bool hasOwnLuma = rkIsYuv(layout) && rkPlaneShapeOf(layout).planes == 3;
        if (!hasOwnLuma || (component != ComponentY && component != ComponentL))
            return static_cast<double>(frame.PackedFrameBytes());
        return Pixels() * rkPlaneShapeOf(layout).sampleBytes;
    }
    /// The operations of the component's formula.
    double Operations(int component) const {
        if (component == ComponentL) return 0;
        const int layout = frame.ColorSpace();
        const bool isOfYuv = component == ComponentY || component == ComponentU || component == ComponentV;
        const double scale = rkSampleBits(layout) > 8 ? 1 : 0;
        constexpr double kCentre = 1;
        if (isOfYuv && rkIsYuv(layout)) return (scale + (component == ComponentY ? 0 : kCentre)) * Pixels();
        if (isOfYuv) return (3 * scale + 3 + 3) * Pixels();  // three products, three sums
        if (rkIsRgb(layout)) return scale * Pixels();
        return (3 * scale + 2 * kCentre + 3 + 3 + 2) * Pixels();  // and two limits
    }
    double Pixels() const { return double{1} * frame.VisibleWidth() * frame.VisibleHeight(); }

private:
    struct Target {
        Target(int width, int height) : image(width, height) {}
        rkVideoImage scratch[2];
        CMetricImage image;
    };

    rkVideoImage frame;
    std::deque<Target> targets;
};

struct Frames {
    Frames(int layout, int width, int height)
        : frames{Frame(layout, width, height, 1), Frame(layout, width, height, 2)} {}

    /// Both images of a component, prepared for one reader or for several.
    std::vector<CMetricImage*> Convert(int component, bool isForOneReader) {
        std::vector<CMetricImage*> images;
        for (Frame& frame : frames) {
            frame.Image(component)->ExpectOneReader(isForOneReader);
            frame.Convert(component);
            images.push_back(frame.Image(component));
        }
        return images;
    }

    Frame frames[2];
};

struct Case {
    int layout;
    int width;
    int height;

    Frames& Kept() const { return KeptFor<Frames>(layout, width, height); }
    MetricParameters Parameters(int component) const {
        MetricParameters parameters;
        parameters.component = component;
        parameters.width = width;
        parameters.height = height;
        return parameters;
    }
};

void ConvertOne(benchmark::State& state, const Case& c, int component) {
    Frame& frame = c.Kept().frames[0];
    frame.Image(component)->ExpectOneReader(false);
    if (!frame.Convert(component)) {
        state.SkipWithError("there is no such conversion");
        return;
    }
    const double bytes = frame.Bytes(component) + sizeof(float) * frame.Pixels();
    Repeat(state, {bytes, frame.Operations(component)}, [&] {
        frame.Convert(component);
        benchmark::DoNotOptimize(frame.Image(component)->GetPlane(component));
    });
}

constexpr double kPsnrOperations = 3;  // a difference, its square, their sum

void PsnrOfOne(benchmark::State& state, const Case& c, int component) {
    Frames& frames = c.Kept();
    CPSNRMetric metric(c.Parameters(component));
    const Frame& frame = frames.frames[0];
    Repeat(state, {2 * frame.Bytes(component), kPsnrOperations * frame.Pixels()},
           [&] { benchmark::DoNotOptimize(metric.Measure(frames.Convert(component, true))[0].value); });
}

constexpr std::array kLumaAlone = {int{ComponentY}};

/// Measures of some components at once, or only their planes.
struct Together {
    const char* name;
    std::span<const int> components;
    int forms;  ///< of PSNR: 1 or 4; 0 for planes alone
};

constexpr Together kTogether[] = {
    {"planes of all seven components", kDisplayOrder, 0},
    {"PSNR of all seven components", kDisplayOrder, 1},
    {"the four PSNR forms of Y", kLumaAlone, 4},
    {"the four PSNR forms of all seven components", kDisplayOrder, 4},
};

using Metrics = std::vector<std::unique_ptr<IMetric>>;

Metrics MakePsnr(const Case& c, int component, int forms) {
    const MetricParameters parameters = c.Parameters(component);
    Metrics metrics;
    if (forms >= 1) metrics.push_back(std::make_unique<CPSNRMetric>(parameters));
    if (forms < 4) return metrics;
    metrics.push_back(std::make_unique<CPsnr256Metric>(parameters));
    metrics.push_back(std::make_unique<CApsnrMetric>(parameters));
    metrics.push_back(std::make_unique<CApsnr256Metric>(parameters));
    return metrics;
}

/// The tasks of a frame in one loop, as the frame loop of a run has it.
void MeasureTogether(benchmark::State& state, const Case& c, const Together& together) {
    Frames& frames = c.Kept();
    struct Task {
        int component;
        IMetric* metric;  // null: only makes the planes
        std::vector<CMetricImage*> images;
    };
    std::vector<Task> tasks;
    std::vector<Metrics> metrics;
    for (const int component : together.components) {
        metrics.push_back(MakePsnr(c, component, together.forms));
        for (const auto& metric : metrics.back()) tasks.push_back({component, metric.get(), {}});
        if (together.forms == 0) tasks.push_back({component, nullptr, {}});
    }

    const int count = static_cast<int>(tasks.size());
    const Frame& frame = frames.frames[0];
    const bool isTeam =
        count > 1 && ThreadsOf(state) > 1 && frame.Pixels() * count >= 2 * double{Kernels::kPixelsPerThread};
    const auto components = static_cast<double>(together.components.size());
    const double bytesOfFrame = components > 1 ? frame.Bytes(ComponentR) : frame.Bytes(ComponentY);
    const double bytesOfPlanes = together.forms == 0 ? sizeof(float) * components * frame.Pixels() : 0;
    Repeat(
        state,
        {2 * (bytesOfFrame + bytesOfPlanes), kPsnrOperations * components * together.forms * frame.Pixels()},
        [&] {
            for (std::size_t i = 0; i < tasks.size(); ++i) {
                const bool isSame = i > 0 && tasks[i].component == tasks[i - 1].component;
                tasks[i].images =
                    isSame ? tasks[i - 1].images : frames.Convert(tasks[i].component, together.forms == 1);
            }
            ForEachInParallel(count, isTeam, [&](int i) {
                const Task& task = tasks[static_cast<std::size_t>(i)];
                if (task.metric != nullptr) {
                    benchmark::DoNotOptimize(task.metric->Measure(task.images)[0].value);
                } else {
                    for (CMetricImage* image : task.images)
                        benchmark::DoNotOptimize(image->GetPlane(task.component));
                }
            });
        });
}

std::string Narrow(const wchar_t* text) {
    const std::wstring wide = text;
    return {wide.begin(), wide.end()};
}

void RegisterComponents(const Case& c, const std::string& layout, const std::string& size) {
    constexpr std::pair<const char*, void (*)(benchmark::State&, const Case&, int)> kRuns[] = {
        {"frames/", ConvertOne}, {"frames/PSNR ", PsnrOfOne}};
    for (const int component : {ComponentY, ComponentU, ComponentR, ComponentL}) {
        for (const auto& [what, run] : kRuns)
            RegisterOnThreads(
                what + layout + " to " + Narrow(ComponentName(component)) + size,
                [c, component, run = run](benchmark::State& state) { run(state, c, component); });
    }
}

void RegisterTogether(const Case& c, const std::string& layout, const std::string& size) {
    for (const Together& together : kTogether)
        RegisterOnThreads("frames/" + layout + ", " + together.name + size,
                          [c, &together](benchmark::State& state) { MeasureTogether(state, c, together); });
}

}  // namespace

int main(int argc, char** argv) {
    for (const auto& [width, height] : kSizes) {
        const std::string size = "/" + SizeName(width, height);
        for (const auto& [layout, name] : kLayouts) {
            if (!rkIsYuv(layout) && !rkIsRgb(layout)) continue;
            RegisterComponents({layout, width, height}, name, size);
            if (layout == IYUV || layout == RGB24) RegisterTogether({layout, width, height}, name, size);
        }
    }
    return RunRegistered(argc, argv);
}
