#pragma once

#include "app/dialogs/bad_frames_dialog.h"
#include "app/dialogs/compressor_dialog.h"
#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/more_options_dialog.h"
#include "app/dialogs/output_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "app/dialogs/yuv_dialog.h"
#include "platform/qt/help.h"
#include "tests/app/rules/shell_fixture.h"

#include <memory>

/// What the dialogs edit. Their controls are on or off.
struct Records {
    MeasurementJob job;
    ShellState state;
    FileRecord file;
    COMPVARS compressor;

    explicit Records(bool areOn = true) {
        job.csv.save = job.visualization.save = job.badFrames.save = state.playWav = areOn;
        job.csv.nameGeneration = NameCustom;
        job.metricSettings = {L"first", L"second"};
        job.selection = {{1, 0, L"second"}};
        file.name = file.sourceName = L"/data/a<b>&c.yuv";
        file.width = 352;
        file.height = 288;
    }
};

template <class Dialog, class... Arguments>
std::unique_ptr<QDialog> Make(Arguments&&... arguments) {
    return std::make_unique<Dialog>(nullptr, std::forward<Arguments>(arguments)...);
}

// One of each.
constexpr auto kYuv = [](Records& r) { return Make<YuvDialog>(r.file, kEverything); };
constexpr auto kScript = [](Records& r) { return Make<ScriptDialog>(r.file, kEverything); };
constexpr auto kMatrix = [](Records& r) { return Make<MatrixDialog>(r.job); };
constexpr auto kOutput = [](Records& r) { return Make<OutputDialog>(r.job); };
constexpr auto kBadFrames = [](Records& r) { return Make<BadFramesDialog>(r.job); };
constexpr auto kMoreOptions = [](Records& r) { return Make<MoreOptionsDialog>(r.state); };
constexpr auto kMetric = [](Records& r) { return Make<MetricDialog>(r.job); };
constexpr auto kCompressor = [](Records& r) {
    return Make<CompressorDialog>(r.compressor, QStringLiteral("Choose compressor:"));
};

struct EachDialog {
    const char* title;
    const char* name;  // of its picture
    std::unique_ptr<QDialog> (*make)(Records&);
    const char* mnemonics;  // sorted
    const char* firstFocus;
    const wchar_t* helpPage;
};

constexpr EachDialog kDialogs[] = {
    {"Tolvane - YUV File settings", "yuv", kYuv, "ACHIW", "Width:", kHelpYuvFile},
    {"Tolvane - AVISynth parameters", "script", kScript, "DEFHP",
     "Choose prefered AVISynth filter:", kHelpScripts},
    {"Tolvane - Advanced file settings", "matrix", kMatrix, "6HP", "REC.601", kHelpMatrix},
    {"Tolvane - Advanced CSV and visualization settings", "output", kOutput, "BCDFGMNOPRTUVW",
     "Output dir, CSV files", kHelpOutput},
    {"Tolvane - \"Bad frames\" settings", "bad-frames", kBadFrames, "BDFNORST",
     "With maximum difference between original and processed", kHelpBadFrames},
    {"Tolvane - More options", "more-options", kMoreOptions, "BPW", "Play WAV file, when finished",
     kHelpMoreOptions},
    {"Tolvane - Metric configuration", "metric", kMetric, "M", "Metric configuration line:", kHelpMetrics},
    {"Choose compressor:", "compressor", kCompressor, "Q", "Compressors", kHelpCompression},
};
