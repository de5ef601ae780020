#include "platform/qt/status_line.h"

#include "platform/qt/icon.h"
#include "platform/qt/plain_label.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

/// Paints the icon anew each time, as a label would keep a picture in the colours of an earlier palette.
class StatusLine::Sign : public QWidget {
public:
    void Show(Status status) {
        icon = StatusIcon(status);
        update();
    }

    QSize sizeHint() const override {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        return QSize(size, size);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon.paint(&painter, rect());
    }

private:
    QIcon icon;
};

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
      sign(new Sign),
      words(new PlainLabel({}, PlainLabel::Tone::Normal, PlainLabel::Fit::Elide)) {
    sign->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    sign->Show(Status::Neutral);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(sign);
    row->addWidget(words, 1);
}

void StatusLine::Show(Status status, const QString& text) {
    sign->Show(status);
    words->setText(text);
}

QString StatusLine::Text() const {
    return words->text();
}
