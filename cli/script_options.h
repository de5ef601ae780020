#pragma once

#include "cli/options.h"
#include "engine/model/file_record.h"

/// Decides whether the file of `role` is opened through a script, and how. `record` has its name, and its
/// size and layout if it is raw. Throws UsageError.
void SetScript(const Options& options, FileRole role, FileRecord& record);

/// Throws UsageError for options about scripts that no file takes, which would go unnoticed.
void CheckScriptOptionsAreUsed(const Options& options, const std::vector<FileRecord>& records);
