#pragma once

#include <QObject>
#include <QSocketNotifier>

/// While it lives, the first SIGINT, SIGTERM or SIGHUP is reported on the thread of the windows; a second one
/// ends the process at once. A SIGHUP that was ignored at the start stays ignored. One at a time in the
/// process.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    QuitSignals();
    ~QuitSignals() override;

signals:
    void Received();

private:
    QSocketNotifier notifier;
};
