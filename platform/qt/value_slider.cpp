#include "platform/qt/value_slider.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <utility>

ValueSlider::ValueSlider(const QString& name, int first, int last, Format givenFormat, QWidget* parent)
    : QWidget(parent),
      format(givenFormat ? std::move(givenFormat) : [](int position) { return QString::number(position); }),
      slider(new QSlider(Qt::Horizontal)),
      value(new PlainLabel) {
    slider->setRange(first, last);
    slider->setAccessibleName(name);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setFocusProxy(slider);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(slider, 1);
    row->addWidget(value);

    FitLabel();
    ShowPosition(first);
    connect(slider, &QSlider::valueChanged, this, [this](int position) {
        ShowPosition(position);
        emit Moved(position);
    });
}

int ValueSlider::Position() const {
    return slider->value();
}

void ValueSlider::SetPosition(int position) {
    const QSignalBlocker blocker(slider);
    slider->setValue(position);
    ShowPosition(slider->value());
}

void ValueSlider::SetText(const QString& text) {
    value->setText(text);
    slider->setAccessibleDescription(text);
}

void ValueSlider::KeepRoomFor(const QString& widest) {
    widestElsewhere = widest;
    FitLabel();
}

void ValueSlider::ShowPosition(int position) {
    SetText(format(position));
}

void ValueSlider::FitLabel() {
    const QFontMetrics metrics = value->fontMetrics();
    value->setMinimumWidth(std::max({metrics.horizontalAdvance(format(slider->minimum())),
                                     metrics.horizontalAdvance(format(slider->maximum())),
                                     metrics.horizontalAdvance(widestElsewhere)}));
}

void ValueSlider::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) FitLabel();
}
