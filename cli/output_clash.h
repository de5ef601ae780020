#pragma once

#include <string>
#include <vector>

#include "cli/options.h"

/// Throws UsageError if a file that the options let the program write is one of its inputs, or another
/// output: writing it would destroy a video or a result. Links and different spellings of one path count as
/// one file; devices and pipes may be named as often as one likes.
void CheckOutputsClash(const Options& options);

/// The files that the options name for writing: JSON, log, a CSV of a name of its own.
std::vector<std::wstring> NamedOutputs(const Options& options);
