#include "platform/qt/form_grid.h"
#include "platform/qt/label_column.h"
#include "platform/qt/plain_label.h"
#include "tests/platform/qt/user.h"

namespace {

TEST(LabelColumn, FieldsOfAllGroupsBeginOnOneLine) {
    QWidget window;
    LabelColumn labels;
    auto* rows = new QVBoxLayout(&window);
    QLineEdit* fields[] = {new QLineEdit, new QLineEdit, new QLineEdit};
    QGroupBox groups[2];
    for (QGroupBox& group : groups) rows->addWidget(&group);
    auto* first = new FormGrid(&groups[0], &labels);
    auto* second = new FormGrid(&groups[1], &labels);
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
    EXPECT_LT(fields[0]->width(), fields[1]->width()) << "which takes the place of the other's button";
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(fields[1]);
    EXPECT_EQ("Floating point delimiter:", accessible->text(QAccessible::Name).toStdString());
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

}  // namespace
