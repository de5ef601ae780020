#pragma once

#include <vector>

#include "platform/script_host/script_function.h"

/// The functions that scripts have without a plug-in: AviSource, OpenDMLSource, AviFileSource (AVI files and
/// nothing else) and DirectShowSource (every container).
std::vector<ScriptFunction> BuiltinSources();
