#include "tests/app/user.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QGroupBox>
#include <QTimer>

namespace {

constexpr int kPatienceMs = 30000;
constexpr int kIntervalMs = 5;

std::string Caption(const QWidget& widget) {
    QString text;
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) text = button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) text = group->title();
    return text.remove(u'&').toStdString();
}

}  // namespace

QWidget* Find(QWidget& window, const std::string& name) {
    const QList<QWidget*> children = window.findChildren<QWidget*>();
    for (QWidget* child : children)
        if (child->accessibleName().toStdString() == name) return child;
    for (QWidget* child : children)
        if (Caption(*child) == name) return child;
    ADD_FAILURE() << "no control \"" << name << '"';
    return &window;
}

void Click(QWidget& window, const std::string& name) {
    QWidget* const control = Find(window, name);
    ASSERT_TRUE(control->isEnabled()) << name;
    if (auto* button = qobject_cast<QAbstractButton*>(control)) button->click();
}

User::User() {
    time.start();
    TryNext();
}

User::~User() {
    for (const Step& step : steps) ADD_FAILURE() << "never came to an end: \"" << step.title << '"';
}

User& User::In(const std::string& title, Act act) {
    steps.push_back({title, std::move(act)});
    return *this;
}

User& User::Press(const std::string& title, const std::string& button) {
    return In(title, [button](QWidget& window) {
        auto* const found = qobject_cast<QAbstractButton*>(Find(window, button));
        if (!found || !found->isEnabled()) return false;
        found->click();
        return true;
    });
}

void User::TryNext() {
    // A timer of its own each time: one that is running a step doesn't go off in the windows that the step
    // opens.
    QTimer::singleShot(kIntervalMs, &context, [this] { TryNext(); });
    QWidget* const window = QApplication::activeModalWidget();
    if (window && time.elapsed() > kPatienceMs) {
        ADD_FAILURE() << "nobody closes \"" << window->windowTitle().toStdString() << '"';
        if (auto* dialog = qobject_cast<QDialog*>(window)) dialog->done(0);
        return;
    }
    if (!window || steps.empty() || window->windowTitle().toStdString() != steps.front().title) return;
    // The step is taken away while it is done: it may open another window, in which the next one acts.
    Step step = std::move(steps.front());
    steps.pop_front();
    if (!step.act(*window)) steps.push_front(std::move(step));
}
