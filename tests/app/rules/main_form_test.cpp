#include "app/rules/main_form.h"

#include <gtest/gtest.h>

#include <set>

#include "app/rules/job_edits.h"
#include "tests/app/rules/shell_fixture.h"
#include "tests/engine/fake_metric.h"

namespace {

TEST(MainForm, WhyAControlIsOff) {
    using State = ShellState;
    const auto nothing = [](State&) {};
    const auto comparing = [](State& s) { s.job.comparativeAnalysis = true; };
    const auto noScripts = [](State& s) { s.capabilities.aviSynth = false; };
    const auto scripts = [](State& s) {
        for (const FileRow row : kFileRows) SlotOf(s.job, row).useAvs = true;
    };
    const auto ssim = [](State& s) { ChooseById(s, L"ssim_fast"); };
    const auto blurring = [](State& s) { ChooseById(s, L"blurring_metric"); };
    const auto visualizing = [](State& s) { s.job.visualization.save = true; };
    const auto badFrames = [](State& s) { s.job.badFrames.save = true; };
    const auto images = [](State& s) { s.job.fileSlots[0].name = L"/v/A.BMP", s.job.badFrames.save = true; };
    const auto empty = [](State& s) { s.job.fileSlots[0].name = L""; };

    const std::tuple<Control, std::function<void(State&)>, const wchar_t*> kCases[] = {
        // Before the edit: an original "a.avi" alone, PSNR, every plug-in, all boxes off.
        {Control::OriginalUseAvs, nothing, L""},
        {Control::OriginalUseAvs, noScripts, L"Needs AviSynth"},
        {Control::SecondPath, nothing, L"Needs \"Comparative analysis\""},
        {Control::SecondPreview, comparing, L""},
        {Control::MaskBrowse, comparing, L"Needs \"Use mask file:\""},
        {Control::BlackMask, nothing, L"Needs \"Use mask file:\""},
        {Control::OriginalAdvanced, nothing, L"Needs \"Open with AVISynth\""},
        {Control::OriginalAdvanced, scripts, L""},
        {Control::ProcessedAdvanced, scripts, L"Needs a file"},
        {Control::SecondAdvanced, scripts, L"Needs \"Comparative analysis\""},
        {Control::MetricSettings, nothing, L"PSNR has no settings"},
        {Control::MetricInfo, nothing, L""},
        {Control::ComponentU, ssim, L"SSIM (fast) measures Y only"},
        {Control::ComponentL, blurring, L"Lumetry Blurring BETA measures Y, U, V only"},
        {Control::CsvAdvanced, nothing,
         L"Needs \"Save CSV file\" or \"Save metric visualization video / image\""},
        {Control::CsvAdvanced, visualizing, L""},
        {Control::SaveBadFrames, nothing, L""},
        {Control::SaveBadFrames, images, L"Needs a video file: all files are images"},
        {Control::SaveBadFrames, empty, L"Needs a video file"},
        {Control::BadFramesAdvanced, nothing, L"Needs \"Save \"bad frames\"\""},
        {Control::BadFramesAdvanced, badFrames, L""},
        {Control::BadFramesAdvanced, images, L"Needs a video file: all files are images"},
        {Control::Process, nothing, L"Needs the original and the processed file"},
    };
    for (const auto& [control, edit, why] : kCases) {
        ShellState state = StateWith(L"/v/a.avi");
        edit(state);
        EXPECT_EQ(MainFormFrom(state).WhyDisabled(control), why);
    }
}

TEST(MainForm, WhatARunLocks) {
    using enum Control;
    const std::set<Control> locked = {
        OriginalBrowse, ProcessedBrowse,   SecondBrowse,  ShowResults, ComparativeAnalysis,
        SaveCsv,        SaveVisualization, SaveBadFrames, CsvAdvanced, BadFramesAdvanced,
        MoreOptions,    MetricList,        ComponentY,    ComponentU,  ComponentV,
        ComponentL,     ComponentR,        ComponentG,    ComponentB,  Exit,
        MatrixAdvanced};
    ShellState state = StateWith(L"/v/a.avi", L"/v/b.avi", L"/v/c.avi");
    state.job.csv.save = state.job.badFrames.save = state.job.comparativeAnalysis = true;
    const MainForm before = MainFormFrom(state);
    for (const RunPhase phase : {RunPhase::Measuring, RunPhase::Viewing}) {
        state.phase = phase;
        const MainForm form = MainFormFrom(state);
        EXPECT_EQ(form.processCaption, phase == RunPhase::Measuring ? L"Stop" : L"Process");
        for (int i = 0; i < kControlCount; ++i) {
            const auto control = static_cast<Control>(i);
            EXPECT_EQ(form.IsEnabled(control), before.IsEnabled(control) && !locked.contains(control)) << i;
        }
        for (const Control control : locked) EXPECT_TRUE(before.IsEnabled(control));
    }
}

TEST(MetricChoice, ComponentStaysIfSupported) {
    constexpr std::tuple<const wchar_t*, int, int> kCases[] = {
        {L"mse", Metric::ComponentB, Metric::ComponentB},
        {L"blurring_metric", Metric::ComponentV, Metric::ComponentV},
        {L"blurring_metric", Metric::ComponentR, Metric::ComponentY},
        {L"psnr", 99, Metric::ComponentY},  // as settings may hold it
    };
    for (const auto& [metric, before, after] : kCases) {
        ShellState state = StateWith();
        ChooseComponent(state.job, before);
        ChooseById(state, metric);
        EXPECT_EQ(MainFormFrom(state).component, after);
        EXPECT_EQ(state.job.selection.size(), 1U);
    }
}

TEST(MetricChoice, SettingsBelongToTheMetric) {
    const auto metrics = FakeList({{.id = L"plain"}, {.id = L"tunable", .configurable = true}});
    ShellState state = NewShellState(kEverything, metrics);
    ChooseMetric(state.job, 1, metrics);
    StoreSelectedSettings(state.job, std::wstring(261, L's'));
    ChooseMetric(state.job, 0, metrics);
    EXPECT_EQ(SelectionOf(state.job).settings, L"");
    EXPECT_FALSE(MainFormFrom(state, metrics).metricSettingsVisible);
    ChooseMetric(state.job, -1, metrics);  // a list without a selected item
    EXPECT_EQ(SelectionOf(state.job).metricIndex, 0);
    ChooseMetric(state.job, 1, metrics);
    EXPECT_EQ(SelectionOf(state.job).settings, std::wstring(260, L's'));
    EXPECT_TRUE(MainFormFrom(state, metrics).IsEnabled(Control::MetricSettings));
}

TEST(JobEdits, WhatFollowsFromAnEdit) {
    ShellState state = StateWith();
    BadFramesSettings& badFrames = state.job.badFrames;
    badFrames.count = 3;
    SetSaveBadFrames(state.job, true);
    EXPECT_EQ(badFrames.count, 3);
    for (const auto& [type, compared] :
         {std::pair(BadOriginalProcessed, BadFirstSecond), {BadSecondBetter, BadSecondBetter}}) {
        badFrames.frameType = type;
        SetComparativeAnalysis(state.job, true);
        EXPECT_EQ(badFrames.frameType, compared);
    }
    SetComparativeAnalysis(state.job, false);
    EXPECT_EQ(badFrames.frameType, BadOriginalProcessed);

    EditPath(state.job, RowMask, L"a.6");
    EXPECT_TRUE(SetUseAvs(state.job.maskSlot, true));  // raw: its settings are to be asked for
}

}  // namespace
