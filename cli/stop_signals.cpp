#include "cli/stop_signals.h"

#include <csignal>

#include "engine/model/interruption_token.h"
#include "platform/end_signals.h"

namespace {

InterruptionToken* stoppedToken = nullptr;

// Runs between any two instructions: it does only what a signal handler may.
void Stop(int) {
    stoppedToken->Stop();
    SetEndHandler(SIG_DFL);
}

}  // namespace

StopSignals::StopSignals(InterruptionToken& token) {
    stoppedToken = &token;
    SetEndHandler(Stop);
}

StopSignals::~StopSignals() {
    SetEndHandler(SIG_DFL);
}
