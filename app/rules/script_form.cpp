#include "app/rules/script_form.h"

#include <array>

#include "app/rules/script_parameters.h"
#include "video/avisynth/script_filter.h"
#include "video/file_kind.h"

namespace {

enum FileKind { KindRaw, KindAvi, KindMov, KindOther, kKindCount };

constexpr const wchar_t* kGood = L" (recommended)";
constexpr const wchar_t* kBad = L" (not recommended)";
constexpr const wchar_t* kCrash = L" (can cause crash)";
constexpr const wchar_t* kPlain = L"";

struct FilterRow {
    rkScriptFilter filter;
    bool Capabilities::*plugin;  // null: needs none
    const wchar_t* name;
    std::array<const wchar_t*, kKindCount> advice;  // by FileKind
};

constexpr FilterRow kFilterRows[] = {
    // The advice for raw files, AVI, MOV and others.
    {rkAviSourceFilter, nullptr, L"AviSource", {kBad, kGood, kBad, kBad}},
    {rkOpenDMLSourceFilter, nullptr, L"OpenDMLSource", {kBad, kGood, kBad, kBad}},
    {rkAviFileSourceFilter, nullptr, L"AviFileSource", {kBad, kGood, kBad, kBad}},
    {rkDirectShowSourceFilter, nullptr, L"DirectShowSource", {kCrash, kCrash, kCrash, kCrash}},
    {rkDirectShowSource2Filter, &Capabilities::avss, L"DirectShowSource2", {kBad, kPlain, kPlain, kGood}},
    {rkQTSourceFilter, &Capabilities::qtSource, L"QTSource", {kBad, kPlain, kGood, kPlain}},
    {rkFFMpegSourceFilter, &Capabilities::ffmpegSource, L"FFMpegSource", {kBad, kPlain, kPlain, kGood}},
    {rkRawSourceFilter, &Capabilities::rawSource, L"RawSource", {kGood, kBad, kBad, kBad}},
};

FileKind KindOf(const std::wstring& name) {
    if (rkIsRawName(name)) return KindRaw;
    if (rkIsAviName(name)) return KindAvi;
    return rkIsMovName(name) ? KindMov : KindOther;
}

const ScriptForm::Filter& Selected(const ScriptForm& form) {
    return form.filters[static_cast<std::size_t>(form.filter)];
}

}  // namespace

ScriptForm ScriptFormFrom(const FileRecord& record, const Capabilities& capabilities) {
    ScriptForm form;
    const FileKind kind = KindOf(record.name);
    for (const FilterRow& row : kFilterRows) {
        if (row.plugin && !(capabilities.*row.plugin)) continue;
        if (row.filter == record.filter) form.filter = static_cast<int>(form.filters.size());
        form.filters.push_back(
            {row.filter, std::wstring(row.name) + row.advice[kind], DefaultParameters(record, row.filter)});
    }
    const ScriptForm::Filter& selected = Selected(form);
    form.parameters = selected.value == record.filter ? record.parameters : selected.defaultParameters;
    form.customParameters = record.customParameters;
    form.onlyPreferred = record.onlyPreferred;
    return form;
}

void ChooseFilter(ScriptForm& form, int position) {
    form.filter = position;
    if (!form.customParameters) form.parameters = Selected(form).defaultParameters;
}

void SetCustomParameters(ScriptForm& form, bool on) {
    form.customParameters = on;
    if (!on) form.parameters = Selected(form).defaultParameters;
}

void StoreForm(const ScriptForm& form, FileRecord& record) {
    record.filter = Selected(form).value;
    record.parameters = form.parameters.substr(0, kMaxScriptParameters);
    record.onlyPreferred = form.onlyPreferred;
    record.customParameters = form.customParameters;
}
