#include "app/preview/preview_dialog.h"

#include "app/preview/preview_picture.h"
#include "platform/loose_threads.h"
#include "tests/app/preview/test_video.h"
#include "tests/app/user.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QTest>

#include <chrono>

namespace {

/// A preview window of a video that the test goes on to know of.
struct Window {
    Window(int width, int height, int frameCount)
        : dialog(nullptr, std::make_unique<TestVideo>(width, height, frameCount, record), 0) {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        Settle();
    }

    void Settle() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.IsWaiting(); }));
        QApplication::processEvents();
    }

    PreviewPicture& Picture() { return *dialog.findChild<PreviewPicture*>(); }
    /// The frame that the picture shows, by its red.
    int ShownFrame() { return qRed(Picture().Image().pixel(0, 0)); }
    std::string Text(const char* field) { return Find<QLineEdit>(dialog, field).text().toStdString(); }
    std::string Scale() { return Text("Scale, percent"); }
    QSlider& Slider(const char* name) {
        for (auto* slider : dialog.findChildren<QSlider*>())
            if (slider->accessibleName() == QLatin1String(name)) return *slider;
        std::abort();
    }
    QSize Margins() { return dialog.size() - Picture().size(); }
    std::string Trouble() {
        for (auto* label : Picture().findChildren<QLabel*>())
            if (label->isVisible()) return label->text().toStdString();
        return "";
    }

    std::shared_ptr<TestVideo::Record> record = std::make_shared<TestVideo::Record>();
    PreviewDialog dialog;
};

TEST(Preview, OpensWithTheFirstFrameAtFullSize) {
    Window window(352, 288, 300);
    EXPECT_EQ("Tolvane - Preview", window.dialog.windowTitle().toStdString());
    EXPECT_EQ(QSize(352, 288), window.Picture().size());
    EXPECT_EQ(QRect(0, 0, 352, 288), window.Picture().Rect());
    EXPECT_EQ("100", window.Scale());
    EXPECT_EQ("0", window.Text("Frame number"));
    EXPECT_EQ(0, window.Slider("Video slide").minimum());
    EXPECT_EQ(299, window.Slider("Video slide").maximum());
    EXPECT_EQ(25, window.Slider("Scale").minimum());
    EXPECT_EQ(400, window.Slider("Scale").maximum());
    EXPECT_EQ(1, window.record->reads);
    EXPECT_EQ(nullptr, QApplication::overrideCursor());
}

// Also where the pixels of the screen aren't those of windows: this one is run with other device ratios as
// well.
TEST(Preview, FullSizeIsPixelForPixel) {
    Window window(353, 289, 1);
    EXPECT_EQ("100", window.Scale());
    const QRect rect = window.Picture().Rect();
    EXPECT_EQ(QSize(353, 289), rect.size());
    const QImage painted = window.Picture().grab().toImage();
    for (const QPoint at : {QPoint(0, 0), QPoint(352, 0), QPoint(10, 200), QPoint(352, 288)})
        EXPECT_EQ(qRgb(0, at.y() & 255, 4 * at.x() & 255), painted.pixel(rect.topLeft() + at))
            << at.x() << ", " << at.y();
}

TEST(Preview, GoesThroughTheFrames) {
    Window window(64, 48, 9);
    const struct {
        const char* control;  // a button, or the slider that is moved
        int slider;
        int frame;
    } steps[] = {{"Previous frame", -1, 0}, {"Next frame", -1, 1}, {"", 7, 7},
                 {"Next frame", -1, 8},     {"Next frame", -1, 8}, {"Previous frame", -1, 7}};
    for (const auto& step : steps) {
        if (step.slider >= 0)
            window.Slider("Video slide").setValue(step.slider);
        else
            Click(window.dialog, step.control);
        window.Settle();
        EXPECT_EQ(step.frame, window.ShownFrame());
        EXPECT_EQ(std::to_string(step.frame), window.Text("Frame number"));
        EXPECT_EQ(step.frame, window.Slider("Video slide").value());
    }
    EXPECT_EQ(5, window.record->reads);  // standing still reads nothing
    QAccessibleInterface* picture = QAccessible::queryAccessibleInterface(&window.Picture());
    EXPECT_EQ("Frame 7 of 0 to 8.", picture->text(QAccessible::Description).toStdString());
}

TEST(Preview, AFailedReadLeavesTheLastPicture) {
    Window window(64, 48, 9);
    window.record->badFrame = 1;
    Click(window.dialog, "Next frame");
    window.Settle();
    EXPECT_EQ(0, window.ShownFrame());
    EXPECT_EQ("0", window.Text("Frame number"));
    EXPECT_EQ("Frame 1 can't be read. Failed to read frame!", window.Trouble());
    EXPECT_EQ(nullptr, QApplication::overrideCursor());

    Click(window.dialog, "Next frame");  // the way goes on behind it
    window.Settle();
    EXPECT_EQ(2, window.ShownFrame());
    EXPECT_EQ("", window.Trouble());

    QSlider& slider = window.Slider("Video slide");
    slider.setValue(1);
    window.Settle();
    EXPECT_NE("", window.Trouble());
    window.record->badFrame = -1;  // as of a network that is back
    slider.setSliderDown(true);
    slider.setSliderDown(false);
    window.Settle();
    EXPECT_EQ(1, window.ShownFrame());
    EXPECT_EQ("", window.Trouble());
}

TEST(Preview, NewestRequestWins) {
    Window window(64, 48, 100);
    window.record->isHeld = true;
    for (int frame = 1; frame < 50; ++frame) window.Slider("Video slide").setValue(frame);
    EXPECT_NE(nullptr, QApplication::overrideCursor());
    EXPECT_EQ("0", window.Text("Frame number"));
    window.record->isHeld = false;
    window.Settle();
    EXPECT_EQ(49, window.ShownFrame());
    EXPECT_LE(window.record->reads, 3);  // the first picture, one that was under way, the last one

    // Back to what is shown before the other one has come: that comes too late.
    window.record->isHeld = true;
    window.Slider("Video slide").setValue(60);
    window.Slider("Video slide").setValue(49);
    EXPECT_FALSE(window.dialog.IsWaiting());
    EXPECT_EQ(nullptr, QApplication::overrideCursor());
    window.record->isHeld = false;
    QTest::qWait(50);
    EXPECT_EQ(49, window.ShownFrame());
    EXPECT_EQ("49", window.Text("Frame number"));
}

TEST(Preview, ScaleButtonsGoThroughTheSteps) {
    Window window(800, 400, 1);
    window.dialog.resize(QSize(300, 132) + window.Margins());
    window.Settle();
    for (const auto& [button, scale] :
         {std::pair("", "33"), {"Smaller scale", "25"}, {"Larger scale", "50"}}) {
        if (*button) Click(window.dialog, button);
        window.Settle();
        EXPECT_EQ(scale, window.Scale());
        EXPECT_EQ(std::stoi(scale), window.Slider("Scale").value());
        EXPECT_EQ(std::stoi(scale), window.Picture().Rect().width() * 100 / 800);
    }
}

TEST(Preview, SliderActsWhenItsMovementEnds) {
    Window window(160, 120, 1);
    QSlider& slider = window.Slider("Scale");
    const QSize margins = window.Margins();
    const QSize before = window.dialog.size();
    slider.setSliderDown(true);
    slider.setSliderPosition(330);
    EXPECT_EQ("330", window.Scale());
    EXPECT_EQ(before, window.dialog.size());
    slider.setSliderDown(false);
    window.Settle();
    EXPECT_EQ(QSize(528, 396) + margins, window.dialog.size());
    EXPECT_EQ("330", window.Scale());

    QTest::keyClick(&slider, Qt::Key_PageDown);  // a key's movement is one step
    window.Settle();
    EXPECT_EQ("305", window.Scale());
    EXPECT_EQ(QSize(488, 366) + margins, window.dialog.size());
}

TEST(Preview, PictureKeepsItsProportionsBetweenStrips) {
    Window window(64, 48, 1);
    window.dialog.resize(QSize(400, 96) + window.Margins());
    window.Settle();
    EXPECT_EQ(QRect(136, 0, 128, 96), window.Picture().Rect());
    EXPECT_EQ("200", window.Scale());
    const QImage painted = window.Picture().grab().toImage();
    const QRgb strip = window.Picture().palette().color(QPalette::Button).rgb();
    for (int x : {0, 135, 264, 399}) EXPECT_EQ(strip, painted.pixel(x, 50)) << x;
    // Smooth: the columns are 4 apart, and between them there are values of neither.
    int between = 0;
    for (int x = 140; x < 260; ++x) between += qBlue(painted.pixel(x, 50)) % 4 != 0;
    EXPECT_GT(between, 30);
}

TEST(Preview, WindowHasLimits) {
    Window small(64, 48, 1);
    EXPECT_EQ(300, small.dialog.minimumWidth());
    EXPECT_GE(small.dialog.minimumHeight(), 200);
    Window large(1600, 400, 1);
    EXPECT_EQ(400, large.dialog.minimumWidth());
    EXPECT_LE(large.dialog.width(), large.dialog.screen()->availableGeometry().width());  // cut to the screen
    EXPECT_EQ(std::to_string(large.Picture().Rect().width() * 100 / 1600), large.Scale());

    small.dialog.showMaximized();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !small.dialog.isMaximized(); }));
    small.Settle();
    EXPECT_EQ("400", small.Scale());
    EXPECT_EQ(192, small.Picture().height());
}

TEST(Preview, IsDraggedByItsSurface) {
    Window window(64, 48, 1);
    const QPoint before = window.dialog.pos();
    QTest::mousePress(&window.Picture(), Qt::LeftButton, {}, QPoint(30, 30));
    QTest::mouseMove(&window.Picture(), QPoint(50, 40));
    QTest::mouseRelease(&window.Picture(), Qt::LeftButton, {}, QPoint(30, 30));
    EXPECT_EQ(before + QPoint(20, 10), window.dialog.pos());
}

TEST(Preview, ClosingClosesTheVideo) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_W}) {
        auto record = std::make_shared<TestVideo::Record>();
        User user;
        user.In("Tolvane - Preview", [&](QWidget& window) {
            EXPECT_FALSE(record->isClosed);
            if (!window.isActiveWindow()) {
                window.activateWindow();
                return false;
            }
            QTest::keyClick(&window, key, key == Qt::Key_W ? Qt::ControlModifier : Qt::NoModifier);
            return true;
        });
        ShowPreview(nullptr, std::make_unique<TestVideo>(64, 48, 2, record), 0);
        EXPECT_TRUE(LooseThreadsEnd(std::chrono::seconds(20))) << "the one that reads";
        EXPECT_TRUE(QTest::qWaitFor([&] { return record->isClosed && record->isDestroyed; }));
        EXPECT_EQ(nullptr, QApplication::overrideCursor());
    }
    ShowPreview(nullptr, nullptr, 0);  // nothing happens
}

}  // namespace
