#include "app/rules/settings.h"

#include <gtest/gtest.h>

#include "app/rules/compressor_file.h"
#include "app/rules/shell_start.h"
#include "platform/text.h"
#include "tests/app/rules/shell_fixture.h"
#include "tests/engine/fake_metric.h"
#include "tests/memory_settings_store.h"
#include "tests/temporary_directory.h"

namespace {

const Metric::CMetricList& Metrics() {
    return Metric::GetMetricList();
}

/// Notes what is written: "name=7 " for numbers, "name:text " for texts. One value can't be written.
class NotingStore : public MemorySettingsStore {
public:
    std::string written, broken;

    bool WriteNumber(const std::string& name, int number) override {
        written += name + "=" + std::to_string(number) + " ";
        return name != broken && MemorySettingsStore::WriteNumber(name, number);
    }
    bool WriteText(const std::string& name, const std::wstring& text) override {
        written += name + ":" + ToUtf8(text) + " ";
        return name != broken && MemorySettingsStore::WriteText(name, text);
    }
};

ShellState Loaded(const ISettingsStore& store, const Capabilities& capabilities = kEverything) {
    ShellState state = NewShellState(capabilities);
    LoadSettings(store, L"/program/", Metrics(), state);
    return state;
}

TEST(Settings, NamesTypesAndOrderOfEveryChoice) {
    ShellState state = StateWith(L"/v/a.yuv", L"/v/\xDC80\n\"b\".avi", L"/v/c.mkv", L"/v/m.6");
    MeasurementJob& job = state.job;
    state.runNumber = 12;
    job.badFrames.save = job.csv.save = job.csv.unicode = job.maskSlot.blackMask = true;
    job.badFrames.count = 7;
    job.badFrames.frameType = 2;
    job.badFrames.radius = 15;
    job.run.yuvTable = 5;  // numbers beyond what the dialogs list
    job.csv.nameGeneration = 9;
    job.csv.separator = 1;
    job.csv.decimalDelimiter = 2;
    job.visualization.nameGeneration = 3;
    job.caption = {4, false, true};
    job.csv.outputDir = L"/one";
    job.csv.customName = L"42";
    job.visualization.outputDir = L"";
    job.badFrames.outputDir = L"/three";
    state.wavPath = L"/end.wav";
    ChooseById(state, L"mse");
    ChooseComponent(job, Metric::ComponentG);
    job.fileSlots[0] = {L"/v/a.yuv", L"/v/a.yuv", true, true, false, 6, L"own = 1", 352, 288, 17};
    job.fileSlots[2] = {L"/v/c.mkv", L"/v/c.mkv", true, false, true, 5, L"", 0, 0, 0};
    job.maskSlot.width = 16;
    job.maskSlot.height = 8;

    // Written down from the list of stored values, not from the code.
    const std::string expected =
        "run_num=12 comp_analysis=0 save_bad_frames=1 bad_frames_num=7 yuv_table=5 save_csv=1 "
        "save_vis_video=0 csv_name_gen=9 csv_separator=1 fp_separator=2 csv_unicode=1 vis_name_gen=3 "
        "rad=15 metric:mse metric_settings: metric_colorspace=5 draw_pos=4 save_frames_type=2 "
        "draw_frame_number=1 draw_metric_value=0 show_report=1 auto_close_progress=0 "
        "csv_output_dir:/one csv_custom_name:42 vis_output_dir: bad_frames_output_dir:/three "
        "wav_path:/end.wav original:/v/a.yuv original_use_avs=1 original_plugin=6 "
        "original_use_default=1 original_parameters:own = 1 original_custom_params=0 "
        "original_only_prefered=1 original_width=352 original_height=288 original_yuv_type=17 "
        "first_processed:/v/\x80\n\"b\".avi processed_use_avs=0 second_processed:/v/c.mkv "
        "processed2_use_avs=1 processed2_plugin=5 processed2_use_default=0 processed2_parameters: "
        "processed2_custom_params=1 processed2_only_prefered=0 use_mask=0 black_mask=1 "
        "mask_file:/v/m.6 mask_use_avs=0 mask_width=16 mask_height=8 mask_yuv_type=0 ";
    NotingStore store;
    store.broken = "yuv_table";
    EXPECT_FALSE(SaveSettings(store, Metrics(), state));
    EXPECT_EQ(store.written, expected);  // the lost value keeps none from being written

    store.broken = store.written = "";
    EXPECT_TRUE(SaveSettings(store, Metrics(), state));
    ShellState loaded = Loaded(store);
    EXPECT_EQ(loaded.runNumber--, 13);
    EXPECT_EQ(loaded.job.fileSlots, job.fileSlots);
    store.written = "";
    EXPECT_TRUE(SaveSettings(store, Metrics(), loaded));
    EXPECT_EQ(store.written, expected);
}

TEST(Settings, ValuesOfTheWrongTypeAreAbsent) {
    MemorySettingsStore store;  // at first as before the first start
    const TemporaryDirectory directory;
    const std::wstring place = FromUtf8(directory.Path(""));
    const MeasurementJob first = StartShell(store, place, place).job;
    EXPECT_TRUE(first.caption.drawMetricValue);
    EXPECT_FALSE(first.csv.unicode || first.autoCloseProgress || first.caption.drawFrameNumber);
    for (const auto& dir : {first.csv.outputDir, first.visualization.outputDir, first.badFrames.outputDir})
        EXPECT_EQ(dir, place);
    store.WriteText("show_report", L"0");
    store.WriteText("rad", L"20");
    store.WriteNumber("csv_output_dir", 1);
    store.WriteNumber("save_csv", 5);
    store.WriteNumber("save_vis_video", -1);
    const ShellState state = Loaded(store);
    EXPECT_TRUE(state.showResults);
    EXPECT_EQ(state.job.badFrames.radius, 0);
    EXPECT_EQ(state.job.csv.outputDir, L"/program/");
    EXPECT_TRUE(state.job.csv.save);
    EXPECT_FALSE(state.job.visualization.save);
}

TEST(Settings, ScriptSettingsOfASlot) {
    // Installed, the box, a stored filter; and what is loaded: the box, details.
    constexpr std::array<bool, 5> kCases[] = {
        {true, true, true, true, true},
        {false, true, true, false, false},  // the script host is gone
        {true, false, true, false, false},
        {true, true, false, true, false},
    };
    for (const auto& [isInstalled, useAvs, hasFilter, useAvsLoaded, detailsLoaded] : kCases) {
        MemorySettingsStore store;
        store.WriteText("second_processed", L"/v/a.avi");
        store.WriteNumber("processed2_use_avs", useAvs);
        if (hasFilter) store.WriteNumber("processed2_plugin", 5);
        store.WriteNumber("processed2_only_prefered", 1);
        store.WriteNumber("processed2_width", 352);  // not of a raw file
        const FileRecord slot = Loaded(store, {isInstalled, true, true, true, true}).job.fileSlots[2];
        EXPECT_EQ(slot,
                  (FileRecord{L"/v/a.avi", L"/v/a.avi", useAvsLoaded, detailsLoaded, false,
                              detailsLoaded ? 5 : 0, L"audio = false, pixel_type = \"RGB24\"", 0, 0, 0}));
    }
}

TEST(Settings, MetricByItsId) {
    const auto metrics = FakeList(
        {{.id = L"first", .configurable = true}, {.id = L"plain"}, {.id = L"tuned", .configurable = true}});
    constexpr std::tuple<const wchar_t*, int, const wchar_t*, int> kCases[] = {
        {L"tuned", 2, L"own", 4}, {L"plain", 1, L"", 4}, {L"gone", 0, L"", 0}, {L"", 0, L"", 0}};
    for (const auto& [id, index, settings, component] : kCases) {
        MemorySettingsStore store;
        if (*id) store.WriteText("metric", id);
        store.WriteText("metric_settings", L"own");
        store.WriteNumber("metric_colorspace", 4);
        ShellState state = NewShellState(kEverything, metrics);
        LoadSettings(store, L"/", metrics, state);
        const SelectedMetric selected = SelectionOf(state.job);
        EXPECT_EQ(selected.metricIndex, index);
        EXPECT_EQ(selected.component, component);
        EXPECT_EQ(SelectedSettings(state.job), settings);
    }
}

TEST(Settings, TheThirtiethStartAsks) {
    MemorySettingsStore store;
    int asked = 0;
    for (int start = 1; start <= 40; ++start) {
        ShellState state = Loaded(store);
        if (IsFeedbackDue(state)) asked += start;
        SaveSettings(store, Metrics(), state);
    }
    EXPECT_EQ(asked, 30);
    store.WriteNumber("run_num", 0x7FFFFFFF);
    EXPECT_EQ(Loaded(store).runNumber, 0x7FFFFFFF);
}

TEST(CompressorFile, KeepsTheChoice) {
    TemporaryDirectory directory;
    const std::wstring place = FromUtf8(directory.Path("new/"));
    const rkCompressorSettings chosen = {0x63646976, 0x34363248, 7500, 900, {1, 2, 3}};
    rkCompressorSettings loaded;
    EXPECT_FALSE(LoadCompressorFile(place, loaded));
    ASSERT_TRUE(SaveCompressorFile(place, chosen));
    ASSERT_TRUE(LoadCompressorFile(place, loaded));
    EXPECT_EQ(loaded, chosen);

    const std::string whole = ReadWhole(directory.Path("new/codec_config"));
    // 20 and the state, then the codes "vidc" and "H264", the quality 7500: by hand.
    EXPECT_EQ(whole.substr(0, 16), std::string("\x17\0\0\0vidcH264\x4C\x1D\0\0", 16));
    directory.Write("new/codec_config", std::string_view(whole).substr(0, whole.size() - 1));
    EXPECT_FALSE(LoadCompressorFile(place, loaded));
    EXPECT_EQ(loaded, chosen);
    directory.Write("new/codec_config", "\xFF\xFF\xFF\xFF" + whole.substr(4));
    EXPECT_FALSE(LoadCompressorFile(place, loaded));
    EXPECT_FALSE(SaveCompressorFile(L"/dev/null/", chosen));
}

TEST(Capabilities, ScriptHostAndPlugins) {
    TemporaryDirectory directory;
    std::filesystem::create_directories(directory.Path("avs_plugins/QTSource.dll"));  // no file
    directory.Write("avs_plugins/rawsource.dll", "x");
    MemorySettingsStore store;
    const std::wstring place = FromUtf8(directory.Path(""));
    const Capabilities found = FindCapabilities(store, place);
    EXPECT_TRUE(found.aviSynth);
    EXPECT_TRUE(found.rawSource);
    EXPECT_FALSE(found.avss || found.ffmpegSource || found.qtSource);
    store.WriteNumber("script_host", 0);
    EXPECT_FALSE(FindCapabilities(store, place).aviSynth);
}

}  // namespace
