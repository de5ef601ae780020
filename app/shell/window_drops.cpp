#include "app/shell/window_drops.h"

#include "app/shell/file_step.h"
#include "platform/qt/local_files.h"

#include <QDropEvent>
#include <QWidget>

#include <utility>

WindowDrops::WindowDrops(QWidget& mainWindow, FileStep& fileStep, std::function<const MeasurementJob*()> job)
    : QObject(&mainWindow), window(mainWindow), step(fileStep), currentJob(std::move(job)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

std::vector<RoutedFile> WindowDrops::Route(const QDropEvent& event) const {
    const MeasurementJob* const job = currentJob();
    if (!job) return {};
    // Several files are meant for the window, wherever in it they are let go.
    std::optional<FileRow> target;
    if (dragged.size() == 1) target = step.RowAt(step.mapFrom(&window, event.position().toPoint()));
    return RouteDrop(dragged, target, *job);
}

void WindowDrops::Answer(QDropEvent& event, const std::vector<RoutedFile>& files) {
    std::vector<FileRow> rows;
    for (const RoutedFile& file : files) rows.push_back(file.row);
    step.ShowDropTargets(rows);
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(!files.empty());
}

void WindowDrops::Enter(QDropEvent& event) {
    dragged = LocalFiles(*event.mimeData());
    Move(event);
    // A drag that is refused where it comes in gets no moves.
    if (currentJob() && !dragged.empty()) event.accept();
}

void WindowDrops::Move(QDropEvent& event) {
    Answer(event, Route(event));
}

void WindowDrops::Drop(QDropEvent& event) {
    const std::vector<RoutedFile> files = Route(event);
    Answer(event, files);
    step.ShowDropTargets({});
    if (files.empty()) return;
    QMetaObject::invokeMethod(
        this, [this, files] { emit Dropped(files); }, Qt::QueuedConnection);
}

bool WindowDrops::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
            Enter(static_cast<QDropEvent&>(*event));
            return true;
        case QEvent::DragMove:
            Move(static_cast<QDropEvent&>(*event));
            return true;
        case QEvent::Drop:
            Drop(static_cast<QDropEvent&>(*event));
            return true;
        case QEvent::DragLeave:
            step.ShowDropTargets({});
            return true;
        default:
            return QObject::eventFilter(watched, event);
    }
}
