// What a viewer's user waits for, at 1400x900: a change of the frame, a frame's picture, and the opening of a
// long run.

#include <benchmark/benchmark.h>

#include <QApplication>

#include <cmath>

#include "platform/qt/theme.h"
#include "report/frame_picture.h"
#include "report/report_graph.h"
#include "report/results_dialog.h"

namespace {

CResultsStore Results(int frames) {
    CResultsStore store;
    for (int id = 0; id < 2; ++id) {
        ResultRecord record;
        record.files.resize(2);
        record.files[1].name = id == 0 ? L"one" : L"two";
        store.SetResultRecord(id, record);
        unsigned noise = 1;
        for (int frame = 0; frame < frames; ++frame) {
            noise = noise * 1664525u + 1013904223u;
            store.AddValue(id, frame,
                           35 + 3 * std::sin(static_cast<float>(frame) * 0.002F) +
                               static_cast<float>(noise >> 20) / 1024);
        }
    }
    return store;
}

ReportParameters Parameters(const CResultsStore& store, const std::vector<int>& badFrames) {
    ReportParameters parameters = {store, &badFrames, {}, 0};
    parameters.files[1].name = L"one";
    parameters.files[2].name = L"two";
    return parameters;
}

const std::vector<int> kBadFrames = {10, 200, 1000, 3000};

/// One step through the frames, with the picture of one plot.
void FrameChange(benchmark::State& state, Report::CReportGraph::Kind kind) {
    const CResultsStore store = Results(static_cast<int>(state.range(0)));
    Report::ReportController controller(
        Report::GatherData(Parameters(store, kBadFrames)), [] {}, [] {});
    Report::CReportGraph plot(kind, controller);
    plot.resize(1200, 400);  // of a window of 1400 by 900
    controller.AddView(plot);
    QPixmap screen(plot.size());
    for (auto _ : state) {
        controller.SetCurrent(controller.Range().Current() + 1, true);
        plot.render(&screen);
    }
}

void OpenViewer(benchmark::State& state) {
    const CResultsStore store = Results(static_cast<int>(state.range(0)));
    const ReportParameters parameters = Parameters(store, kBadFrames);
    for (auto _ : state) {
        Report::ResultsDialog dialog(parameters);
        QPixmap screen(dialog.size());
        dialog.render(&screen);
    }
}

void PaintFrame(benchmark::State& state) {
    Report::FramePicture picture;
    picture.resize(1400, 900);
    QImage frame(1920, 1080, QImage::Format_RGB32);
    frame.fill(Qt::darkGreen);
    picture.SetImage(frame);
    picture.SetZoom(static_cast<int>(state.range(0)));
    QPixmap screen(picture.size());
    for (auto _ : state) picture.render(&screen);
}

BENCHMARK_CAPTURE(FrameChange, detail, Report::CReportGraph::Kind::Detail)
    ->Arg(5000)
    ->Arg(500'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameChange, overview, Report::CReportGraph::Kind::Overview)
    ->Arg(5000)
    ->Arg(500'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(OpenViewer)->Arg(300)->Arg(5000)->Arg(500'000)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintFrame)->Arg(100)->Arg(250)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    InstallTheme(application);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
