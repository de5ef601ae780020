#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

/// The first column of several groups of a window: the widest of its members decides the width of all, so
/// that the fields behind them begin on one line. It follows changes of fonts.
class LabelColumn : public QObject {
    Q_OBJECT

public:
    explicit LabelColumn(QObject* parent = nullptr) : QObject(parent) {}

    /// A label, or a box that stands in the place of one.
    void Add(QWidget* member);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Align();

    QList<QPointer<QWidget>> members;
};
