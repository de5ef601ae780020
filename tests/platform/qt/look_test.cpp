#include "platform/qt/color_scheme.h"
#include "platform/qt/icon.h"
#include "platform/qt/path_field.h"
#include "platform/qt/status_line.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QListWidget>
#include <QRadioButton>

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
    const double lighter = std::max(Luminance(a), Luminance(b));
    const double darker = std::min(Luminance(a), Luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

/// Each test runs in both palettes, which it sets as a change while the program runs.
class Look : public testing::TestWithParam<ColorScheme> {
protected:
    void SetUp() override { QApplication::setPalette(palette); }

    static QImage Grab(QWidget& widget) { return widget.grab().toImage(); }
    static bool Shows(const QImage& image, const QColor& color) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor shown = image.pixelColor(x, y);
                // An edge mixes with what is under it; its own colour is rounded by its opacity.
                const bool isNear = std::abs(shown.red() - color.red()) < 3 &&
                                    std::abs(shown.green() - color.green()) < 3 &&
                                    std::abs(shown.blue() - color.blue()) < 3;
                if (isNear && shown.alpha() > 127) return true;
            }
        }
        return false;
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
    for (const auto& [text, ground] : texts) {
        SCOPED_TRACE(testing::Message() << text << " on " << ground);
        EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), kText);
    }
    for (Status status : {Status::Neutral, Status::Good, Status::Warning, Status::Error}) {
        EXPECT_GE(Contrast(StatusColor(status, palette), palette.color(Role::Window)), kText) << int(status);
    }
    for (Role ground : {Role::Window, Role::Base}) {
        EXPECT_GE(Contrast(OutlineColor(palette), palette.color(ground)), kOutline);
    }
    EXPECT_GE(Contrast(palette.color(Role::Highlight), palette.color(Role::Base)), kOutline);
    EXPECT_GE(Contrast(BadFrameColor(palette), palette.color(Role::Button)), kOutline);
    EXPECT_GE(Contrast(palette.color(QPalette::Disabled, Role::WindowText), palette.color(Role::Window)),
              3.0);
}

TEST_P(Look, BoxesHaveOutlinesAndAreFilledWhenOn) {
    QCheckBox box;
    EXPECT_TRUE(Shows(Grab(box), OutlineColor(palette)));  // the radio button's circle has no unmixed pixel
    QRadioButton radio;
    radio.setAutoExclusive(false);
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{&box, &radio}) {
        button->setChecked(false);
        const QImage off = Grab(*button);
        button->setChecked(true);
        const QImage on = Grab(*button);
        EXPECT_FALSE(Shows(off, palette.color(QPalette::Highlight)));
        EXPECT_TRUE(Shows(on, palette.color(QPalette::Highlight)));
        EXPECT_TRUE(Shows(off, palette.color(QPalette::Base)));
    }
}

TEST_P(Look, FieldsAndListsHaveOutlines) {
    PathField field(PathField::Drop::None);
    QListWidget list;
    list.setFocusPolicy(Qt::NoFocus);
    for (QWidget* widget : std::initializer_list<QWidget*>{&field, &list}) {
        EXPECT_TRUE(Shows(Grab(*widget), OutlineColor(palette)));
        widget->setEnabled(false);
        EXPECT_FALSE(Shows(Grab(*widget), OutlineColor(palette)));
    }
}

TEST_P(Look, IconsTakeTheColorOfTheirPlace) {
    const QColor text = palette.color(QPalette::ButtonText);
    const QColor disabled = palette.color(QPalette::Disabled, QPalette::ButtonText);
    for (int i = 0; i < kIconCount; ++i) {
        SCOPED_TRACE(i);
        const QIcon icon = TintedIcon(IconName(i));
        for (int size : {16, 32}) {
            const QPixmap pixmap = icon.pixmap(QSize(size, size), 1.0);
            ASSERT_EQ(QSize(size, size), pixmap.size());
            EXPECT_TRUE(Shows(pixmap.toImage(), text));
            EXPECT_FALSE(Shows(pixmap.toImage(), disabled));
        }
        EXPECT_EQ(QSize(32, 32), icon.pixmap(QSize(16, 16), 2.0).size());
        EXPECT_TRUE(Shows(icon.pixmap(QSize(32, 32), 1.0, QIcon::Disabled).toImage(), disabled));
    }
    EXPECT_TRUE(
        Shows(TintedIcon(IconName::NextBad).pixmap(QSize(64, 64), 1.0).toImage(), BadFrameColor(palette)));
}

TEST_P(Look, StatusFollowsAChangeOfPalette) {
    StatusLine line;
    line.Show(Status::Good, QStringLiteral("Ready"));
    EXPECT_TRUE(Shows(Grab(line), StatusColor(Status::Good, palette)));
    const QPalette other =
        SchemePalette(GetParam() == ColorScheme::Dark ? ColorScheme::Light : ColorScheme::Dark);
    QApplication::setPalette(other);
    EXPECT_FALSE(Shows(Grab(line), StatusColor(Status::Good, palette)));
    EXPECT_TRUE(Shows(Grab(line), StatusColor(Status::Good, other)));
}

// The style draws a control once for each palette and keeps that for good: what is new with each window only
// ever grows.
TEST(Theme, WindowsShareAPalette) {
    QApplication::setPalette(QPalette());  // as if no test had set one
    const QCheckBox first, second;
    EXPECT_EQ(SchemePalette(DesktopColorScheme()), first.palette());
    EXPECT_EQ(first.palette().cacheKey(), second.palette().cacheKey());
}

INSTANTIATE_TEST_SUITE_P(Schemes, Look, testing::Values(ColorScheme::Light, ColorScheme::Dark),
                         [](const auto& info) { return info.param == ColorScheme::Dark ? "Dark" : "Light"; });

}  // namespace
