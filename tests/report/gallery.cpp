// Measures clips and shows their results, in both palettes, to be looked at:
//     report_gallery DIRECTORY ORIGINAL FIRST_PROCESSED SECOND_PROCESSED

#include "engine/run/measurement_worker.h"
#include "platform/qt/palette.h"
#include "platform/qt/theme.h"
#include "platform/text.h"
#include "report/report_controller.h"
#include "report/report_frame.h"
#include "report/report_graph.h"
#include "report/results_dialog.h"

#include <QApplication>
#include <QRadioButton>
#include <QTest>

#include <cstdio>

namespace {

/// A comparative run, told to nobody.
struct MeasuredRun : IRunVoices, IRunObserver {
    /// `given` are the clips; bad frames are saved to `directory`.
    MeasuredRun(char** given, const char* directory) {
        MeasurementJob job;
        SelectedMetric metric;
        Metric::GetMetricList().FindById(L"psnr", metric.metricIndex);
        job.selection = {metric};
        job.metricSettings.resize(static_cast<std::size_t>(Metric::GetMetricList().GetCount()));
        for (int i = 0; i < 3; ++i) {
            files[i].name = files[i].sourceName = FromUtf8(given[i]);
            job.fileSlots.at(static_cast<std::size_t>(i)) = files[i];
            job.run.inputFiles.push_back(files[i]);
        }
        job.comparativeAnalysis = job.badFrames.save = true;
        job.badFrames.count = 4;
        job.badFrames.radius = 3;
        job.badFrames.outputDir = FromUtf8(directory);
        MeasurementWorker(job, *this, *this);
    }
    std::unique_ptr<IProgress> CreateProgress() override { return nullptr; }
    std::unique_ptr<ILog> CreateLog(const std::wstring&) override { return nullptr; }
    void SetRunActive(bool) override {}
    void WithdrawStop() override {}
    void RunFinished(std::unique_ptr<FinishRecord> record) override { finish = std::move(record); }

    std::map<int, FileRecord> files;
    std::unique_ptr<FinishRecord> finish;
};

bool Save(const MeasuredRun& run, ColorScheme scheme, const QString& directory, const QString& name) {
    QApplication::setPalette(SchemePalette(scheme));
    const ReportParameters parameters = {*run.finish->results, run.finish->badFrames.get(), run.files,
                                         run.finish->yuvTable};
    Report::ResultsDialog dialog(parameters);
    dialog.show();
    dialog.Controller().GoToNextBadFrame();
    bool saved = dialog.grab().save(directory + QStringLiteral("/viewer-") + name);

    auto* frame = new Report::CReportFrame(dialog.Controller(), parameters, &dialog);
    dialog.Controller().SetFrameView(frame);
    saved &= QTest::qWaitFor([&] { return frame->isVisible() && !frame->IsWaiting(); });
    saved &= frame->grab().save(directory + QStringLiteral("/frame-") + name);
    for (auto* radio : frame->findChildren<QRadioButton*>()) radio->click();
    saved &= QTest::qWaitFor([&] { return !frame->IsWaiting(); });
    saved &= frame->grab().save(directory + QStringLiteral("/frame-second-") + name);
    for (Report::CReportGraph* plot : dialog.Plots()) {
        const QString kind = plot->IsOverview() ? QStringLiteral("/overview-") : QStringLiteral("/detail-");
        const std::wstring path = (directory + kind + name).toStdWString();
        saved &= plot->SavePng(path) && plot->SaveSvg(path + L".svg");
    }
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 5) {
        std::fputs("usage: report_gallery DIRECTORY ORIGINAL FIRST_PROCESSED SECOND_PROCESSED\n", stderr);
        return 64;
    }
    InstallTheme(application);
    const MeasuredRun run(argv + 2, argv[1]);
    const QString directory = QString::fromLocal8Bit(argv[1]);
    const bool saved = Save(run, ColorScheme::Light, directory, QStringLiteral("light.png")) &&
                       Save(run, ColorScheme::Dark, directory, QStringLiteral("dark.png"));
    return saved ? 0 : 1;
}
