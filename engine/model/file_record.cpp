#include "engine/model/file_record.h"

#include "video/file_kind.h"
#include "video/sources/create_source.h"

namespace {

std::unique_ptr<rkIVideoSource> OpenDirectly(const FileRecord& record, bool preferPlanar) {
    if (record.width > 0 && record.height > 0)
        return rkCreateYuvSource(record.sourceName, record.width, record.height, record.yuvType);
    if (record.width == 0 && record.height == 0) return rkCreateVideoSource(record.sourceName, preferPlanar);
    return nullptr;
}

/// There is no script host to open a generated script with, so every attempt fails.
std::unique_ptr<rkIVideoSource> OpenThroughScript(const FileRecord&, bool) {
    return nullptr;
}

}  // namespace

std::unique_ptr<rkIVideoSource> FileRecord::OpenSource(bool preferPlanar) const {
    const bool isScript = rkIsAvsName(sourceName);
    return useAvs && !isScript ? OpenThroughScript(*this, preferPlanar) : OpenDirectly(*this, preferPlanar);
}
