#include "platform/end_signals.h"

#include <csignal>

namespace {

constexpr int kEndSignals[] = {SIGHUP, SIGINT, SIGTERM};

bool OutlivesTerminal() {
    struct sigaction action = {};
    return sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

// Runs in a signal handler too, between any two instructions: it does only what one may there.
void SetEndHandler(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : kEndSignals)
        if (number != SIGHUP || !OutlivesTerminal()) sigaction(number, &action, nullptr);
}
