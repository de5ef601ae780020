#pragma once

#include <array>
#include <string>

#include "engine/model/measurement_job.h"

/// The rows of file selection. The first three are the positions in `fileSlots`.
enum FileRow : int { RowOriginal = 0, RowProcessed = 1, RowSecond = 2, RowMask = 3 };
inline constexpr std::array kFileRows = {RowOriginal, RowProcessed, RowSecond, RowMask};

FileRecord& SlotOf(MeasurementJob& job, FileRow row);
const FileRecord& SlotOf(const MeasurementJob& job, FileRow row);

/// A record of no file.
FileRecord EmptySlot();

void SetPath(FileRecord& slot, const std::wstring& path);

/// Whether the box that governs the row is on; the first two rows have none.
bool IsRowOpen(const MeasurementJob& job, FileRow row);

/// Whether some file slot holds a path that isn't a bitmap's. The mask is no file slot, and a slot counts
/// also while its row isn't open.
bool HasVideoPath(const MeasurementJob& job);

/// The path's directory without the separator behind it, "/" for what lies right below it; a path without a
/// separator is taken whole.
std::wstring DirectoryOf(const std::wstring& path);
