#include "platform/qt/key_filter.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace {

// Keys go to the focused widget, or to the window if there is none; and on to its parents if that leaves
// them.
bool IsFirstReceiver(const QWidget& widget) {
    const QWidget* focused = QApplication::focusWidget();
    return &widget == (focused ? focused : QApplication::activeWindow());
}

// Text can be entered exactly where an input method may.
bool IsEditable(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_InputMethodEnabled);
}

}  // namespace

KeyFilter::KeyFilter(QObject* application) : QObject(application) {
    application->installEventFilter(this);
}

KeyFilter& KeyFilter::OfApplication() {
    static QPointer<KeyFilter> filter;
    if (!filter) filter = new KeyFilter(qApp);
    return *filter;
}

void KeyFilter::Register(QWidget* window, Keys keys) {
    Remove(window);
    entries.push_back({window, std::move(keys)});
}

void KeyFilter::Remove(QWidget* window) {
    std::erase_if(entries, [&](const Entry& entry) { return !entry.window || entry.window == window; });
}

bool KeyFilter::ActsOn(const QWidget& receiver) const {
    const bool registered = std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.window == receiver.window();
    });
    return registered && IsFirstReceiver(receiver) && !IsEditable(receiver);
}

std::vector<KeyFilter::Action> KeyFilter::ActionsFor(QKeyCombination key) const {
    std::vector<Action> actions;
    for (const Entry& entry : entries) {
        if (!entry.window) continue;
        for (const auto& [combination, action] : entry.keys) {
            if (combination == key) actions.push_back(action);
        }
    }
    return actions;
}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
    const bool isAnnouncement = event->type() == QEvent::ShortcutOverride;
    if (!isAnnouncement && event->type() != QEvent::KeyPress) return false;
    const auto* receiver = qobject_cast<QWidget*>(watched);
    if (!receiver || !ActsOn(*receiver)) return false;

    auto* keyEvent = static_cast<QKeyEvent*>(event);
    const QKeyCombination key(keyEvent->modifiers() & ~Qt::KeypadModifier, Qt::Key(keyEvent->key()));
    const std::vector<Action> actions = ActionsFor(key);
    if (actions.empty()) return false;

    bool isTaken = isAnnouncement;  // claimed: no shortcut acts, and the press follows
    if (!isAnnouncement) {
        for (const Action& action : actions) isTaken |= action();
    }
    if (isTaken) keyEvent->accept();
    return isTaken;
}
