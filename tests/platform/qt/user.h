#pragma once

// All of Qt that tests of windows touch.
#include <gtest/gtest.h>
#include <QtTest>
#include <QtWidgets>

#include <concepts>
#include <deque>
#include <functional>
#include <string>

/// The first of a window's controls whose accessible name, or text without "&", is `name`; the end of the test
/// program if there is none.
QWidget* Named(const QList<QWidget*>& controls, const std::string& name);

inline QWidget* Find(const QWidget& window, const std::string& name) {
    return Named(window.findChildren<QWidget*>(), name);
}

template <class Type>
Type& Find(const QWidget& window, const std::string& name) {
    QList<QWidget*> controls;
    for (Type* control : window.findChildren<Type*>()) controls.append(control);
    return static_cast<Type&>(*Named(controls, name));
}

/// Clicks as a user does, also to turn a box on or off.
void Click(const QWidget& window, const std::string& name);

/// Makes it the active window.
void Activate(QWidget& window);

/// Presses a key in a window, where it goes to the control that has the focus.
void Press(QWidget& window, QKeyCombination key);

/// The letters of all mnemonics of a window, capital and in ascending order.
std::string Mnemonics(const QWidget& window);

/// Acts in modal windows, one step after the other, while a test waits in the call that has opened them.
class User {
public:
    /// What to do in a window with this title. Tried again until it answers true.
    using Act = std::function<bool(QWidget& window)>;

    User();
    ~User();  ///< a failure if a step is left

    User& In(const std::string& title, Act act);
    /// The same with what is done once, whatever comes of it.
    template <std::invocable<QWidget&> Once>
    requires std::is_void_v<std::invoke_result_t<Once&, QWidget&>> User& In(const std::string& title,
                                                                            Once act) {
        return In(title, Act([act](QWidget& window) { return act(window), true; }));
    }
    User& Close(const std::string& title);
    /// In the window with this title, presses a button as soon as it can be used.
    User& Press(const std::string& title, const std::string& button);

private:
    void TryNext();

    std::deque<std::pair<std::string, Act>> steps;  // titles, and what to do there
    QElapsedTimer time;
    QObject context;  // of the timers
};
