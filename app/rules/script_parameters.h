#pragma once

#include <string>

#include "engine/model/file_record.h"

/// The script sources, by the number that settings store.
enum ScriptFilter : int {
    FilterAviSource = 0,
    FilterOpenDmlSource = 1,
    FilterAviFileSource = 2,
    FilterDirectShowSource = 3,
    FilterDirectShowSource2 = 4,
    FilterFFMpegSource = 5,
    FilterQtSource = 6,
    FilterRawSource = 7,
};

/// The arguments that `filter` gets unless the user writes others. Those of RawSource are made of the record's
/// size and layout. Empty for no filter's number.
std::wstring DefaultParameters(const FileRecord& record, int filter);

/// Gives a raw file the parameters of RawSource for its present size and layout, unless the user wrote others.
void TakeRawParameters(FileRecord& record);

/// Takes the filter that suits the file's name, with its default parameters. A file that isn't raw loses its
/// size and layout.
void TakeFilterByName(FileRecord& record);
