#pragma once

#include <QObject>

#include <functional>

class QAbstractButton;

/// Keeps buttons from acting while another window blocks theirs.
///
/// A mnemonic and an assistive program press a button at once, and its own timer has it click a moment later.
/// If another click opens a dialog in between, the timer goes off in the event loop of that dialog, and the
/// late click would open a second one over it. Such a click is lost, as one by the mouse would be. Boxes and
/// radio buttons are let alone: what they change is a value.
class LateClicks : public QObject {
public:
    /// For all buttons of the application, as long as this lives. `isBusy` says whether the program works
    /// without a dialog before it, and takes no clicks at all.
    explicit LateClicks(std::function<bool()> isBusy);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool IsBlocked(const QAbstractButton& button) const;

    const std::function<bool()> isBusy;
};
