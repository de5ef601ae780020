#include "app/shell/open_preview.h"

#include "app/preview/preview_dialog.h"
#include "app/rules/run_start.h"
#include "platform/qt/message_box.h"

#include <QEventLoop>
#include <QGuiApplication>

#include <exception>
#include <thread>

namespace {

/// While it lives, the pointer shows that something is under way.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

std::unique_ptr<rkIVideoSource> Open(const FileRecord& record) {
    try {
        return record.OpenSource(true);
    } catch (const std::exception&) {  // no memory for a huge picture: it doesn't open
        return nullptr;
    }
}

/// Some containers are read from end to end before they are open, so that is left to another thread.
std::unique_ptr<rkIVideoSource> OpenWaiting(const FileRecord& record) {
    const WaitCursor cursor;
    std::unique_ptr<rkIVideoSource> source;
    QEventLoop loop;
    std::thread opening([&] {
        source = Open(record);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    opening.join();
    return source;
}

}  // namespace

void OpenPreview(QWidget* parent, const FileRecord& slot, int yuvTable) {
    std::unique_ptr<rkIVideoSource> source = OpenWaiting(ToOpen(slot));
    if (source) {
        ShowPreview(parent, std::move(source), yuvTable);
        return;
    }
    const BoxText text = PreviewFailure(slot);
    ShowMessage(parent, QMessageBox::Critical, text.title, text.text);
}
