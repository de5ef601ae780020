#pragma once

/// Has `handler` called for what asks a program to end: SIGHUP, SIGINT and SIGTERM; SIG_DFL lets them end it
/// at once. A SIGHUP that was ignored at the start stays ignored: the program is to outlive its terminal. May
/// be called from the handler.
void SetEndHandler(void (*handler)(int));
