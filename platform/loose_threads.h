#pragma once

#include <chrono>
#include <functional>

/// Threads that nobody waits for: what they are stuck in, a disk, a network or a codec, may take as long as
/// it likes. They end by themselves, and the process asks before it takes its static objects away from under
/// them.

/// Runs `work` on such a thread, and destroys it there. `work` doesn't throw. Throws std::system_error if
/// there is no thread to be had.
void StartLooseThread(std::function<void()> work);

/// Waits until all loose threads have ended, but no longer than `patience`. With false the process must be
/// left by `std::_Exit`. For the thread that started them, or the last one.
bool LooseThreadsEnd(std::chrono::milliseconds patience);
