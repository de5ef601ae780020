#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/label_column.h"
#include "platform/qt/message_box.h"
#include "platform/qt/value_slider.h"
#include "platform/qt/wide_text.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace {

TEST(LabelColumn, FieldsOfAllGroupsBeginOnOneLine) {
    QWidget window;
    LabelColumn labels;
    auto* rows = new QVBoxLayout(&window);
    QLineEdit* fields[3];
    for (auto*& field : fields) field = new QLineEdit;
    QGroupBox groups[2];
    auto* first = new FormGrid(&groups[0], &labels);
    auto* second = new FormGrid(&groups[1], &labels);
    for (QGroupBox& group : groups) rows->addWidget(&group);
    first->AddRow(QStringLiteral("Short:"), fields[0], new QPushButton(QStringLiteral("Browse")));
    QLabel* longest = second->AddRow(QStringLiteral("&Floating point delimiter:"), fields[1]);
    second->AddField(fields[2]);

    const auto begins = [&](int i) { return fields[i]->mapTo(&window, QPoint()).x(); };
    for (int pointSize : {9, 13, 8}) {
        QFont font = window.font();
        font.setPointSize(pointSize);
        window.setFont(font);
        window.adjustSize();
        window.show();
        SCOPED_TRACE(pointSize);
        EXPECT_TRUE(QTest::qWaitFor([&] { return begins(0) == begins(1) && begins(0) == begins(2); }, 1000));
        EXPECT_GE(longest->width(), longest->sizeHint().width());
        EXPECT_LE(longest->width(), longest->sizeHint().width() + 1);
    }
    EXPECT_LT(fields[0]->width(),
              fields[1]->width());  // a field takes the place of a button that isn't there
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(fields[1]);
    EXPECT_EQ("Floating point delimiter:", accessible->text(QAccessible::Name).toStdString());
}

TEST(ValueSlider, TellsMovesOfTheUserOnly) {
    ValueSlider slider(QStringLiteral("Count out radius"), 0, 100,
                       [](int position) { return QString::number(10 * position); });
    auto* inner = slider.findChild<QSlider*>();
    auto* value = slider.findChild<QLabel*>();
    const QSignalSpy moves(&slider, &ValueSlider::Moved);
    slider.SetPosition(30);
    EXPECT_EQ("300", value->text().toStdString());
    slider.SetText(QStringLiteral("305"));
    slider.SetPosition(500);
    EXPECT_EQ(100, slider.Position());
    EXPECT_EQ("1000", value->text().toStdString());
    EXPECT_EQ(0, moves.size());

    QTest::keyClick(inner, Qt::Key_Left);
    EXPECT_EQ("990", value->text().toStdString());
    ASSERT_EQ(1, moves.size());
    EXPECT_EQ(99, moves[0][0].toInt());
    EXPECT_EQ("Count out radius", inner->accessibleName().toStdString());
}

TEST(PlainLabel, CutsWhatDoesntFit) {
    PlainLabel label(QStringLiteral("a<b>bold</b> & more"), PlainLabel::Tone::Normal, PlainLabel::Fit::Elide);
    label.resize(label.sizeHint());
    const QImage whole = label.grab().toImage();
    QLabel reference;
    reference.setTextFormat(Qt::PlainText);
    reference.setText(label.text());
    reference.resize(label.size());
    EXPECT_EQ(reference.grab().toImage(), whole);

    label.resize(label.width() / 2, label.height());
    EXPECT_EQ(0, label.minimumSizeHint().width());
    EXPECT_NE(whole.copy(label.rect()), label.grab().toImage());
}

TEST(DialogButtons, KeysMeanOkCancelAndHelp) {
    int helps = 0;
    const struct {
        Qt::Key key;
        int result, helps;
    } cases[] = {
        {Qt::Key_Return, QDialog::Accepted, 0}, {Qt::Key_Escape, QDialog::Rejected, 0}, {Qt::Key_F1, -1, 1}};
    for (const auto& c : cases) {
        helps = 0;
        QDialog dialog;
        auto* rows = new QVBoxLayout(&dialog);
        auto* field = new QLineEdit;
        rows->addWidget(field);
        rows->addWidget(MakeDialogButtons(dialog, [&] { ++helps; }));
        const QSignalSpy finished(&dialog, &QDialog::finished);
        dialog.show();
        dialog.activateWindow();
        field->setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(field, c.key);
        EXPECT_EQ(c.helps, helps);
        EXPECT_EQ(c.result, finished.isEmpty() ? -1 : finished[0][0].toInt());
    }
}

/// Runs `ask` and presses `key` in the message box that it opens; gives `look` the box before that.
template <class Ask, class Look>
auto Answer(Qt::Key key, Ask ask, Look look) {
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(nullptr, box);
        look(*box);
        QTest::keyClick(box->focusWidget() ? box->focusWidget() : box, key);
    });
    return ask();
}

TEST(MessageBox, SafeAnswerIsDefaultAndEscape) {
    const auto askYesNo = [] {
        return AskYesNo(nullptr, QMessageBox::Question, L"Tolvane: Warning", L"Are you sure?");
    };
    const auto askToProceed = [] {
        return AskToProceed(nullptr, QMessageBox::Question, L"Tolvane", L"Send?", L"Send feedback");
    };
    const auto ignore = [](QMessageBox&) {};
    EXPECT_FALSE(Answer(Qt::Key_Escape, askYesNo, ignore));
    EXPECT_FALSE(Answer(Qt::Key_Return, askYesNo, ignore));
    EXPECT_FALSE(Answer(Qt::Key_Return, askToProceed, ignore));
    EXPECT_TRUE(
        Answer(Qt::Key_Space, askYesNo, [](QMessageBox& box) { box.button(QMessageBox::Yes)->setFocus(); }));
    EXPECT_TRUE(Answer(Qt::Key_Space, askToProceed, [](QMessageBox& box) {
        for (QAbstractButton* button : box.buttons()) {
            if (button->text() == QStringLiteral("Send feedback")) button->setFocus();
        }
    }));
}

TEST(MessageBox, TextIsShownAndCopiedAsItIs) {
    const std::wstring path(200, L'p');
    const auto show = [&] {
        ShowMessage(nullptr, QMessageBox::Critical, L"Could not open file for preview",
                    L"\"a<b>.yuv\" " + path, L"Try <b>.");
        return true;
    };
    EXPECT_TRUE(Answer(Qt::Key_Escape, show, [&](QMessageBox& box) {
        EXPECT_EQ(Qt::PlainText, box.textFormat());
        EXPECT_TRUE(box.text().startsWith(QStringLiteral("\"a<b>.yuv\" ppp")));
        EXPECT_TRUE(box.informativeText().contains(QStringLiteral("Try &lt;b&gt;.")));
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(ToQString(L"\"a<b>.yuv\" " + path), QGuiApplication::clipboard()->text());
        EXPECT_EQ("Could not open file for preview", box.windowTitle().toStdString());
        EXPECT_EQ(QMessageBox::Critical, box.icon());
    }));
}

}  // namespace
