#pragma once

#include <string>

#include "engine/model/measurement_job.h"

/// Passes a line to the run's log, if it has one.
void LogLine(const RunParameters& run, const std::wstring& line);

/// `text` in double quotes.
std::wstring Quoted(const std::wstring& text);

/// The record of an opened file by its index.
const FileRecord& RecordOf(const RunParameters& run, int file);

/// Tells the run's log if pictures get no captions because there is no font for them.
void LogMissingFont(const RunParameters& run);

/// Tells the run's log of the exception that is being handled.
void LogFailure(const RunParameters& run) noexcept;
