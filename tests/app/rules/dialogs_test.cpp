#include <gtest/gtest.h>

#include <map>

#include "app/rules/bad_frames_form.h"
#include "app/rules/output_form.h"
#include "app/rules/script_form.h"
#include "app/rules/yuv_form.h"
#include "tests/app/rules/shell_fixture.h"
#include "video/color_space.h"

namespace {

std::wstring LayoutText(const YuvForm& form) {
    return form.layouts[static_cast<std::size_t>(form.layout)].text;
}

TEST(YuvForm, ParserAndLayouts) {
    FileRecord record;
    record.name = L"C:\\v\\a.yuv";
    record.yuvType = P016;
    YuvForm form = YuvFormFrom(record, kEverything);
    EXPECT_EQ(form.fileName, L"a.yuv");
    EXPECT_EQ(LayoutText(form), L"16 bit 4:2:0 yuv");
    ChooseParser(form, true);
    EXPECT_EQ(form.layout, 0);  // no script reads it
    form.layout = 4;            // UYVY among those of scripts
    ChooseParser(form, false);
    EXPECT_EQ(LayoutText(form), L"UYVY");

    record.useAvs = true;
    EXPECT_TRUE(YuvFormFrom(record, kEverything).useScript);
    form = YuvFormFrom(record, {true, true, true, true, false});  // without RawSource
    EXPECT_FALSE(form.useScript || form.whyScriptDisabled.empty());
    form.width = form.height = 8;
    EXPECT_FALSE(StoreForm(form, record));
    EXPECT_FALSE(record.useAvs);
}

TEST(YuvForm, RefusesASizeOfNothing) {
    FileRecord record;
    record.name = L"/v/a.yuv";
    record.width = -5;  // from damaged settings
    YuvForm form = YuvFormFrom(record, kEverything);
    EXPECT_EQ(form.width, 0);
    form.height = 288;
    form.useScript = true;
    EXPECT_EQ(StoreForm(form, record).value_or(BoxText()).text,
              L"Specify nonzero width and height for YUV file!");
    EXPECT_FALSE(record.useAvs);
    form.width = 352;
    EXPECT_FALSE(StoreForm(form, record));
    EXPECT_TRUE(record.useAvs);
    EXPECT_EQ(record.parameters, L"352, 288, \"I420\"");
}

TEST(ScriptForm, FiltersByKindOfFile) {
    // By filter value: + recommended, - not recommended, ! can cause crash, . no word.
    constexpr struct {
        const wchar_t *name, *advice;
    } kCases[] = {
        {L"a.avi", L"+++!...-"}, {L"a.mov", L"---!..+-"}, {L"a.mkv", L"---!++.-"}, {L"a.rgb", L"---!---+"}};
    constexpr const wchar_t* kNames[] = {L"AviSource",        L"OpenDMLSource",     L"AviFileSource",
                                         L"DirectShowSource", L"DirectShowSource2", L"FFMpegSource",
                                         L"QTSource",         L"RawSource"};
    const std::map<wchar_t, std::wstring> words = {
        {L'+', L" (recommended)"}, {L'-', L" (not recommended)"}, {L'!', L" (can cause crash)"}, {L'.', L""}};
    for (const auto& c : kCases) {
        FileRecord record;
        record.name = c.name;
        const auto filters = ScriptFormFrom(record, kEverything).filters;
        ASSERT_EQ(filters.size(), 8U);
        EXPECT_EQ(filters[5].value, 6);  // QTSource is listed before FFMpegSource
        for (const auto& filter : filters)
            EXPECT_EQ(filter.label, kNames[filter.value] + words.at(c.advice[filter.value]));
    }
}

TEST(ScriptForm, ParametersFollowFilterAndBox) {
    FileRecord record = {L"/v/a.mov", L"/v/a.mov", true, false, false, 6, L"quality = 50", 0, 0, 0};
    ScriptForm form = ScriptFormFrom(record, kEverything);
    EXPECT_EQ(form.filter, 5);  // the position of QTSource
    EXPECT_EQ(form.parameters, L"quality = 50");
    ChooseFilter(form, 0);
    EXPECT_EQ(form.parameters, L"audio = false, pixel_type = \"RGB24\"");
    SetCustomParameters(form, true);
    form.parameters = std::wstring(1025, L'p');
    ChooseFilter(form, 6);
    form.onlyPreferred = true;
    StoreForm(form, record);
    const std::wstring kept(1024, L'p');
    EXPECT_EQ(record, (FileRecord{L"/v/a.mov", L"/v/a.mov", true, true, true, 5, kept, 0, 0, 0}));
    SetCustomParameters(form, false);
    EXPECT_EQ(form.parameters, L"");

    // Without its plug-in the record's filter isn't there, nor are its parameters of use.
    form = ScriptFormFrom(record, {true, false, false, false, false});
    EXPECT_EQ(form.filters.size(), 4U);
    EXPECT_EQ(form.filter, 0);
    EXPECT_EQ(form.parameters, L"audio = false, pixel_type = \"RGB24\"");
}

TEST(OutputForm, StoresOnlyWhatIsOn) {
    for (const auto& [csv, visualization] : {std::pair(false, true), {true, false}, {true, true}}) {
        ShellState state = StateWith();
        MeasurementJob& job = state.job;
        job.csv.save = csv;
        job.visualization.save = visualization;
        job.csv.nameGeneration = job.visualization.nameGeneration = job.caption.position = 7;
        job.csv.separator = 0;
        OutputForm form = OutputFormFrom(job);
        EXPECT_EQ(form.csvType, 1);  // the item of 0 is the second
        EXPECT_EQ(form.csvNaming + form.visualizationNaming + form.captionPosition, 0);
        EXPECT_EQ(form.WhyCustomNameDisabled(),
                  csv ? L"Needs \"Custom (type below)\"" : L"Needs \"Save CSV file\"");
        form.csvNaming = 2;
        EXPECT_EQ(form.WhyCustomNameDisabled().empty(), csv);

        form.csvType = 0;
        form.customName = std::wstring(61, L'n');
        form.visualizationNaming = form.captionPosition = 1;
        StoreForm(form, job);
        EXPECT_EQ(job.csv.nameGeneration, csv ? NameCustom : 7);
        EXPECT_EQ(job.csv.separator, csv ? 1 : 0);
        EXPECT_EQ(job.csv.customName, std::wstring(csv ? 60 : 0, L'n'));
        EXPECT_EQ(job.visualization.nameGeneration, visualization ? NamePostfix : 7);
        EXPECT_EQ(job.visualization.caption.position, visualization ? 1 : 0);
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
