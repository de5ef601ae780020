#include "app/rules/file_rows.h"

#include <algorithm>

#include "app/rules/script_parameters.h"
#include "platform/text.h"
#include "video/file_kind.h"

FileRecord& SlotOf(MeasurementJob& job, FileRow row) {
    if (row == RowMask) return job.maskSlot;
    return job.fileSlots[static_cast<std::size_t>(row)];
}

const FileRecord& SlotOf(const MeasurementJob& job, FileRow row) {
    if (row == RowMask) return job.maskSlot;
    return job.fileSlots[static_cast<std::size_t>(row)];
}

FileRecord EmptySlot() {
    FileRecord slot;
    slot.parameters = DefaultParameters(slot, slot.filter);
    return slot;
}

void SetPath(FileRecord& slot, const std::wstring& path) {
    slot.name = slot.sourceName = path;
}

bool IsRowOpen(const MeasurementJob& job, FileRow row) {
    if (row == RowSecond) return job.comparativeAnalysis;
    if (row == RowMask) return job.maskSlot.useMask;
    return true;
}

bool HasVideoPath(const MeasurementJob& job) {
    return std::any_of(job.fileSlots.begin(), job.fileSlots.end(),
                       [](const FileRecord& slot) { return !slot.name.empty() && !rkIsBmpName(slot.name); });
}

std::wstring DirectoryOf(const std::wstring& path) {
    const std::size_t nameLength = FileNamePart(path).size();
    if (nameLength == path.size()) return path;
    const std::size_t separatorAt = path.size() - nameLength - 1;
    return path.substr(0, separatorAt == 0 ? 1 : separatorAt);
}
