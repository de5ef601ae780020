#pragma once

#include "platform/product_addresses.h"
#include "update/auto_updater.h"

#include <string>

/// The desktop program from its start to its end; its exit status. The arguments of the command line mean
/// nothing to it. It looks for newer versions of itself at `updateServer`.
int RunShell(char* programName, const std::string& updateServer = UpdateServer(),
             UpdaterSettings updaterSettings = {});
