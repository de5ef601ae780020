#include "app/preview/preview_dialog.h"

#include "app/preview/preview_picture.h"
#include "platform/loose_threads.h"
#include "tests/platform/qt/user.h"
#include "tests/report/frames/test_video.h"

namespace {

/// A preview window of a video that the test goes on to know of.
struct Window {
    Window(int width, int height, int frameCount)
        : dialog(nullptr, std::make_unique<TestVideo>(width, height, frameCount, stage), 0) {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        Settle();
    }

    /// Frames from here on are read only when this is raised.
    void Gate(int frame) {
        stage->Tell([&] { stage->gate = frame; });
    }
    void Settle() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.IsWaiting(); }));
        QApplication::processEvents();
    }
    /// Sizes the picture's space.
    void Resize(QSize space) {
        dialog.resize(space + Margins());
        Settle();
    }
    /// Moves the slider of frames; that of scales, or a button, is used by name.
    void GoTo(int frame) {
        Slider("Video slide").setValue(frame);
        Settle();
    }
    void Press(const char* button) {
        Click(dialog, button);
        Settle();
    }
    /// The frame that the picture shows, by its red, and what the window says of it.
    void ExpectFrame(int frame) {
        EXPECT_EQ(frame, qRed(Picture().Image().pixel(0, 0)));
        EXPECT_EQ(std::to_string(frame), Text("Frame number"));
        EXPECT_EQ(nullptr, QApplication::overrideCursor());
    }

    PreviewPicture& Picture() { return *dialog.findChild<PreviewPicture*>(); }
    std::string Text(const char* field) { return Find<QLineEdit>(dialog, field).text().toStdString(); }
    std::string Scale() { return Text("Scale, percent"); }
    QSlider& Slider(const char* name) { return Find<QSlider>(dialog, name); }
    QSize Margins() { return dialog.size() - Picture().size(); }
    std::string Trouble() {
        for (auto* label : Picture().findChildren<QLabel*>())
            if (label->isVisible()) return label->text().toStdString();
        return "";
    }

    std::shared_ptr<Stage> stage = std::make_shared<Stage>();
    PreviewDialog dialog;
};

// This one is also run with device ratios at which the pixels of the screen aren't those of windows.
TEST(Preview, FullSizeIsPixelForPixel) {
    Window window(353, 289, 1);
    EXPECT_EQ("100", window.Scale());
    const QRect rect = window.Picture().Rect();
    EXPECT_EQ(QSize(353, 289), rect.size());
    const QImage painted = window.Picture().grab().toImage();
    for (const QPoint at : {QPoint(0, 0), QPoint(352, 0), QPoint(10, 200), QPoint(352, 288)})
        EXPECT_EQ(qRgb(0, at.y() & 255, 4 * at.x() & 255), painted.pixel(rect.topLeft() + at)) << at.x();
}

TEST(Preview, GoesThroughTheFrames) {
    Window window(64, 48, 9);
    EXPECT_EQ(8, window.Slider("Video slide").maximum());
    window.ExpectFrame(0);
    window.Press("Previous frame");
    window.ExpectFrame(0);
    window.Press("Next frame");
    window.ExpectFrame(1);
    window.GoTo(7);
    window.ExpectFrame(7);
    for (int times = 0; times < 2; ++times) {
        window.Press("Next frame");
        window.ExpectFrame(8);
    }
    window.Press("Previous frame");
    window.ExpectFrame(7);
    EXPECT_EQ(7, window.Slider("Video slide").value());
    EXPECT_EQ(5u, window.stage->read.size());  // standing still reads nothing
    QAccessibleInterface* picture = QAccessible::queryAccessibleInterface(&window.Picture());
    EXPECT_EQ("Frame 7 of 0 to 8.", picture->text(QAccessible::Description).toStdString());
}

TEST(Preview, AFailedReadLeavesTheLastPicture) {
    Window window(64, 48, 9);
    window.stage->badFrame = 1;
    window.Press("Next frame");
    window.ExpectFrame(0);
    EXPECT_EQ("Frame 1 can't be read. Error 7", window.Trouble());
    window.Press("Next frame");  // the way goes on behind it
    window.ExpectFrame(2);
    EXPECT_EQ("", window.Trouble());
    window.GoTo(1);
    EXPECT_NE("", window.Trouble());
    window.stage->badFrame = -1;  // as of a network that is back
    for (const bool isDown : {true, false}) window.Slider("Video slide").setSliderDown(isDown);
    window.Settle();
    window.ExpectFrame(1);
    EXPECT_EQ("", window.Trouble());
}

TEST(Preview, NewestRequestWins) {
    Window window(64, 48, 100);
    QSlider& slider = window.Slider("Video slide");
    window.Gate(1);
    slider.setValue(1);
    window.stage->Wait([&] { return window.stage->read.size() == 2; });  // it is under way
    for (int frame = 2; frame < 50; ++frame) slider.setValue(frame);
    EXPECT_NE(nullptr, QApplication::overrideCursor());
    window.Gate(2);  // it comes too late
    QTest::qWait(50);
    EXPECT_TRUE(window.dialog.IsWaiting());
    EXPECT_EQ("0", window.Text("Frame number"));
    window.Gate(100);
    window.Settle();
    window.ExpectFrame(49);
    EXPECT_EQ(3u, window.stage->read.size());  // the first picture, the one that was under way, the last one

    // Back to what is shown before the other one has come: that comes too late.
    window.Gate(60);
    slider.setValue(60);
    slider.setValue(49);
    EXPECT_FALSE(window.dialog.IsWaiting());
    window.Gate(100);
    QTest::qWait(50);
    window.ExpectFrame(49);
}

TEST(Preview, Scales) {
    Window window(800, 400, 1);
    window.Resize({300, 132});
    for (const auto& [button, scale] :
         {std::pair("", "33"), {"Smaller scale", "25"}, {"Larger scale", "50"}}) {
        if (*button) window.Press(button);
        EXPECT_EQ(scale, window.Scale());
        EXPECT_EQ(std::stoi(scale), window.Slider("Scale").value());
        EXPECT_EQ(std::stoi(scale), window.Picture().Rect().width() * 100 / 800);
    }

    // The slider acts when its movement ends; a key's movement is one step.
    Window small(160, 120, 1);
    QSlider& slider = small.Slider("Scale");
    slider.setSliderDown(true);
    slider.setSliderPosition(330);
    EXPECT_EQ("330", small.Scale());
    EXPECT_EQ(QSize(160, 120), small.Picture().Rect().size());
    slider.setSliderDown(false);
    small.Settle();
    EXPECT_EQ(QSize(528, 396), small.Picture().size());
    EXPECT_EQ("330", small.Scale());
    QTest::keyClick(&slider, Qt::Key_PageDown);
    small.Settle();
    EXPECT_EQ("305", small.Scale());
    EXPECT_EQ(QSize(488, 366), small.Picture().size());
}

TEST(Preview, PictureKeepsItsProportionsBetweenStrips) {
    Window window(64, 48, 1);
    window.Resize({400, 96});
    EXPECT_EQ(QRect(136, 0, 128, 96), window.Picture().Rect());
    const QImage painted = window.Picture().grab().toImage();
    const QRgb strip = window.Picture().palette().color(QPalette::Button).rgb();
    for (int x : {0, 135, 264, 399}) EXPECT_EQ(strip, painted.pixel(x, 50)) << x;
    // Smooth: the columns are 4 apart, and between them there are values of neither.
    int between = 0;
    for (int x = 140; x < 260; ++x) between += qBlue(painted.pixel(x, 50)) % 4 != 0;
    EXPECT_GT(between, 30);
}

TEST(Preview, WindowHasLimitsAndIsDraggedByItsSurface) {
    Window large(1600, 400, 1);
    EXPECT_EQ(400, large.dialog.minimumWidth());
    EXPECT_LE(large.dialog.width(), large.dialog.screen()->availableGeometry().width());  // cut to the screen
    EXPECT_EQ(std::to_string(large.Picture().Rect().width() * 100 / 1600), large.Scale());

    Window small(64, 48, 1);
    const QPoint before = small.dialog.pos();
    QTest::mousePress(&small.Picture(), Qt::LeftButton, {}, QPoint(30, 30));
    QTest::mouseMove(&small.Picture(), QPoint(50, 40));
    QTest::mouseRelease(&small.Picture(), Qt::LeftButton, {}, QPoint(30, 30));
    EXPECT_EQ(before + QPoint(20, 10), small.dialog.pos());
    small.dialog.showMaximized();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !small.dialog.isMaximized(); }));
    small.Settle();
    EXPECT_EQ("400", small.Scale());
    EXPECT_EQ(192, small.Picture().height());
}

TEST(Preview, ClosingClosesTheVideo) {
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_Escape), Qt::CTRL | Qt::Key_W}) {
        auto stage = std::make_shared<Stage>();
        User user;
        user.In("Tolvane - Preview", [&](QWidget& window) {
            EXPECT_EQ(0, stage->closed);
            Press(window, key);
        });
        ShowPreview(nullptr, std::make_unique<TestVideo>(64, 48, 2, stage), 0);
        EXPECT_TRUE(LooseThreadsEnd(std::chrono::seconds(20))) << "the one that reads";
        EXPECT_TRUE(stage->closed && stage->gone);
        EXPECT_EQ(nullptr, QApplication::overrideCursor());
    }
    ShowPreview(nullptr, nullptr, 0);  // nothing happens
}

}  // namespace
