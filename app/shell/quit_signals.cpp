#include "app/shell/quit_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

constexpr int kSignals[] = {SIGHUP, SIGINT, SIGTERM};

// What the handler writes to; the windows' event loop watches the other end.
int pipeEnds[2] = {-1, -1};

/// A program that is to outlive its terminal is started with this signal ignored.
bool OutlivesTerminal() {
    struct sigaction action = {};
    return sigaction(SIGHUP, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void SetHandlers(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : kSignals)
        if (number != SIGHUP || !OutlivesTerminal()) sigaction(number, &action, nullptr);
}

// Runs between any two instructions: it does only what a signal handler may.
void Note(int) {
    const int savedError = errno;
    if (write(pipeEnds[1], "", 1) < 0) {
        // The pipe is full: the windows know already.
    }
    SetHandlers(SIG_DFL);
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
    SetHandlers(Note);
}

QuitSignals::~QuitSignals() {
    if (pipeEnds[0] < 0) return;
    SetHandlers(SIG_DFL);
    notifier.setEnabled(false);
    for (int& end : pipeEnds) {
        close(end);
        end = -1;
    }
}
