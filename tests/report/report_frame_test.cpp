#include "report/report_frame.h"

#include "platform/qt/status_line.h"
#include "platform/text.h"
#include "report/frame_panel.h"
#include "report/frame_picture.h"
#include "report/report_controller.h"
#include "tests/platform/qt/opened_files.h"
#include "tests/report/made_results.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

#include <chrono>
#include <future>
#include <mutex>

namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 48;

/// Results of three raw clips: frame n of file f is grey, 100 f + n, with a bright upper left quarter. The
/// matrix is the one that leaves grey as it is.
struct FrameWindow : testing::Test {
    FrameWindow() : results(20, {3, 15}) {
        for (int file = 0; file < 3; ++file) WriteClip(file, kWidth, kHeight);
    }

    void WriteClip(int file, int width, int height) {
        std::string bytes;
        for (int frame = 0; frame < 20; ++frame) {
            const auto half = static_cast<std::size_t>(width / 2);
            const std::string grey(half, static_cast<char>(100 * file % 256 + frame)), bright(half, '\xFA');
            for (int y = 0; y < height; ++y) bytes += (y < height / 2 ? bright : grey) + grey;
            bytes += std::string(static_cast<std::size_t>(width * height / 2), '\x80');
        }
        FileRecord& record = results.files[file];
        record.name = record.sourceName =
            FromUtf8(directory.Write("clip" + std::to_string(file) + ".yuv", bytes));
        record.width = width;
        record.height = height;
        record.yuvType = IYUV;
    }

    /// Opens the window by its button and waits for its first frame.
    void Open() {
        ReportParameters parameters = results.Parameters();
        viewer = std::make_unique<Viewer>(
            ReportParameters{parameters.results, parameters.badFrames, parameters.files, 1});
        viewer->Click("Show frame");
        frame = viewer->dialog->FrameView();
        ASSERT_TRUE(frame);
        ASSERT_TRUE(QTest::qWaitFor([&] { return frame->isVisible() && !frame->IsWaiting(); }));
        picture = frame->findChild<Report::FramePicture*>();
        EXPECT_TRUE(QTest::qWaitForWindowActive(viewer->dialog.get())) << "the focus stays with the results";
    }

    /// Waits for the frame that was asked for, and looks which one it is: its grey, and the window's title.
    void ExpectShown(int grey, const std::string& title) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !frame->IsWaiting(); }));
        const QImage& image = picture->Image();
        EXPECT_EQ(grey, qGreen(image.pixel(image.width() - 1, image.height() - 1)));
        EXPECT_EQ("Tolvane - " + title, frame->windowTitle().toStdString());
        EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
    }

    std::string Message() const {
        const auto* line = frame->findChild<StatusLine*>();
        return line->isVisible() ? line->Text().toStdString() : std::string();
    }

    template <typename Control>
    Control* Find(const char* name) {
        return viewer->Find<Control>(name, frame);
    }
    QRadioButton* Radio(int file) { return frame->findChildren<QRadioButton*>().at(file); }
    void Click(const char* name) { viewer->Click(name, frame); }

    const TemporaryDirectory directory;
    MadeResults results;
    std::unique_ptr<Viewer> viewer;
    QPointer<Report::CReportFrame> frame;
    Report::FramePicture* picture = nullptr;
};

TEST_F(FrameWindow, OpensAtTheSizeOfItsFrame) {
    WriteClip(0, 720, 300);
    Open();
    ExpectShown(9, "Original, frame 9");
    EXPECT_EQ(QSize(720, 300), picture->size());
    EXPECT_EQ(QSize(720, 300), picture->Image().size());
    EXPECT_EQ("Original, frame 9", picture->accessibleDescription().toStdString());
    const auto* panel = frame->findChild<Report::FramePanel*>();
    EXPECT_EQ(frame->minimumSize(), panel->size());
    EXPECT_EQ(300, panel->y());
}

TEST_F(FrameWindow, FollowsEveryControl) {
    Open();
    QWidget& dialog = *viewer->dialog;
    const std::tuple<const char*, std::function<void()>, int, int> kSteps[] = {
        {"next frame", [&] { Click("Next frame"); }, 0, 10},
        {"previous frame", [&] { Click("Previous frame"); }, 0, 9},
        {"next bad frame", [&] { Click("Next bad frame"); }, 0, 15},
        {"previous bad frame", [&] { Click("Previous bad frame"); }, 0, 3},
        {"right, in the results", [&] { Press(dialog, Qt::Key_Right); }, 0, 4},
        {"right, in the frame window", [&] { Press(*frame, Qt::Key_Right); }, 0, 5},
        {"to the next bad frame by key", [&] { Press(*frame, Qt::CTRL | Qt::Key_Right); }, 0, 15},
        {"first processed by key", [&] { Press(*frame, Qt::Key_2); }, 1, 15},
        {"second processed by a key in the results", [&] { Press(dialog, Qt::Key_3); }, 2, 15},
        {"a radio button", [&] { Radio(1)->click(); }, 1, 15},
        {"the slider", [&] { viewer->Find<QSlider>("Video slide")->setValue(0); }, 1, 0},
        {"before the first", [&] { Click("Previous frame"); }, 1, 0},
    };
    for (const auto& [what, act, file, current] : kSteps) {
        SCOPED_TRACE(what);
        act();
        const char* name = file == 0 ? "Original" : file == 1 ? "First processed" : "Second processed";
        ExpectShown(100 * file % 256 + current, name + (", frame " + std::to_string(current)));
        EXPECT_TRUE(Radio(file)->isChecked());
    }
}

TEST_F(FrameWindow, ReadsAFrameOnceAndTheLastOfMany) {
    Open();
    viewer->dialog->Controller().Widen(2);
    viewer->dialog->Controller().SetCurrent(9, false);
    EXPECT_FALSE(frame->IsWaiting());
    auto* slider = viewer->Find<QSlider>("Video slide");
    for (int i = 0; i < 400; ++i) slider->setValue(i % 20);
    EXPECT_TRUE(frame->IsWaiting());
    EXPECT_EQ(Qt::WaitCursor, QGuiApplication::overrideCursor()->shape());
    ExpectShown(19, "Original, frame 19");
}

TEST_F(FrameWindow, Texts) {
    Open();
    const ControlText kTexts[] = {
        {"Copy frame", "Copy current frame to clipboard [Ctrl + C]"},
        {"Next bad frame",
         "Go to next bad frame [Ctrl + right arrow] \n(you can use graph to navigate as well)"},
        {"Scale, percent", ""},
    };
    CheckTexts(*frame, kTexts, "123S");
    int file = 0;
    for (const char* name : {"Original file [1]", "First processed [2]", "Second processed [3]"})
        EXPECT_EQ(Radio(file++), Find<QRadioButton>(name));
}

TEST_F(FrameWindow, Zoom) {
    Open();
    auto* slider = Find<QSlider>("Scale");
    const std::tuple<std::function<void()>, int, int> kSteps[] = {
        {[] {}, 100, 100},
        {[&] { slider->setValue(250); }, 250, 250},
        {[&] { Click("Larger scale"); }, 300, 300},
        {[&] { slider->setValue(800), Click("Larger scale"); }, 900, 800},
        {[&] { Wheel(*picture, -120); }, 875, 800},
    };
    for (const auto& [act, percent, position] : kSteps) {
        act();
        EXPECT_EQ(percent, picture->View().percent);
        EXPECT_EQ(QString::number(percent), Find<QLineEdit>("Scale, percent")->text());
        EXPECT_EQ(position, slider->value());
    }
}

TEST_F(FrameWindow, PaintsPixelsAndSurroundings) {
    Open();
    const QImage fitting = picture->grab().toImage();
    const QColor around = picture->palette().color(QPalette::Button);
    const QRect place((picture->width() - kWidth) / 2, (picture->height() - kHeight) / 2, kWidth, kHeight);
    EXPECT_EQ(around.rgb(), fitting.pixel(place.left() - 1, place.top()));
    for (const QPoint& at : {place.topLeft(), place.center() - QPoint(1, 1)})
        EXPECT_EQ(qRgb(250, 250, 250), fitting.pixel(at));
    for (const QPoint& at : {place.center() + QPoint(1, 0), place.bottomRight()})
        EXPECT_EQ(qRgb(9, 9, 9), fitting.pixel(at));

    frame->resize(frame->minimumWidth(), frame->minimumHeight() + 200);
    Find<QSlider>("Scale")->setValue(800);
    EXPECT_EQ(QSize(frame->minimumWidth(), 200), picture->size());
    const QImage large = picture->grab().toImage();
    const int left = (picture->width() - 8 * kWidth) / 2;
    for (int x = 0; x < 8 * kWidth; ++x)
        EXPECT_EQ(x < 4 * kWidth ? 250 : 9, qGreen(large.pixel(left + x, 150))) << x;

    // Dragged by half of the frame: the grey half is in view.
    const QPoint grab(100, 100);
    QTest::mousePress(picture, Qt::LeftButton, {}, grab + QPoint(100, 90));
    QTest::mouseMove(picture, grab + QPoint(0, -90));
    QTest::mouseRelease(picture, Qt::LeftButton, {}, grab + QPoint(0, -90));
    EXPECT_NEAR(180.0 / (8 * kHeight), picture->View().panY, 1e-5);
    EXPECT_EQ(qRgb(9, 9, 9), picture->grab().toImage().pixel(left, 150));
    const float before = picture->View().panX;
    QTest::mouseMove(picture, grab);
    EXPECT_EQ(before, picture->View().panX) << "the button is up";
}

TEST_F(FrameWindow, IsResizedAndMoved) {
    Open();
    auto* panel = frame->findChild<Report::FramePanel*>();
    const QSize start = frame->size();
    for (const QSize& growth : {QSize(1, 0), QSize(101, 50), QSize(0, 0)}) {
        frame->resize(start + growth);
        QTest::qWait(1);
        EXPECT_NEAR((frame->width() - panel->width()) / 2, panel->x(), growth.isNull() ? 0 : 1);
        EXPECT_EQ(frame->height(), panel->geometry().bottom() + 1);
        EXPECT_EQ(QSize(frame->width(), panel->y()), picture->size());
    }
    const QPoint before = frame->pos();
    for (QWidget* surface : {static_cast<QWidget*>(panel), static_cast<QWidget*>(picture)}) {
        QTest::mousePress(surface, Qt::LeftButton, {}, QPoint(2, 2));
        QTest::mouseMove(surface, QPoint(12, 7));
        QTest::mouseRelease(surface, Qt::LeftButton, {}, QPoint(12, 7));
        EXPECT_EQ(before + QPoint(10, 5), frame->pos()) << "by the panel, but not beside the picture";
    }
}

TEST_F(FrameWindow, Clipboard) {
    Open();
    Find<QSlider>("Scale")->setValue(400);
    for (const bool isByKey : {true, false}) {
        QGuiApplication::clipboard()->clear();
        if (isByKey) viewer->Press(Qt::CTRL | Qt::Key_C);
        if (!isByKey) Click("Copy frame");
        const QImage copy = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(QSize(kWidth, kHeight), copy.size()) << "the whole frame at 100 percent";
        EXPECT_EQ(qRgb(250, 250, 250), copy.pixel(0, 0));
        EXPECT_EQ(qRgb(9, 9, 9), copy.pixel(kWidth - 1, kHeight - 1));
    }
}

TEST_F(FrameWindow, FilesThatAreGone) {
    std::filesystem::remove(directory.Path("clip0.yuv"));
    results.files.erase(1);
    Open();
    ExpectShown(209, "Second processed, frame 9");
    EXPECT_EQ("Can't be opened any more: original", Message());
    EXPECT_FALSE(Radio(0)->isEnabled() || Radio(1)->isEnabled());
    EXPECT_TRUE(Radio(0)->toolTip().contains(QStringLiteral("can't be opened")));
    viewer->Press(Qt::Key_1);
    viewer->Press(Qt::Key_2);
    ExpectShown(209, "Second processed, frame 9");
    viewer->Press(Qt::Key_Right);
    ExpectShown(210, "Second processed, frame 10");
    EXPECT_EQ("", Message());
}

TEST_F(FrameWindow, NoFileAtAll) {
    for (auto& [index, file] : results.files) file.sourceName = L"/nowhere";
    results.files.erase(2);
    results.bad.clear();
    Open();
    EXPECT_EQ("None of the files can be opened any more", Message());
    EXPECT_EQ(frame->findChild<Report::FramePanel*>()->y() - 1,
              frame->findChild<StatusLine*>()->geometry().bottom());
    const std::string gone = "\"" + ToUtf8(results.files[1].name) + "\" can't be opened any more";
    const ControlText kTexts[] = {
        {"First processed [2]", gone.c_str()},
        {"Second processed [3]", "Needs the file \"Second processed\" in the run"},
        {"Smaller scale", "Show the frame smaller\nNeeds a file that can be opened"},
        {"Previous bad frame",
         "Go to previous bad frame [Ctrl + left arrow]\n(you can use graph to navigate as well)\n"
         "Needs a run with \"Save \"bad frames\"\"\nNeeds a file that can be opened"},
    };
    CheckTexts(*frame, kTexts, "123S");
    EXPECT_TRUE(picture->Image().isNull());
    viewer->Press(Qt::CTRL | Qt::Key_C);
    Click("Next frame");
    EXPECT_EQ(9, viewer->Range().Current()) << "the buttons do nothing";
    viewer->Press(Qt::Key_Right);
    EXPECT_EQ(10, viewer->Range().Current()) << "the results go on";
    EXPECT_FALSE(frame->grab().isNull());
}

TEST_F(FrameWindow, AFrameThatCantBeRead) {
    Open();
    std::filesystem::resize_file(directory.Path("clip0.yuv"), kWidth * kHeight * 3 / 2 * 12);
    viewer->Find<QSlider>("Video slide")->setValue(15);
    ExpectShown(9, "Original, frame 9");  // the picture stays, and so does its name
    EXPECT_NE(std::string::npos, Message().find("Original, frame 15 can't be read")) << Message();
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
    viewer->Find<QSlider>("Video slide")->setValue(11);
    ExpectShown(11, "Original, frame 11");
    EXPECT_EQ("", Message());
}

TEST_F(FrameWindow, FramesOfAnotherSizeAndNoBadOnes) {
    WriteClip(1, 80, 60);
    results.bad.clear();
    Open();
    for (const char* name : {"Previous bad frame", "Next bad frame"})
        EXPECT_FALSE(Find<QAbstractButton>(name)->isEnabled()) << name;
    EXPECT_TRUE(Find<QAbstractButton>("Next frame")->isEnabled());
    viewer->Press(Qt::Key_2);
    ExpectShown(109, "First processed, frame 9");
    EXPECT_EQ(QSize(80, 60), picture->Image().size());
    EXPECT_EQ("First processed has frames of 80 x 60, original of 64 x 48", Message());
    viewer->Press(Qt::Key_1);
    ExpectShown(9, "Original, frame 9");
    EXPECT_EQ("", Message());
}

TEST_F(FrameWindow, ClosesAndOpensAgain) {
    Open();
    OpenedFiles help;
    Press(*frame, Qt::Key_F1);
    ASSERT_EQ(1, help.urls.size()) << "one of the two windows' keys";
    EXPECT_EQ("frames.html", help.urls[0].fileName().toStdString());
    Press(*frame, Qt::CTRL | Qt::Key_W);
    EXPECT_TRUE(QTest::qWaitFor([&] { return frame.isNull(); }));
    EXPECT_TRUE(viewer->dialog->isVisible());
    EXPECT_EQ(nullptr, viewer->dialog->FrameView());
    viewer->Press(Qt::Key_Right);
    EXPECT_EQ(10, viewer->Range().Current());
    viewer->Click("Show frame");
    frame = viewer->dialog->FrameView();
    EXPECT_TRUE(QTest::qWaitFor([&] { return frame->isVisible() && !frame->IsWaiting(); }));
}

TEST_F(FrameWindow, ClosesWhileItsFilesAreOpened) {
    std::promise<void> held, end;
    auto opening = std::async(std::launch::async, [&] {
        const std::lock_guard another(FileOpeningMutex());
        held.set_value();
        return end.get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready;
    });
    held.get_future().wait();
    viewer = std::make_unique<Viewer>(results.Parameters());
    viewer->Click("Show frame");
    frame = viewer->dialog->FrameView();
    ASSERT_TRUE(frame);
    viewer.reset();
    EXPECT_TRUE(frame.isNull());
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
    end.set_value();
    EXPECT_TRUE(opening.get()) << "the window waited";
}

}  // namespace
