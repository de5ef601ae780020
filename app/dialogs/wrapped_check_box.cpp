#include "app/dialogs/wrapped_check_box.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

constexpr int kTextFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic;
constexpr int kUsualLetters = 50;  // of a line
constexpr int kLeastLetters = 25;
constexpr int kFocusMargin = 2;

}  // namespace

WrappedCheckBox::WrappedCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum, QSizePolicy::CheckBox);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

// Where the style puts the text of a box of one line.
int WrappedCheckBox::TextStart() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    option.direction = Qt::LeftToRight;
    return style()->subElementRect(QStyle::SE_CheckBoxContents, &option, this).left();
}

QRect WrappedCheckBox::TextRect(int width) const {
    const int start = TextStart();
    return fontMetrics()
        .boundingRect(QRect(0, 0, width - start - kFocusMargin, QWIDGETSIZE_MAX), kTextFlags, text())
        .translated(start, (FirstLine().height() - fontMetrics().height()) / 2);
}

QRect WrappedCheckBox::FirstLine() const {
    const int indicator = style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this);
    return QRect(0, 0, width(), qMax(indicator, fontMetrics().height()));
}

int WrappedCheckBox::heightForWidth(int width) const {
    return qMax(FirstLine().height(), TextRect(width).bottom() + 1);
}

QSize WrappedCheckBox::sizeHint() const {
    const int width = TextStart() + kUsualLetters * fontMetrics().averageCharWidth();
    return QSize(width, heightForWidth(width));
}

QSize WrappedCheckBox::minimumSizeHint() const {
    return QSize(TextStart() + kLeastLetters * fontMetrics().averageCharWidth(), FirstLine().height());
}

bool WrappedCheckBox::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void WrappedCheckBox::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);

    QStyleOptionButton firstLine = option;
    firstLine.rect = FirstLine();
    firstLine.text.clear();
    firstLine.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &firstLine, this);
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, firstLine);

    const QRect rect = QStyle::visualRect(layoutDirection(), option.rect, TextRect(width()));
    const bool showsMnemonic = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) != 0;
    painter.drawItemText(rect, showsMnemonic ? kTextFlags : kTextFlags | Qt::TextHideMnemonic, option.palette,
                         isEnabled(), text(), QPalette::WindowText);
    if (!(option.state & QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(option);
    focus.rect = rect.adjusted(-kFocusMargin, 0, kFocusMargin, 0);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}
