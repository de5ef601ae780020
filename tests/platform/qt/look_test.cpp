#include "platform/qt/color_scheme.h"
#include "platform/qt/icon.h"
#include "platform/qt/path_field.h"
#include "platform/qt/status_line.h"
#include "tests/platform/qt/user.h"

#include <cmath>

namespace {

// Relative luminance and contrast ratio: W3C, Web Content Accessibility Guidelines 2.1.
double Luminance(const QColor& color) {
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// Each test runs in both palettes, which it sets as a change while the program runs.
struct Look : testing::TestWithParam<ColorScheme> {
    void SetUp() override { QApplication::setPalette(palette); }

    static bool Shows(const QImage& image, const QColor& color) {
        for (int i = 0; i < image.width() * image.height(); ++i) {
            const QColor shown = image.pixelColor(i % image.width(), i / image.width());
            // An edge mixes with what is under it; its own colour is rounded by its opacity.
            const int apart =
                std::max({std::abs(shown.red() - color.red()), std::abs(shown.green() - color.green()),
                          std::abs(shown.blue() - color.blue())});
            if (apart < 3 && shown.alpha() > 127) return true;
        }
        return false;
    }
    static bool Shows(QWidget& widget, const QColor& color) { return Shows(widget.grab().toImage(), color); }
    static bool Shows(const QIcon& icon, int size, const QColor& color, QIcon::Mode mode = QIcon::Normal) {
        const QPixmap pixmap = icon.pixmap(QSize(size, size), 1.0, mode);
        EXPECT_EQ(QSize(size, size), pixmap.size());
        return Shows(pixmap.toImage(), color);
    }

    QPalette palette = SchemePalette(GetParam());
};

TEST_P(Look, TextAndOutlinesStandOut) {
    using Role = QPalette::ColorRole;
    constexpr double kText = 4.5, kOutline = 3;
    EXPECT_EQ(GetParam() == ColorScheme::Dark, IsDark(palette));
    const std::pair<Role, Role> texts[] = {
        {Role::WindowText, Role::Window},         {Role::Text, Role::Base},
        {Role::ButtonText, Role::Button},         {Role::PlaceholderText, Role::Window},
        {Role::PlaceholderText, Role::Base},      {Role::Link, Role::Window},
        {Role::HighlightedText, Role::Highlight}, {Role::ToolTipText, Role::ToolTipBase}};
    for (const auto& [text, ground] : texts)
        EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), kText) << text << " on " << ground;
    const QColor window = palette.color(Role::Window), base = palette.color(Role::Base);
    for (Status status : {Status::Neutral, Status::Good, Status::Warning, Status::Error})
        EXPECT_GE(Contrast(StatusColor(status, palette), window), kText) << int(status);
    EXPECT_GE(Contrast(OutlineColor(palette), window), kOutline);
    EXPECT_GE(Contrast(OutlineColor(palette), base), kOutline);
    EXPECT_GE(Contrast(palette.color(Role::Highlight), base), kOutline);
    EXPECT_GE(Contrast(BadFrameColor(palette), palette.color(Role::Button)), kOutline);
    EXPECT_GE(Contrast(palette.color(QPalette::Disabled, Role::WindowText), window), kOutline);
}

TEST_P(Look, BoxesFieldsAndListsHaveOutlines) {
    QCheckBox box;
    EXPECT_TRUE(Shows(box, OutlineColor(palette)));  // the radio button's circle has no unmixed pixel
    QRadioButton radio;
    radio.setAutoExclusive(false);
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{&box, &radio}) {
        EXPECT_TRUE(Shows(*button, palette.color(QPalette::Base)));
        EXPECT_FALSE(Shows(*button, palette.color(QPalette::Highlight)));
        button->setChecked(true);
        EXPECT_TRUE(Shows(*button, palette.color(QPalette::Highlight)));
    }
    PathField field(PathField::Drop::None);
    QListWidget list;
    list.setFocusPolicy(Qt::NoFocus);
    for (QWidget* widget : std::initializer_list<QWidget*>{&field, &list}) {
        EXPECT_TRUE(Shows(*widget, OutlineColor(palette)));
        widget->setEnabled(false);
        EXPECT_FALSE(Shows(*widget, OutlineColor(palette)));
    }
}

TEST_P(Look, IconsTakeTheColorOfTheirPlace) {
    const QColor text = palette.color(QPalette::ButtonText);
    const QColor disabled = palette.color(QPalette::Disabled, QPalette::ButtonText);
    for (int i = 0; i < kIconCount; ++i) {
        SCOPED_TRACE(i);
        const QIcon icon = TintedIcon(IconName(i));
        for (int size : {16, 32}) {
            EXPECT_TRUE(Shows(icon, size, text));
            EXPECT_FALSE(Shows(icon, size, disabled));
        }
        EXPECT_TRUE(Shows(icon, 32, disabled, QIcon::Disabled));
        EXPECT_EQ(QSize(32, 32), icon.pixmap(QSize(16, 16), 2.0).size());
    }
    EXPECT_TRUE(Shows(TintedIcon(IconName::NextBad), 64, BadFrameColor(palette)));
}

TEST_P(Look, StatusFollowsAChangeOfPalette) {
    StatusLine line;
    line.Show(Status::Good, QStringLiteral("Ready"));
    EXPECT_TRUE(Shows(line, StatusColor(Status::Good, palette)));
    const bool isDark = GetParam() == ColorScheme::Dark;
    const QPalette other = SchemePalette(isDark ? ColorScheme::Light : ColorScheme::Dark);
    QApplication::setPalette(other);
    EXPECT_FALSE(Shows(line, StatusColor(Status::Good, palette)));
    EXPECT_TRUE(Shows(line, StatusColor(Status::Good, other)));
}

// The style keeps for good how it drew a control in a palette: new palettes would pile up with each window.
TEST(Theme, WindowsShareAPalette) {
    QApplication::setPalette(QPalette());  // as if no test had set one
    const QCheckBox first, second;
    EXPECT_EQ(SchemePalette(DesktopColorScheme()), first.palette());
    EXPECT_EQ(first.palette().cacheKey(), second.palette().cacheKey());
}

INSTANTIATE_TEST_SUITE_P(Schemes, Look, testing::Values(ColorScheme::Light, ColorScheme::Dark),
                         [](const auto& info) { return info.param == ColorScheme::Dark ? "Dark" : "Light"; });

}  // namespace
