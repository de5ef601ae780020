#include "app/shell/quit_signals.h"

#include "platform/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

// What the handler writes to; the windows' event loop watches the other end.
int pipeEnds[2] = {-1, -1};

// Runs between any two instructions: it does only what a signal handler may.
void Note(int) {
    const int savedError = errno;
    if (write(pipeEnds[1], "", 1) < 0) {
        // The pipe is full: the windows know already.
    }
    SetEndHandler(SIG_DFL);
    errno = savedError;
}

int OpenPipe() {
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) pipeEnds[0] = pipeEnds[1] = -1;
    return pipeEnds[0];
}

}  // namespace

QuitSignals::QuitSignals() : notifier(OpenPipe(), QSocketNotifier::Read) {
    if (pipeEnds[0] < 0) return;  // signals keep their usual effect
    connect(&notifier, &QSocketNotifier::activated, this, [this] {
        char byte;
        if (read(pipeEnds[0], &byte, 1) == 1) emit Received();
    });
    SetEndHandler(Note);
}

QuitSignals::~QuitSignals() {
    if (pipeEnds[0] < 0) return;
    SetEndHandler(SIG_DFL);
    notifier.setEnabled(false);
    for (int& end : pipeEnds) {
        close(end);
        end = -1;
    }
}
