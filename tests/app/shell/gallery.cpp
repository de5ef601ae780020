// Paints the main dialog and what it opens, but for results, in both palettes and two sizes of text, to be
// looked at:
//     app_gallery DIRECTORY

#include "app/dialogs/bad_frames_dialog.h"
#include "app/dialogs/compressor_dialog.h"
#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/more_options_dialog.h"
#include "app/dialogs/output_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "app/dialogs/yuv_dialog.h"
#include "app/preview/preview_dialog.h"
#include "app/shell/main_window.h"
#include "app/shell/progress_dialog.h"
#include "platform/qt/palette.h"
#include "platform/qt/theme.h"
#include "tests/report/frames/test_video.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

namespace {

constexpr Capabilities kEverything = {true, true, true, true, true};
constexpr int kMainWidth = 928;  // where the screen has room for it

class Gallery {
public:
    explicit Gallery(QString directory) : directory(std::move(directory)) {
        job.csv.save = job.visualization.save = job.badFrames.save = true;
        job.csv.outputDir = L"/home/ann/measurements/";
        job.visualization.outputDir = L"/home/ann/measurements/from the yard/second tape/a<b>&c and more/";
        job.badFrames.outputDir = L"/home/ann/measurements/";
        job.badFrames.radius = 305;
        state.wavPath = L"/usr/share/sounds/finished.wav";
        raw.name = L"/data/clips/foreman_a<b>&c.yuv";
        raw.width = 352;
        raw.height = 288;
        raw.useAvs = true;
        const wchar_t* const clips[] = {L"/data/clips/yard.y4m", L"/data/clips/yard_x264.y4m",
                                        L"/data/clips/of the second tape/yard_mpeg4_500kbit.mkv"};
        for (const FileRow row : {RowOriginal, RowProcessed, RowSecond})
            SetPath(SlotOf(state.job, row), clips[row]);
        SlotOf(state.job, RowSecond).useAvs = true;
        state.job.comparativeAnalysis = state.job.csv.save = true;
    }

    bool SaveAll() {
        YuvDialog yuv(nullptr, raw, kEverything);
        ScriptDialog script(nullptr, raw, kEverything);
        MatrixDialog matrix(nullptr, job);
        OutputDialog output(nullptr, job);
        BadFramesDialog badFrames(nullptr, job);
        MoreOptionsDialog moreOptions(nullptr, state);
        MetricDialog metric(nullptr, job);
        COMPVARS choice;
        CompressorDialog compressor(nullptr, choice, QStringLiteral("Choose compressor:"));
        MeasurementJob nothingSaved;
        OutputDialog outputOff(nullptr, nothingSaved);
        BadFramesDialog badFramesOff(nullptr, nothingSaved);
        MainWindow main(state, [] { return true; });
        main.resize(std::max(main.width(), kMainWidth), main.height());
        FileQuestions questions(main, state);
        RunControl control(state, questions, main, [] { return true; });
        QByteArray geometry;
        ProgressDialog progress(&main, control, state.job, geometry);
        progress.Show(MidRun());
        PreviewDialog preview(nullptr, std::make_unique<TestVideo>(352, 288, 300), 0);
        return Save(yuv, "yuv") && Save(script, "script") && Save(matrix, "matrix") &&
               Save(output, "output") && Save(badFrames, "bad-frames") && Save(moreOptions, "more-options") &&
               Save(metric, "metric") && Save(compressor, "compressor") && Save(outputOff, "output-off") &&
               Save(badFramesOff, "bad-frames-off") && Save(preview, "preview") && Save(main, "main") &&
               Save(progress, "progress");
    }

    QString suffix;

private:
    static std::vector<RunEvent> MidRun() {
        std::vector<RunEvent> events;
        for (const wchar_t* line :
             {L"Opening \"/data/clips/yard.y4m\"",
              L"Files default resolution is set to 352x288, default length is set to 300",
              L"Opened file \"/data/clips/yard.y4m\", width 352 height 288 colorspace IYUV",
              L"Opening \"/data/clips/yard_x264.y4m\"", L"Default length is set to 300",
              L"Opened file \"/data/clips/yard_x264.y4m\", width 352 height 288 colorspace IYUV",
              L"Creating measurement schedule...", L"Loaded PSNR",
              L"Measuring YYUV-PSNR on yard.y4m yard_x264.y4m"})
            events.push_back({.kind = RunEvent::Kind::Line, .line = std::wstring(L"14:32:07 : ") + line});
        events.push_back({.kind = RunEvent::Kind::Range, .last = 300});
        events.push_back({.kind = RunEvent::Kind::Position, .first = 187, .seconds = 0.456});
        return events;
    }

    bool Save(QWidget& window, const char* name) {
        window.show();
        auto* preview = qobject_cast<PreviewDialog*>(&window);
        if (preview && !QTest::qWaitFor([&] { return !preview->IsWaiting(); })) return false;
        QApplication::processEvents();
        std::printf("%-16s %-9s %4d x %4d, at least %4d x %4d\n", name, suffix.toLocal8Bit().constData(),
                    window.width(), window.height(),
                    std::max(window.minimumWidth(), window.minimumSizeHint().width()),
                    std::max(window.minimumHeight(), window.minimumSizeHint().height()));
        return window.grab().save(QStringLiteral("%1/%2-%3.png").arg(directory, QLatin1String(name), suffix));
    }

    QString directory;
    MeasurementJob job;
    ShellState state = NewShellState(kEverything);
    FileRecord raw;
};

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: app_gallery DIRECTORY\n", stderr);
        return 64;
    }
    InstallTheme(application);
    Gallery gallery(QString::fromLocal8Bit(argv[1]));
    const QFont usual = QApplication::font();
    for (int points : {9, 13}) {
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        for (ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(SchemePalette(scheme));
            gallery.suffix =
                QStringLiteral("%1-%2")
                    .arg(scheme == ColorScheme::Light ? QStringLiteral("light") : QStringLiteral("dark"))
                    .arg(points);
            if (!gallery.SaveAll()) return 1;
        }
    }
    return 0;
}
