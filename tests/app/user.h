#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <deque>
#include <functional>
#include <string>

/// The control of a window whose accessible name or text without "&" is `name`; a failure and the window
/// itself if there is none.
QWidget* Find(QWidget& window, const std::string& name);

template <class Type>
Type& Find(QWidget& window, const std::string& name) {
    auto* const found = qobject_cast<Type*>(Find(window, name));
    if (!found) std::abort();
    return *found;
}

/// Clicks as a user does, also to turn a box on or off.
void Click(QWidget& window, const std::string& name);

/// Acts in modal windows, one step after the other, while a test waits in the call that has opened them.
class User {
public:
    /// What to do in a window with this title. Tried again until it answers true.
    using Act = std::function<bool(QWidget& window)>;

    User();
    ~User();  ///< a failure if a step is left

    User& In(const std::string& title, Act act);
    /// In the window with this title, presses a button as soon as it can be used.
    User& Press(const std::string& title, const std::string& button);

private:
    struct Step {
        std::string title;
        Act act;
    };

    void TryNext();

    std::deque<Step> steps;
    QElapsedTimer time;
    QObject context;  // of the timers
};
