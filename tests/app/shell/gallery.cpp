// Paints the main dialog and what it opens, but for results, in both palettes and two sizes of text, to be
// looked at:
//     app_gallery DIRECTORY

#include "app/preview/preview_dialog.h"
#include "app/shell/main_window.h"
#include "app/shell/progress_dialog.h"
#include "platform/qt/palette.h"
#include "platform/qt/theme.h"
#include "tests/app/dialogs/each_dialog.h"
#include "tests/report/frames/test_video.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

namespace {

constexpr int kMainWidth = 928;  // where the screen has room for it

Records Example(bool areOn) {
    Records records(areOn);
    MeasurementJob& job = records.job;
    job.csv.outputDir = job.badFrames.outputDir = L"/home/ann/measurements/";
    job.visualization.outputDir = L"/home/ann/measurements/from the yard/second tape/a<b>&c and more/";
    job.badFrames.radius = 305;
    records.file.useAvs = true;
    ShellState& state = records.state;
    state = NewShellState(kEverything);
    state.wavPath = L"/usr/share/sounds/finished.wav";
    const wchar_t* const clips[] = {L"/data/clips/yard.y4m", L"/data/clips/yard_x264.y4m",
                                    L"/data/clips/of the second tape/yard_mpeg4_500kbit.mkv"};
    for (const FileRow row : {RowOriginal, RowProcessed, RowSecond})
        SetPath(SlotOf(state.job, row), clips[row]);
    SlotOf(state.job, RowSecond).useAvs = true;
    state.job.comparativeAnalysis = state.job.csv.save = true;
    return records;
}

std::vector<RunEvent> MidRun() {
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

struct Gallery {
    bool SaveAll() const {
        bool isSaved = true;
        for (const bool areOn : {true, false}) {
            Records records = Example(areOn);
            for (const EachDialog& each : kDialogs)
                isSaved &= Save(*each.make(records), std::string(each.name) + (areOn ? "" : "-off"));
        }
        ShellState state = Example(true).state;
        MainWindow main(state, [] { return true; });
        main.resize(std::max(main.width(), kMainWidth), main.height());
        FileQuestions questions(main, state);
        RunControl control(state, questions, main, [] { return true; });
        QByteArray geometry;
        ProgressDialog progress(&main, control, state.job, geometry);
        progress.Show(MidRun());
        PreviewDialog preview(nullptr, std::make_unique<TestVideo>(352, 288, 300), 0);
        preview.show();
        return isSaved && QTest::qWaitFor([&] { return !preview.IsWaiting(); }) && Save(preview, "preview") &&
               Save(main, "main") && Save(progress, "progress");
    }

    bool Save(QWidget& window, const std::string& name) const {
        window.show();
        QApplication::processEvents();
        std::printf("%-16s %-9s %4d x %4d, at least %4d x %4d\n", name.c_str(), suffix, window.width(),
                    window.height(), std::max(window.minimumWidth(), window.minimumSizeHint().width()),
                    std::max(window.minimumHeight(), window.minimumSizeHint().height()));
        return window.grab().save(
            QString::fromLocal8Bit((directory + "/" + name + "-" + suffix + ".png").c_str()));
    }

    std::string directory;
    const char* suffix;
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
    for (const auto& [scheme, points, suffix] : {std::tuple(ColorScheme::Light, 9, "light-9"),
                                                 {ColorScheme::Dark, 9, "dark-9"},
                                                 {ColorScheme::Light, 13, "light-13"},
                                                 {ColorScheme::Dark, 13, "dark-13"}}) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
        QApplication::setPalette(SchemePalette(scheme));
        if (!Gallery{argv[1], suffix}.SaveAll()) return 1;
    }
    return 0;
}
