#include "platform/qt/value_field.h"

ValueField::ValueField(int digits, QWidget* parent) : QLineEdit(parent), digits(digits) {
    setReadOnly(true);
    setAlignment(Qt::AlignRight);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ValueField::sizeHint() const {
    // A line edit asks for 17 "x": what lies around them is kept.
    const QSize usual = QLineEdit::sizeHint();
    const int around = usual.width() - 17 * fontMetrics().horizontalAdvance(u'x');
    return QSize(digits * fontMetrics().horizontalAdvance(u'0') + around, usual.height());
}
