#include "platform/qt/key_filter.h"
#include "tests/platform/qt/user.h"

namespace {

constexpr QKeyCombination kLeft(Qt::Key_Left);
constexpr QKeyCombination kCopy(Qt::CTRL, Qt::Key_C);

/// A window with the controls that would swallow the keys, and a count of what reaches it.
struct Window {
    explicit Window(bool takes = true, bool isRegistered = true) {
        auto* rows = new QVBoxLayout(&widget);
        rows->addWidget(field);
        rows->addWidget(slider);
        slider->setValue(50);
        const auto count = [takes](int& counter) { return [&counter, takes] { return ++counter, takes; }; };
        if (isRegistered)
            KeyFilter::OfApplication().Register(&widget, {{kLeft, count(lefts)}, {kCopy, count(copies)}});
        widget.show();
    }

    void Press(QWidget& control, QKeyCombination key) {
        control.setFocus();
        ::Press(widget, key);
    }

    QWidget widget;
    QLineEdit* field = new QLineEdit(QStringLiteral("12345"));
    QSlider* slider = new QSlider(Qt::Horizontal);
    int lefts = 0;
    int copies = 0;
};

TEST(KeyFilter, ActsBeforeTheFocusedControlButForEditableFields) {
    Window window;
    window.Press(*window.field, kLeft);
    window.Press(*window.field, kCopy);
    EXPECT_EQ(4, window.field->cursorPosition());
    EXPECT_EQ(0, window.lefts + window.copies);

    window.field->setReadOnly(true);
    window.Press(*window.field, kLeft);
    window.Press(*window.field, kCopy);
    window.Press(*window.slider, kLeft);
    window.Press(*window.slider, QKeyCombination(Qt::KeypadModifier, Qt::Key_Left));
    EXPECT_EQ(3, window.lefts);
    EXPECT_EQ(1, window.copies);
    EXPECT_EQ(50, window.slider->value());
    window.Press(*window.slider, QKeyCombination(Qt::Key_Right));
    window.Press(*window.slider, QKeyCombination(Qt::SHIFT, Qt::Key_Left));
    EXPECT_EQ(3, window.lefts);
    EXPECT_EQ(50, window.slider->value());  // one step there, one back
}

TEST(KeyFilter, OffersOnceToEachRegisteredWindowThatIsThere) {
    Window declining(false), taking;
    Window outside(true, false);
    taking.Press(*taking.slider, kLeft);
    EXPECT_EQ(1, declining.lefts);
    EXPECT_EQ(1, taking.lefts);
    EXPECT_EQ(50, taking.slider->value());

    outside.Press(*outside.slider, kLeft);
    EXPECT_EQ(1, taking.lefts);
    EXPECT_EQ(49, outside.slider->value());

    {
        Window leaving;
        leaving.Press(*leaving.slider, kLeft);
        EXPECT_EQ(1, leaving.lefts);
    }
    KeyFilter::OfApplication().Remove(&taking.widget);
    declining.Press(*declining.slider, kLeft);
    EXPECT_EQ(3, declining.lefts);
    EXPECT_EQ(2, taking.lefts);
    EXPECT_EQ(49, declining.slider->value());  // a key that nobody takes goes on
}

}  // namespace
