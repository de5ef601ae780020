#include "cli/stop_signals.h"

#include <csignal>

#include "engine/model/interruption_token.h"

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM};

InterruptionToken* stoppedToken = nullptr;

// Runs between any two instructions: it does only what a signal handler may.
void Stop(int) {
    stoppedToken->Stop();
    for (const int number : kSignals) std::signal(number, SIG_DFL);
}

}  // namespace

StopSignals::StopSignals(InterruptionToken& token) {
    stoppedToken = &token;
    struct sigaction action = {};
    action.sa_handler = Stop;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : kSignals) sigaction(number, &action, nullptr);
}

StopSignals::~StopSignals() {
    for (const int number : kSignals) std::signal(number, SIG_DFL);
}
