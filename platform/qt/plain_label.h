#pragma once

#include <QLabel>

/// A label that shows its text letter for letter, whatever a file's name brings into it: no markup, no
/// mnemonic.
class PlainLabel : public QLabel {
    Q_OBJECT

public:
    enum class Tone { Normal, Quiet };  // quiet text stands back behind the controls
    enum class Fit { Whole, Elide };  // whole takes the place that it needs; elided gets "..." and a tooltip

    explicit PlainLabel(const QString& text = {}, Tone tone = Tone::Normal, Fit fit = Fit::Whole,
                        QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool IsCut() const;

    Fit fit;
};
