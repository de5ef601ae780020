#include "app/shell/start_up.h"
#include "platform/loose_threads.h"

#include <cstdlib>

int main(int, char** argv) {
    constexpr std::chrono::milliseconds kPatience{500};
    const int result = RunShell(argv[0]);
    // A thread that is still stuck in a video must not see the program's objects go; it has nothing to save.
    if (!LooseThreadsEnd(kPatience)) std::_Exit(result);
    return result;
}
