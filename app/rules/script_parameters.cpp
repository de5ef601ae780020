#include "app/rules/script_parameters.h"

#include "video/avisynth/script_filter.h"
#include "video/file_kind.h"

std::wstring DefaultParameters(const FileRecord& record, int filter) {
    rkScriptInput input;
    input.width = record.width;
    input.height = record.height;
    input.yuvType = record.yuvType;
    return rkDefaultParameters(input, filter);
}

void TakeRawParameters(FileRecord& record) {
    if (!record.customParameters) record.parameters = DefaultParameters(record, rkRawSourceFilter);
}

void TakeFilterByName(FileRecord& record) {
    if (!rkIsRawName(record.name)) record.width = record.height = record.yuvType = 0;
    record.filter = rkScriptFilterForFile(record.name);
    record.parameters = DefaultParameters(record, record.filter);
}
