#pragma once

#include <string>

#include "engine/model/file_record.h"

/// `rkDefaultParameters` for the record's size and layout.
std::wstring DefaultParameters(const FileRecord& record, int filter);

/// Gives a raw file the parameters of RawSource for its present size and layout, unless the user wrote
/// others.
void TakeRawParameters(FileRecord& record);

/// Takes the filter that suits the file's name, with its default parameters. A file that isn't raw loses its
/// size and layout.
void TakeFilterByName(FileRecord& record);
