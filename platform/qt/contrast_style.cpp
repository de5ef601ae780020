#include "platform/qt/contrast_style.h"

#include "platform/qt/layout_grid.h"
#include "platform/qt/palette.h"

#include <QAbstractScrollArea>
#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOption>

#include <utility>

namespace {

constexpr int kFieldTextMargin = 3;
constexpr qreal kCornerRadius = 2.5;
constexpr qreal kMarkWidth = 1.6;

// A rectangle whose 1 px outline falls on whole pixels.
QRectF OutlineRect(const QRect& rect) {
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

// The palette of the option's state: an option carries its widget's, whatever the group of that.
QPalette StatePalette(const QStyleOption& option) {
    QPalette palette = option.palette;
    if (!(option.state & QStyle::State_Enabled)) palette.setCurrentColorGroup(QPalette::Disabled);
    return palette;
}

void DrawFrame(const QStyleOption& option, QPainter& painter) {
    const QPalette palette = StatePalette(option);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(option.state & QStyle::State_HasFocus ? palette.color(QPalette::Highlight)
                                                         : OutlineColor(palette));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(OutlineRect(option.rect), kCornerRadius, kCornerRadius);
}

// Sets pen and brush for the body of a check box or radio button; whether it is filled.
bool PrepareIndicator(const QStyleOption& option, QPainter& painter) {
    const QPalette palette = StatePalette(option);
    const bool filled = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const bool attended = option.state & (QStyle::State_HasFocus | QStyle::State_MouseOver);
    const bool enabled = option.state & QStyle::State_Enabled;
    QColor body = palette.color(filled ? QPalette::Highlight : QPalette::Base);
    if (option.state & QStyle::State_Sunken) body = body.darker(115);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(body);
    painter.setPen(enabled && (filled || attended) ? palette.color(QPalette::Highlight)
                                                   : OutlineColor(palette));
    return filled;
}

void DrawCheckBox(const QStyleOption& option, QPainter& painter) {
    const QRectF box = OutlineRect(option.rect);
    const bool filled = PrepareIndicator(option, painter);
    painter.drawRoundedRect(box, kCornerRadius, kCornerRadius);
    if (!filled) return;

    const auto at = [&](qreal x, qreal y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    painter.setPen(QPen(StatePalette(option).color(QPalette::HighlightedText), kMarkWidth, Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    if (option.state & QStyle::State_NoChange) {
        painter.drawLine(at(0.25, 0.5), at(0.75, 0.5));
    } else {
        painter.drawPolyline(QPolygonF({at(0.22, 0.52), at(0.43, 0.73), at(0.79, 0.30)}));
    }
}

void DrawRadioButton(const QStyleOption& option, QPainter& painter) {
    const QRectF circle = OutlineRect(option.rect);
    const bool filled = PrepareIndicator(option, painter);
    painter.drawEllipse(circle);
    if (!filled) return;

    painter.setPen(Qt::NoPen);
    painter.setBrush(StatePalette(option).color(QPalette::HighlightedText));
    painter.drawEllipse(circle.center(), circle.width() / 5, circle.height() / 5);
}

QFont TitleFont(QFont font) {
    font.setBold(true);
    return font;
}

// The title's place is measured in the option's font, which must be the one that it is painted in.
QStyleOptionGroupBox WithBoldTitle(const QStyleOptionGroupBox& option, const QWidget* widget) {
    QStyleOptionGroupBox bold = option;
    if (widget) bold.fontMetrics = QFontMetrics(TitleFont(widget->font()));
    return bold;
}

bool IsPopupOfComboBox(const QWidget* widget) {
    return widget->inherits("QComboBoxPrivateContainer") ||
           widget->window()->inherits("QComboBoxPrivateContainer");
}

}  // namespace

ContrastStyle::ContrastStyle(std::optional<QPalette> windowColors)
    : QProxyStyle(QStringLiteral("Fusion")), colors(std::move(windowColors)) {}

void ContrastStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    const bool isList = element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr &&
                        !IsPopupOfComboBox(widget);
    painter->save();
    if (element == PE_IndicatorCheckBox) {
        DrawCheckBox(*option, *painter);
    } else if (element == PE_IndicatorRadioButton) {
        DrawRadioButton(*option, *painter);
    } else if (element == PE_FrameLineEdit || isList) {
        DrawFrame(*option, *painter);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

void ContrastStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    if (control != CC_GroupBox || !group) {
        painter->save();
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_SpinBox) DrawFrame(*option, *painter);
        painter->restore();
        return;
    }
    const QStyleOptionGroupBox bold = WithBoldTitle(*group, widget);
    const QFont plainFont = painter->font();
    painter->setFont(TitleFont(plainFont));
    QProxyStyle::drawComplexControl(control, &bold, painter, widget);
    painter->setFont(plainFont);
}

QRect ContrastStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                    SubControl subControl, const QWidget* widget) const {
    const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    if (control != CC_GroupBox || !group)
        return QProxyStyle::subControlRect(control, option, subControl, widget);

    const QStyleOptionGroupBox bold = WithBoldTitle(*group, widget);
    return QProxyStyle::subControlRect(control, &bold, subControl, widget);
}

int ContrastStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutTopMargin:
            return qobject_cast<const QGroupBox*>(widget) ? kGroupTopMargin : kWindowMargin;
        case PM_LayoutLeftMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return kWindowMargin;
        case PM_LayoutHorizontalSpacing:
            return kColumnSpacing;
        case PM_LayoutVerticalSpacing:
            return kRowSpacing;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ContrastStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returnData) const {
    switch (hint) {
        case SH_Widget_Animation_Duration:
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

void ContrastStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (auto* field = qobject_cast<QLineEdit*>(widget)) {
        field->setTextMargins(kFieldTextMargin, 0, kFieldTextMargin, 0);
    }
}

void ContrastStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    if (colors) palette = *colors;
}

void ContrastStyle::unpolish(QWidget* widget) {
    if (auto* field = qobject_cast<QLineEdit*>(widget)) field->setTextMargins(0, 0, 0, 0);
    QProxyStyle::unpolish(widget);
}
