#include "app/preview/preview_picture.h"

#include "platform/qt/status_line.h"

#include <QPainter>

#include <algorithm>

PreviewPicture::PreviewPicture(QWidget* parent) : QWidget(parent), trouble(new StatusLine(this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Frame"));
    trouble->setAutoFillBackground(true);
    trouble->hide();
}

QSize PreviewPicture::SizeOnScreen() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

void PreviewPicture::SetImage(const QImage& newImage) {
    image = newImage;
    stretched = QImage();
    update();
}

void PreviewPicture::SetRect(const QRect& rect) {
    if (rect.size() != pictureRect.size()) stretched = QImage();
    pictureRect = rect;
    update();
}

void PreviewPicture::ShowTrouble(const QString& text) {
    trouble->setVisible(!text.isEmpty());
    if (text.isEmpty()) return;
    trouble->Show(Status::Error, text);
    PlaceTrouble();
}

void PreviewPicture::PlaceTrouble() {
    const int height = trouble->sizeHint().height();
    trouble->setGeometry(0, std::max(this->height() - height, 0), width(), height);
}

void PreviewPicture::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    PlaceTrouble();
    emit Resized();
}

void PreviewPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double ratio = devicePixelRatioF();
    painter.scale(1 / ratio, 1 / ratio);
    if (stretched.isNull() && !image.isNull())
        stretched = image.scaled(pictureRect.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!stretched.isNull()) painter.drawImage(pictureRect.topLeft(), stretched);

    const QRect covered = stretched.isNull() ? QRect() : pictureRect;
    const QRegion strips = QRegion(QRect(QPoint(), SizeOnScreen())).subtracted(covered);
    for (const QRect& strip : strips) painter.fillRect(strip, palette().color(QPalette::Button));
}
