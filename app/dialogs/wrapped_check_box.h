#pragma once

#include <QCheckBox>

/// A check box whose text goes on in further lines where it doesn't fit into one.
class WrappedCheckBox : public QCheckBox {
    Q_OBJECT

public:
    explicit WrappedCheckBox(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    int TextStart() const;
    QRect TextRect(int width) const;
    QRect FirstLine() const;
};
