#pragma once

#include <QPalette>
#include <QProxyStyle>

#include <optional>

/// Fusion with the contrast that it lacks, above all on dark ground: check boxes and radio buttons get an
/// outline and are filled when on, fields and lists get that outline too, group titles are bold. Margins and
/// spacing of layouts are those of layout_grid.h, text keeps a distance from the sides of its field, and
/// nothing is animated.
class ContrastStyle : public QProxyStyle {
    Q_OBJECT

public:
    /// Windows are painted in `colors`; without them in Fusion's.
    explicit ContrastStyle(std::optional<QPalette> colors);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    void polish(QWidget* widget) override;
    void polish(QPalette& palette) override;
    void unpolish(QWidget* widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

private:
    std::optional<QPalette> colors;
};
