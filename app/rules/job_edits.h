#pragma once

#include <string>

#include "app/rules/file_rows.h"
#include "engine/model/measurement_job.h"

/// What the main dialog's fields and boxes do to the job. Boxes that aren't named here store their flag and
/// that is all.

constexpr std::size_t kMaxTypedPath = 260;

/// A path was typed or pasted: at most `kMaxTypedPath` characters are taken. What browsing or dropping brings
/// in doesn't come this way and is taken whole.
void EditPath(MeasurementJob& job, FileRow row, const std::wstring& text);

/// "Open with AVISynth". True for a raw file: then the raw settings are to be asked for, which can turn the
/// box back.
bool SetUseAvs(FileRecord& slot, bool on);

void SetComparativeAnalysis(MeasurementJob& job, bool on);
void SetSaveBadFrames(MeasurementJob& job, bool on);
