#pragma once

#include <QLineEdit>

/// A field that shows a number and can't be edited: right-aligned, as wide as a number of `digits` needs. It
/// takes the focus by click only, to be copied from.
class ValueField : public QLineEdit {
    Q_OBJECT

public:
    explicit ValueField(int digits, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int digits;
};
