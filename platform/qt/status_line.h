#pragma once

#include "platform/qt/palette.h"

#include <QWidget>

class PlainLabel;

/// One line that tells how things stand: an icon in the colour of the status, and words. Words that don't fit
/// are cut; the tooltip has them whole.
class StatusLine : public QWidget {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent = nullptr);

    void Show(Status status, const QString& text);
    QString Text() const;

private:
    class Sign;

    Sign* sign;
    PlainLabel* words;
};
