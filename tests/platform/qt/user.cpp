#include "tests/platform/qt/user.h"

#include <algorithm>

QWidget* Named(const QList<QWidget*>& controls, const std::string& name) {
    for (QWidget* control : controls)
        if (control->accessibleName().toStdString() == name) return control;
    for (QWidget* control : controls) {
        const char* text = qobject_cast<QGroupBox*>(control) ? "title" : "text";
        if (control->property(text).toString().remove(u'&').toStdString() == name) return control;
    }
    qFatal("no control \"%s\"", name.c_str());
}

void Click(const QWidget& window, const std::string& name) {
    QWidget* const control = Find(window, name);
    ASSERT_TRUE(control->isEnabled()) << name;
    if (auto* button = qobject_cast<QAbstractButton*>(control)) button->click();
}

void Activate(QWidget& window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

void Press(QWidget& window, QKeyCombination key) {
    Activate(window);
    QWidget* const focused = QApplication::focusWidget();
    QTest::keyClick(focused ? focused : &window, key.key(), key.keyboardModifiers());
}

std::string Mnemonics(const QWidget& window) {
    std::string letters;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (widget->window() != &window || (label && !label->buddy())) continue;
        const QString text = widget->property("text").toString() + widget->property("title").toString();
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty()) letters += key.toString().back().toLatin1();
    }
    std::sort(letters.begin(), letters.end());
    return letters;
}

User::User() {
    time.start();
    TryNext();
}

User::~User() {
    for (const auto& [title, act] : steps) ADD_FAILURE() << "never came to an end: \"" << title << '"';
}

User& User::In(const std::string& title, Act act) {
    steps.emplace_back(title, std::move(act));
    return *this;
}

User& User::Close(const std::string& title) {
    return In(title, [](QWidget& window) { return window.close(); });
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
    constexpr int kIntervalMs = 5;
    constexpr int kPatienceMs = 30000;
    // A timer of its own each time: one that is running a step doesn't go off in the windows that it opens.
    QTimer::singleShot(kIntervalMs, &context, [this] { TryNext(); });
    QWidget* const window = QApplication::activeModalWidget();
    if (window && time.elapsed() > kPatienceMs) {
        ADD_FAILURE() << "nobody closes \"" << window->windowTitle().toStdString() << '"';
        if (auto* dialog = qobject_cast<QDialog*>(window)) dialog->done(0);
        return;
    }
    if (!window || steps.empty() || window->windowTitle().toStdString() != steps.front().first) return;
    // The step is taken away while it is done: it may open another window, in which the next one acts.
    auto step = std::move(steps.front());
    steps.pop_front();
    if (!step.second(*window)) steps.push_front(std::move(step));
}
