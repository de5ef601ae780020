#include "engine/model/file_record.h"

#include <vector>

#include "video/avisynth/open_through_script.h"
#include "video/file_kind.h"
#include "video/sources/create_source.h"

namespace {

std::unique_ptr<rkIVideoSource> OpenDirectly(const FileRecord& record, bool preferPlanar) {
    if (record.width > 0 && record.height > 0)
        return rkCreateYuvSource(record.sourceName, record.width, record.height, record.yuvType);
    if (record.width == 0 && record.height == 0) return rkCreateVideoSource(record.sourceName, preferPlanar);
    return nullptr;
}

/// What is tried when the preferred filter fails, with default parameters and in this order.
std::vector<int> FallbackFilters(const FileRecord& record) {
    if (record.width > 0 && record.height > 0) return {rkRawSourceFilter};
    if (record.width != 0 || record.height != 0) return {};
    return {rkAviSourceFilter,         rkOpenDMLSourceFilter, rkAviFileSourceFilter,
            rkDirectShowSource2Filter, rkQTSourceFilter,      rkFFMpegSourceFilter};
}

std::unique_ptr<rkIVideoSource> OpenThroughScript(const FileRecord& record, bool preferPlanar) {
    const rkScriptInput input = {record.sourceName, record.parameters, record.width, record.height,
                                 record.yuvType};
    auto source = rkOpenThroughScript(input, record.filter, preferPlanar, false);
    if (source != nullptr || record.onlyPreferred) return source;
    for (const int filter : FallbackFilters(record)) {
        source = rkOpenThroughScript(input, filter, preferPlanar, true);
        if (source != nullptr) break;
    }
    return source;
}

}  // namespace

std::mutex& FileOpeningMutex() {
    static std::mutex mutex;
    return mutex;
}

std::unique_ptr<rkIVideoSource> FileRecord::OpenSource(bool preferPlanar) const {
    const std::lock_guard lock(FileOpeningMutex());
    const bool isScript = rkIsAvsName(sourceName);
    return useAvs && !isScript ? OpenThroughScript(*this, preferPlanar) : OpenDirectly(*this, preferPlanar);
}
