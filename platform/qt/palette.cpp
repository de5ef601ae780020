#include "platform/qt/palette.h"

#include <QRgb>

namespace {

struct SchemeColors {
    QRgb window, text, base, button, highlight, link, quiet;
    QRgb disabledText, disabledBase;
    QRgb outline, disabledOutline;
    QRgb light, midlight, mid, dark, shadow;  // the edges of raised and sunken things
    QRgb toolTip;
    QRgb neutral, good, warning, error;
    QRgb badFrame;
};

constexpr SchemeColors kLight = {
    .window = 0xfff3f4f6,
    .text = 0xff1d2125,
    .base = 0xffffffff,
    .button = 0xfff3f4f6,
    .highlight = 0xff2767b0,
    .link = 0xff1f5fa8,
    .quiet = 0xff696f76,
    .disabledText = 0xff858b92,
    .disabledBase = 0xffeceef1,
    .outline = 0xff868d95,
    .disabledOutline = 0xffc6cbd1,
    .light = 0xffffffff,
    .midlight = 0xfff9fafb,
    .mid = 0xffc0c4ca,
    .dark = 0xffa3a9b1,
    .shadow = 0xff767c84,
    .toolTip = 0xffffffff,
    .neutral = 0xff5b6169,
    .good = 0xff1a7f37,
    .warning = 0xff8a5a00,
    .error = 0xffb3261e,
    .badFrame = 0xffc83232,
};

constexpr SchemeColors kDark = {
    .window = 0xff2a2d31,
    .text = 0xffe4e6e9,
    .base = 0xff1d1f22,
    .button = 0xff383c41,
    .highlight = 0xff3572bd,
    .link = 0xff7fb2ee,
    .quiet = 0xff9aa0a7,
    .disabledText = 0xff858b92,
    .disabledBase = 0xff26292c,
    .outline = 0xff7f868e,
    .disabledOutline = 0xff4b5056,
    .light = 0xff565b62,
    .midlight = 0xff464b51,
    .mid = 0xff2f3237,
    .dark = 0xff1a1c1e,
    .shadow = 0xff111214,
    .toolTip = 0xff383c41,
    .neutral = 0xff9aa0a7,
    .good = 0xff57c26e,
    .warning = 0xffe3b341,
    .error = 0xffff8a80,
    .badFrame = 0xffff7a7a,
};

const SchemeColors& ColorsFor(const QPalette& palette) {
    return IsDark(palette) ? kDark : kLight;
}

}  // namespace

QPalette SchemePalette(ColorScheme scheme) {
    const SchemeColors& colors = scheme == ColorScheme::Dark ? kDark : kLight;
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, QRgb color) { palette.setColor(role, QColor(color)); };
    set(QPalette::Window, colors.window);
    set(QPalette::WindowText, colors.text);
    set(QPalette::Base, colors.base);
    set(QPalette::AlternateBase, colors.window);
    set(QPalette::Text, colors.text);
    set(QPalette::PlaceholderText, colors.quiet);
    set(QPalette::Button, colors.button);
    set(QPalette::ButtonText, colors.text);
    set(QPalette::BrightText, colors.error);
    set(QPalette::Highlight, colors.highlight);
    set(QPalette::HighlightedText, 0xffffffff);
    set(QPalette::Link, colors.link);
    set(QPalette::LinkVisited, colors.link);
    set(QPalette::ToolTipBase, colors.toolTip);
    set(QPalette::ToolTipText, colors.text);
    set(QPalette::Light, colors.light);
    set(QPalette::Midlight, colors.midlight);
    set(QPalette::Mid, colors.mid);
    set(QPalette::Dark, colors.dark);
    set(QPalette::Shadow, colors.shadow);

    for (auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        palette.setColor(QPalette::Disabled, role, QColor(colors.disabledText));
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(colors.disabledBase));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(colors.disabledOutline));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(colors.quiet));
    return palette;
}

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QColor OutlineColor(const QPalette& palette) {
    const SchemeColors& colors = ColorsFor(palette);
    return QColor(palette.currentColorGroup() == QPalette::Disabled ? colors.disabledOutline
                                                                    : colors.outline);
}

QColor StatusColor(Status status, const QPalette& palette) {
    const SchemeColors& colors = ColorsFor(palette);
    switch (status) {
        case Status::Good:
            return QColor(colors.good);
        case Status::Warning:
            return QColor(colors.warning);
        case Status::Error:
            return QColor(colors.error);
        case Status::Neutral:
            break;
    }
    return QColor(colors.neutral);
}

QColor BadFrameColor(const QPalette& palette) {
    return QColor(ColorsFor(palette).badFrame);
}
