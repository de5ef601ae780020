#pragma once

#include <QKeyCombination>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

/// Keys that act in all windows of a family, ahead of what the focused control would do with them: a
/// read-only field or a slider doesn't swallow the arrows.
///
/// While the active window is a registered one, a key is offered once to each registered window that has it,
/// the earliest first; if any of them takes it, nothing else gets it. Fields that can be edited keep all
/// their keys. Windows that aren't registered, message boxes and menus among them, are let alone. GUI thread
/// only.
class KeyFilter : public QObject {
    Q_OBJECT

public:
    /// Whether the key was taken. May register and remove windows.
    using Action = std::function<bool()>;
    using Keys = std::vector<std::pair<QKeyCombination, Action>>;

    /// The one filter of the program. It goes with the application.
    static KeyFilter& OfApplication();

    /// The window stays in the set until it is removed or destroyed. A second call replaces its keys.
    void Register(QWidget* window, Keys keys);
    void Remove(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Entry {
        QPointer<QWidget> window;
        Keys keys;
    };

    explicit KeyFilter(QObject* application);
    bool ActsOn(const QWidget& receiver) const;
    std::vector<Action> ActionsFor(QKeyCombination key) const;

    std::vector<Entry> entries;
};
