#include "cli/script_options.h"

#include <algorithm>

#include "video/avisynth/script_filter.h"
#include "video/file_kind.h"

namespace {

bool IsRaw(const FileRecord& record) {
    return record.width > 0;
}

/// What no source of ours reads opens through a script only.
bool NeedsScript(const FileRecord& record) {
    const std::wstring& name = record.sourceName;
    return !IsRaw(record) && !rkIsAviName(name) && !rkIsAvsName(name) && !rkIsBmpName(name) &&
           !rkIsY4mName(name);
}

bool IsOpenedThroughScript(const FileRecord& record) {
    return record.useAvs && !rkIsAvsName(record.sourceName);
}

}  // namespace

void SetScript(const Options& options, FileRole role, FileRecord& record) {
    const ScriptOptions& own = options.files[role].script;
    record.useAvs = options.script.use || own.IsGiven() || NeedsScript(record);
    if (!IsOpenedThroughScript(record)) return;

    const int suitable = IsRaw(record) ? rkRawSourceFilter : rkScriptFilterForFile(record.sourceName);
    record.filter = own.filter.value_or(options.script.filter.value_or(suitable));
    record.onlyPreferred = own.onlyPreferred || options.script.onlyPreferred;
    const auto& parameters = own.parameters ? own.parameters : options.script.parameters;
    record.customParameters = parameters.has_value();
    const rkScriptInput input = {record.sourceName, L"", record.width, record.height, record.yuvType};
    record.parameters = parameters ? *parameters : rkDefaultParameters(input, record.filter);
    if (IsRaw(record) && !record.customParameters && !rkRawSourceReads(record.yuvType)) {
        const std::string prefix = options.files[role].layout ? std::string(kRoleNames[role]) + "-" : "";
        throw UsageError(
            "--" + prefix +
            "layout takes IYUV, YV12, Y, UYVY or YUY2 for a raw file that is opened through a script");
    }
}

void CheckScriptOptionsAreUsed(const Options& options, const std::vector<FileRecord>& records) {
    if (!options.script.IsGiven() || std::any_of(records.begin(), records.end(), IsOpenedThroughScript))
        return;
    const char* option = options.script.filter       ? "--avs-filter"
                         : options.script.parameters ? "--avs-parameters"
                         : options.script.use        ? "--avs"
                                                     : "--only-preferred";
    throw UsageError(
        std::string(option) +
        " takes effect on files that are opened through a script; there is none, and --avs makes it all "
        "but .avs files");
}
