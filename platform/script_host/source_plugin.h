#pragma once

#include <string>
#include <vector>

#include "platform/script_host/script_function.h"

/// The file that a script's `loadplugin` names, with either separator: inside the directory of the program,
/// or in the user's data directory if the program can't write to its own. Empty for a name that leads out of
/// there (absolute, or with `..`) and for a file that doesn't exist: a script may come from anywhere, and
/// must not choose code to be run.
std::wstring FindSourcePlugin(const std::string& name);

/// Loads a plug-in and appends its functions, which keep it loaded. The reason if that fails, else empty.
/// Throws std::bad_alloc.
std::string LoadSourcePlugin(const std::wstring& path, std::vector<ScriptFunction>& functions);
