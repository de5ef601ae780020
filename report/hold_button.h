#pragma once

#include "platform/qt/icon_button.h"
#include "report/rules/frame_range.h"

#include <QTimer>

namespace Report {

/// A button that repeats its command while the mouse holds it, faster and faster. A short press, the space
/// key and a screen reader give the command once.
class HoldButton : public IconButton {
    Q_OBJECT

public:
    HoldButton(IconName icon, const QString& text, const QString& name, QWidget* parent = nullptr);

signals:
    void Command();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Repeat();
    void StopHolding();

    QTimer timer;
    HoldPace pace;
    bool hasRepeated = false;
};

}  // namespace Report
