#include "engine/run/frame_loop.h"

#include <omp.h>

#include <boost/make_shared.hpp>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "engine/run/open_input_files.h"
#include "engine/run/parallel.h"
#include "tests/engine/run/fake_run.h"

namespace {

struct FrameLoopTest : RunTest {
    /// Opens the files for the component Y.
    void Open(std::vector<FileRecord> files) {
        run = Recorded(std::move(files));
        OpenInputFiles(state.opened, run, nullptr, state.width, state.height, state.length,
                       state.originalOpened);
        for (auto& [index, file] : state.opened) {
            file.components[0] = {
                false, boost::make_shared<rkVideoImage>(), boost::make_shared<rkVideoImage>(), {}};
            SetImageSide(index, kSide);
        }
        lines.clear();
    }
    /// A frame doesn't convert into an image of another size than its own.
    void SetImageSide(int file, int side) {
        state.opened[file].components[0].image = boost::make_shared<Metric::CMetricImage>(side, side);
    }
    static ScheduledMetric Scheduled(FakeKind kind = {}, int component = 0) {
        const auto metric = boost::make_shared<FakeMetric>(kind, Metric::MetricParameters());
        return {metric, component, {metric->GetResultInfo(false)[0].resultId}};
    }
    RunState state;
};

// It is measured with what the image holds, and tried again in the next frame.
TEST_F(FrameLoopTest, AFailedConversion) {
    Open({Clip(L"a", 4, 1)});
    FakeKind breaking;
    breaking.measure = [this, frame = 0](const Images& images) mutable {
        const float value = *images[0]->GetY();
        SetImageSide(0, ++frame < 3 ? 8 : kSide);  // for the next frame
        return value;
    };
    state.oneFileSchedule = {{0, {Scheduled(breaking), Scheduled({}, 5)}}};  // no file has component 5
    RunFrameLoop(state, run, store, outcome);
    const std::wstring told =
        L"Failed to convert image frame from sequence \"a\" into YYUV color, measurement skipped";
    EXPECT_EQ((Lines{told, told}), lines);
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    for (const auto& [frame, value] : {std::pair(0, 1.f), {1, 0.f}, {2, 0.f}, {3, 4.f}})
        EXPECT_EQ(value, store.GetFrameValues(frame).at(0).value);
}

// Metrics that run side by side end in any order; what is told of them keeps theirs.
TEST_F(FrameLoopTest, FailuresAreToldInTheOrderOfTheSchedule) {
    Open({Clip(L"a", 1, 1), Clip(L"b", 1, 1)});
    state.width = state.height = 1024;  // worth a team
    FakeKind slow, quick;
    slow.name = L"Slow";
    quick.name = L"Quick";
    slow.answer = [](std::vector<Metric::MetricValue>& values) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        values.clear();
    };
    quick.answer = [](std::vector<Metric::MetricValue>& values) { values.clear(); };
    state.oneFileSchedule = {{0, {Scheduled(slow)}}, {1, {Scheduled(quick)}}};
    const int threads = omp_get_max_threads();
    omp_set_num_threads(2);
    RunFrameLoop(state, run, store, outcome);
    omp_set_num_threads(threads);
    const std::wstring told = L" returned invalid values at frame 0; missing values are not numbers";
    EXPECT_EQ((Lines{L"Metric Slow" + told, L"Metric Quick" + told}), lines);
}

TEST(InCriticalSection, LetsAnExceptionOutAndTheNextOneIn) {
    EXPECT_THROW(InCriticalSection([] { throw std::length_error("too long"); }), std::length_error);
    bool isIn = false;
    InCriticalSection([&] { isIn = true; });
    EXPECT_TRUE(isIn);
}

}  // namespace
