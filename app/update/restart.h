#pragma once

#include <string>

class CAutoUpdater;

/// The first step of a start: installs what an earlier start has downloaded. If that came anywhere, the
/// program starts anew in place of this process, and the call doesn't return; what couldn't be installed, a
/// message tells. On the thread of the windows, before there are any.
void InstallDownloadedUpdate(CAutoUpdater& updater);

/// Starts `program` in place of this process, with its environment and without arguments. Nothing of this
/// process is destroyed or saved; its open files are closed. Returns only if the program can't be started.
void RestartProgram(const std::wstring& program);
