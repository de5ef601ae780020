#pragma once

#include <QWidget>

namespace Report {

/// A piece of a curve, or the mark of a bad frame, on the white ground of the plots.
class SampleChip : public QWidget {
    Q_OBJECT

public:
    static constexpr int kBadFrame = -1;

    /// `file` is the curve's, or `kBadFrame`.
    explicit SampleChip(int file, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int file;
};

}  // namespace Report
