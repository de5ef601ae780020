#pragma once

#include "platform/qt/plain_label.h"

#include <QWidget>

#include <functional>

class QSlider;

/// A slider with its value as text behind it.
class ValueSlider : public QWidget {
    Q_OBJECT

public:
    using Format = std::function<QString(int position)>;

    /// Positions from `first` to `last`. `name` is what a screen reader calls it. Without `format` the
    /// position is the value.
    ValueSlider(const QString& name, int first, int last, Format format = {}, QWidget* parent = nullptr);

    int Position() const;

    /// Moves the slider, to its end if `position` lies beyond that, and shows the value; `Moved` isn't sent.
    void SetPosition(int position);
    /// Shows another value than the position's, until the slider moves.
    void SetText(const QString& text);

    /// Keeps room for this value as well, so that the sliders of several rows end on one line.
    void KeepRoomFor(const QString& widest);

signals:
    /// The user has moved the slider.
    void Moved(int position);

protected:
    void changeEvent(QEvent* event) override;

private:
    void ShowPosition(int position);
    void FitLabel();

    Format format;
    QString widestElsewhere;
    QSlider* slider;
    PlainLabel* value;
};
