#pragma once

#include <string_view>

/// Whether a file of an update is a program, of which the version before is kept beside it: executables and
/// libraries of either kind of system by their endings, a metric plug-in, and this system's programs, which
/// have none. `ownName` is the file name of the running program.
bool IsProgramFile(std::wstring_view name, std::wstring_view ownName);
