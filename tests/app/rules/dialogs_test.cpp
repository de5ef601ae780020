#include <gtest/gtest.h>

#include <map>

#include "app/rules/bad_frames_form.h"
#include "app/rules/output_form.h"
#include "app/rules/script_form.h"
#include "tests/app/rules/shell_fixture.h"

namespace {

TEST(ScriptForm, FiltersByKindOfFileAndTheRecordsIfItIsThere) {
    // By filter value: + recommended, - not recommended, ! can cause crash, . no word.
    constexpr std::pair<const wchar_t*, const wchar_t*> kCases[] = {
        {L"a.avi", L"+++!...-"}, {L"a.mov", L"---!..+-"}, {L"a.mkv", L"---!++.-"}, {L"a.rgb", L"---!---+"}};
    constexpr const wchar_t* kNames[] = {L"AviSource",        L"OpenDMLSource",     L"AviFileSource",
                                         L"DirectShowSource", L"DirectShowSource2", L"FFMpegSource",
                                         L"QTSource",         L"RawSource"};
    const std::map<wchar_t, std::wstring> words = {
        {L'+', L" (recommended)"}, {L'-', L" (not recommended)"}, {L'!', L" (can cause crash)"}, {L'.', L""}};
    for (const auto& [name, advice] : kCases) {
        FileRecord record;
        record.name = name;
        const auto filters = ScriptFormFrom(record, kEverything).filters;
        ASSERT_EQ(filters.size(), 8U);
        EXPECT_EQ(filters[5].value, 6);  // QTSource is listed before FFMpegSource
        for (const auto& filter : filters)
            EXPECT_EQ(filter.label, kNames[filter.value] + words.at(advice[filter.value]));
    }
    // The rest is proved by the dialog.
    const FileRecord record = {L"/v/a.mov", L"/v/a.mov", true, false, false, 6, L"quality = 50", 0, 0, 0};
    ScriptForm form = ScriptFormFrom(record, kEverything);
    EXPECT_EQ(form.filter, 5);  // the position of QTSource
    EXPECT_EQ(form.parameters, L"quality = 50");
    form = ScriptFormFrom(record, {true, false, false, false, false});
    EXPECT_EQ(form.filters.size(), 4U);
    EXPECT_EQ(form.filter, 0);
    EXPECT_EQ(form.parameters, L"audio = false, pixel_type = \"RGB24\"");
}

TEST(OutputForm, StoresOnlyWhatIsOn) {
    for (const auto& [csv, visualization] : {std::pair(false, true), {true, false}}) {
        ShellState state = StateWith();
        MeasurementJob& job = state.job;
        job.csv.save = csv;
        job.visualization.save = visualization;
        job.csv.nameGeneration = job.visualization.nameGeneration = job.caption.position = 7;
        OutputForm form = OutputFormFrom(job);
        EXPECT_EQ(form.csvNaming + form.visualizationNaming + form.captionPosition, 0);  // none of the lists'
        EXPECT_EQ(form.WhyCustomNameDisabled(),
                  csv ? L"Needs \"Custom (type below)\"" : L"Needs \"Save CSV file\"");
        form.csvNaming = 2;
        EXPECT_EQ(form.WhyCustomNameDisabled().empty(), csv);
        form.csvDir = form.visualizationDir = L"/out";
        form.visualizationNaming = form.captionPosition = 1;
        StoreForm(form, job);
        EXPECT_EQ(job.csv.nameGeneration, csv ? NameCustom : 7);
        EXPECT_EQ(job.csv.outputDir, csv ? L"/out" : L"");
        EXPECT_EQ(job.visualization.nameGeneration, visualization ? NamePostfix : 7);
        EXPECT_EQ(job.visualization.outputDir, visualization ? L"/out" : L"");
        EXPECT_EQ(job.caption.position, visualization ? 1 : 7);
    }
}

TEST(BadFramesForm, RangesOfTypesAndSliders) {
    constexpr struct {
        bool saving, comparing;
        int type, count, radius;  // stored
        const char* enabled;      // by type
        int checked, number, steps, storedRadius;
    } kCases[] = {
        {true, false, 0, 0, 0, "+---", 0, 10, 0, 0},
        {true, true, 3, 50, 1000, "-+++", 3, 50, 100, 1000},
        {true, true, 0, 51, 25, "-+++", 1, 50, 2, 20},
        {true, true, 9, -3, -7, "-+++", 1, 1, 0, 0},
        {false, true, 2, 1, 5000, "----", 2, 1, 100, 5000},
    };
    for (const auto& c : kCases) {
        BadFramesSettings settings;
        settings.save = c.saving;
        settings.frameType = c.type;
        settings.count = c.count;
        settings.radius = c.radius;
        BadFramesForm form = BadFramesFormFrom(settings, c.comparing);
        for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(form.whyTypeDisabled[i].empty(), c.enabled[i] == '+');
        EXPECT_EQ(form.type, c.checked);
        EXPECT_EQ(form.number, c.number);
        EXPECT_EQ(form.radiusSteps, c.steps);
        EXPECT_EQ(form.radiusShown, c.radius);
        StoreForm(form, settings);
        EXPECT_EQ(settings.frameType, c.checked);
        EXPECT_EQ(settings.radius, c.storedRadius);
        MoveRadius(form, 7);
        EXPECT_EQ(form.radiusShown, 70);
    }
}

}  // namespace
