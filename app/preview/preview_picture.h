#pragma once

#include <QImage>
#include <QWidget>

class StatusLine;

/// A picture stretched smoothly into a rectangle, with strips in the colour of buttons around it. It counts
/// in pixels of the screen. The mouse is left to the window.
class PreviewPicture : public QWidget {
    Q_OBJECT

public:
    explicit PreviewPicture(QWidget* parent = nullptr);

    QSize SizeOnScreen() const;

    void SetImage(const QImage& image);
    const QImage& Image() const { return image; }
    void SetRect(const QRect& rect);
    const QRect& Rect() const { return pictureRect; }

    /// Tells over the picture what went wrong; empty: nothing.
    void ShowTrouble(const QString& text);

signals:
    void Resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void PlaceTrouble();

    QImage image;
    QImage stretched;  // `image` in the size of `pictureRect`; null after a change of either
    QRect pictureRect;
    StatusLine* trouble;
};
