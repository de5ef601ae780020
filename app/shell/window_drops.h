#pragma once

#include "app/rules/drop.h"

#include <QObject>

#include <functional>
#include <vector>

class FileStep;
class QDropEvent;
class QWidget;

/// Takes files that are dropped on the main dialog, for its rows. While they are dragged, the rows that they
/// would go to are outlined.
class WindowDrops : public QObject {
    Q_OBJECT

public:
    /// `job` tells whether files are taken now, by null for no. The step is within the window, which owns
    /// this.
    WindowDrops(QWidget& window, FileStep& step, std::function<const MeasurementJob*()> job);

signals:
    /// Sent after the drop has ended, so that a receiver may run dialogs.
    void Dropped(const std::vector<RoutedFile>& files);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Enter(QDropEvent& event);
    void Move(QDropEvent& event);
    void Drop(QDropEvent& event);
    std::vector<RoutedFile> Route(const QDropEvent& event) const;
    void Answer(QDropEvent& event, const std::vector<RoutedFile>& files);

    QWidget& window;
    FileStep& step;
    std::function<const MeasurementJob*()> currentJob;
    std::vector<std::wstring> dragged;  // what hovers over the window
};
