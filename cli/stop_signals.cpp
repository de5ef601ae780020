#include "cli/stop_signals.h"

#include <csignal>

#include "engine/model/interruption_token.h"

namespace {

constexpr int kSignals[] = {SIGHUP, SIGINT, SIGTERM};

InterruptionToken* stoppedToken = nullptr;

/// A program that is to outlive its terminal is started with this signal ignored.
bool OutlivesTerminal() {
    struct sigaction action = {};
    return sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void RestoreDefaults() {
    for (const int number : kSignals)
        if (number != SIGHUP || !OutlivesTerminal()) std::signal(number, SIG_DFL);
}

// Runs between any two instructions: it does only what a signal handler may.
void Stop(int) {
    stoppedToken->Stop();
    RestoreDefaults();
}

}  // namespace

StopSignals::StopSignals(InterruptionToken& token) {
    stoppedToken = &token;
    struct sigaction action = {};
    action.sa_handler = Stop;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : kSignals)
        if (number != SIGHUP || !OutlivesTerminal()) sigaction(number, &action, nullptr);
}

StopSignals::~StopSignals() {
    RestoreDefaults();
}
