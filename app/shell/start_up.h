#pragma once

/// The desktop program from its start to its end; its exit status. The arguments of the command line mean nothing to it.
int RunShell(char* programName);
