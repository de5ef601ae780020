#pragma once

#include <string>

/// The file of the running executable; empty if the system doesn't tell. One that has been replaced since the
/// start keeps its name.
std::wstring ProgramPath();

/// The directory of the running executable, ending in a separator; empty if the system doesn't tell.
std::wstring ProgramDirectory();

/// Whether the running executable lies below /usr: packages or the administrator put it there, and replace
/// it.
bool IsProgramOfSystem();

/// Where the program writes what belongs beside it, ending in a separator: its own directory if that can be
/// written to and the program isn't the system's, otherwise the user's data directory
/// (`$XDG_DATA_HOME/tolvane/`, `~/.local/share/tolvane/`). That may be missing: who writes there makes it.
std::wstring WritableProgramDirectory();
