#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace Report {

/// The wait cursor for as long as this lives.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor)); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace Report
