#include "app/rules/settings.h"
#include "app/rules/shell_start.h"
#include "app/shell/contact.h"
#include "platform/qt/qt_settings_store.h"
#include "tests/app/shell/shell_window.h"
#include "tests/platform/qt/opened_files.h"

#include <algorithm>
#include <map>

namespace {

void ChooseMetricNamed(QWidget& window, const std::wstring& id) {
    int index = -1;
    Metric::GetMetricList().FindById(id, index);
    auto& list = Find<QComboBox>(window, "Metric");
    list.setCurrentIndex(list.findData(index));
    emit list.activated(list.currentIndex());
}

TEST_F(ShellWindow, ControlsFollowEveryEdit) {
    state.job.badFrames.count = 0;
    MainWindow& main = Open();
    ExpectAsTheFormTells();
    for (const char* box :
         {"Comparative analysis", "Use mask file:", "Save CSV file", "Open with AVISynth, original file",
          "Open with AVISynth, mask file", "Save CSV file", "Save metric visualization video / image"}) {
        SCOPED_TRACE(box);
        Click(main, box);
        ExpectAsTheFormTells();
    }
    Type("Path, processed file", "b.bmp");
    ExpectAsTheFormTells();
    EXPECT_EQ(L"b.bmp", state.job.fileSlots[RowProcessed].sourceName);
    Type("Path, original file", std::string(300, 'a'));  // no more is taken than is shown
    EXPECT_EQ(260u, PathIn("original file").size());
    EXPECT_EQ(260u, state.job.fileSlots[RowOriginal].name.size());
    Click(main, "Comparative analysis");
    ExpectAsTheFormTells();
    EXPECT_TRUE(Find(main, "Process")->isEnabled());
    Click(main, "Save \"bad frames\"");
    EXPECT_EQ(10, state.job.badFrames.count);
    ExpectAsTheFormTells();
}

TEST_F(ShellWindow, FollowsTheMetric) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    int plugin = -1;
    ASSERT_TRUE(metrics.FindById(L"roi_psnr", plugin)) << "a configurable metric without a page";
    MainWindow& main = Open();
    Click(main, "B-RGB");
    EXPECT_EQ(Metric::ComponentB, SelectionOf(state.job).component);
    for (int i = 0; i < metrics.GetCount(); ++i) {
        SCOPED_TRACE(ToUtf8(metrics.GetId(i)));
        ChooseMetricNamed(main, metrics.GetId(i));
        ExpectAsTheFormTells();
        const auto& text = Find<QLabel>(main, "Metric settings");
        EXPECT_EQ(i == plugin, text.isVisible());
        EXPECT_EQ(metrics.GetDefaultSettings(i), FromUtf8(text.text().toStdString()));
        const auto shown = static_cast<std::size_t>(ComponentControl(SelectionOf(state.job).component));
        EXPECT_TRUE(Find<QRadioButton>(main, ControlNames()[shown]).isChecked());
    }
}

TEST_F(ShellWindow, MnemonicsAndTheirFirstControls) {
    state.job.comparativeAnalysis = true;
    MainWindow& main = OpenActive();
    EXPECT_EQ("123ABCDEFHIKLMNOPRSTUVWXZ", Mnemonics(main)) << "each once";
    for (const char* used : {"Path, processed file", "B-RGB", "More options"}) Find(main, used)->setFocus();
    for (const auto& [key, first] :
         {std::pair(Qt::Key_1, "Path, original file"), {Qt::Key_2, "Metric"}, {Qt::Key_3, "Save CSV file"}}) {
        QTest::keyClick(&main, key, Qt::AltModifier);
        EXPECT_EQ(Find(main, first), main.focusWidget()) << first;
    }
}

TEST_F(ShellWindow, TabGoesInReadingOrder) {
    state = StateWith(L"/a.y4m", L"/b.y4m", L"/c.y4m", L"/m.y4m");
    state.job.comparativeAnalysis = state.job.maskSlot.useMask = true;
    state.job.csv.save = state.job.badFrames.save = true;
    for (const FileRow row : kFileRows) SlotOf(state.job, row).useAvs = true;
    MainWindow& main = OpenActive();

    // As the controls are listed, but for the boxes ahead of the two last rows, what is off (the metric's
    // settings), and the radio buttons, of which one is a stop.
    std::vector<std::string> expected = ControlNames();
    const auto move = [&expected](const std::string& name, const std::string& before) {
        std::erase(expected, name);
        expected.insert(std::find(expected.begin(), expected.end(), before), name);
    };
    move("Comparative analysis", "Path, second processed file");
    move("Use mask file:", "Path, mask file");
    move("Website", "Process");
    move("Feedback", "Process");
    move("Help", "Process");
    for (const char* name : {"Settings", "U-YUV", "V-YUV", "L-LUV", "R-RGB", "G-RGB", "B-RGB"})
        std::erase(expected, name);
    for (const std::string& name : expected) {
        QWidget* focused = QApplication::focusWidget();
        ASSERT_EQ(Find(main, name), focused) << name << ": " << focused->accessibleName().toStdString();
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    EXPECT_EQ(Find(main, expected.front()), QApplication::focusWidget());
}

TEST_F(ShellWindow, EscapeDoesNothingAndEnterProcesses) {
    MainWindow& main = OpenActive();
    QTest::keyClick(&main, Qt::Key_Escape);
    EXPECT_TRUE(main.isVisible());
    auto& field = Find<QLineEdit>(main, "Path, original file");
    QTest::keyClick(&field, Qt::Key_Return);  // not ready: nothing happens
    state.job.maskSlot.useMask = true;        // so that the run is refused
    state.job.autoCloseProgress = true;
    Type("Path, original file", "/a.y4m");
    Type("Path, processed file", "/b.y4m");
    User user;
    user.In("Tolvane: Error", [](QWidget& window) {
        const auto& box = dynamic_cast<QMessageBox&>(window);
        EXPECT_EQ("Choose mask file!", box.text().toStdString());
        EXPECT_EQ(QMessageBox::Warning, box.icon());
        window.close();
    });
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_TRUE(state.job.autoCloseProgress);
    EXPECT_EQ(0, saves);
}

TEST_F(ShellWindow, CtrlOAndCtrlPBelongToTheRowWithTheFocus) {
    MainWindow& main = OpenActive();
    const std::string missing = directory.Path("missing.mkv");
    Type("Path, processed file", missing);
    User user;
    user.In("Could not open file for preview",
            [&](QWidget& window) {
                auto& box = dynamic_cast<QMessageBox&>(window);
                EXPECT_EQ("Could not open file \"" + missing + "\" for preview.",
                          box.text().remove(QChar(0x200B)).toStdString());  // where it may break
                EXPECT_TRUE(box.informativeText().contains(QStringLiteral("needs \"Open with AVISynth\"")));
                box.close();
            })
        .Close("Open");
    for (const Qt::Key key : {Qt::Key_P, Qt::Key_O}) {
        Find(main, "Open with AVISynth, processed file")->setFocus();
        Press(main, Qt::CTRL | key);
    }
}

TEST_F(ShellWindow, PreviewAsksForWhatARawFileLacks) {
    const std::string title = "Tolvane - YUV File settings";
    MainWindow& main = Open();
    Type("Path, original file", directory.Write("a.yuv", std::string(96, '\x80')));
    User user;
    user.Press(title, "Cancel")
        .In(title,
            [](QWidget& window) {
                for (QLineEdit* field : window.findChildren<QLineEdit*>())
                    field->setText(QStringLiteral("8"));
            })
        .Press(title, "OK")
        .Close("Tolvane - Preview")
        .Close("Tolvane - Preview");  // known now
    for (int times = 0; times < 3; ++times) Click(main, "Preview, original file");
}

TEST_F(ShellWindow, LinksLeadOutside) {
    OpenedFiles browser({QStringLiteral("https"), QStringLiteral("mailto"), QStringLiteral("file")});
    MainWindow& main = Open();
    for (const auto& [button, scheme] :
         {std::pair("Website", "https"), {"Feedback", "mailto"}, {"Online metric info", "https"}}) {
        Click(main, button);
        EXPECT_EQ(scheme, browser.urls.takeLast().scheme().toStdString()) << button;
    }
    // A plug-in's address can be of any kind, but only pages are opened.
    for (const wchar_t* address : {L"file:///usr/bin/true", L"page.html", L""}) {
        User user;
        user.Press("Tolvane: Error", "OK");
        OpenPage(&main, address);
    }
    EXPECT_TRUE(browser.urls.isEmpty());
}

TEST_F(ShellWindow, ClicksThatComeLateAreLost) {
    state = StateWith(L"/a.y4m", L"/b.y4m");
    state.job.csv.save = state.job.badFrames.save = true;
    OpenedFiles browser({QStringLiteral("https"), QStringLiteral("mailto"), QStringLiteral("file")});
    MainWindow& main = Open();
    bool came = false;
    User user;
    user.In("Tolvane - More options", [&](QWidget& options) {
        came = true;
        for (auto* button : main.findChildren<QPushButton*>())
            if (button->window() == &main) button->animateClick();
        QTest::qWait(300);
        EXPECT_EQ(&options, QApplication::activeModalWidget());
        Find<QPushButton>(options, "Cancel").animateClick();  // one of its own isn't late
    });
    Find<QPushButton>(main, "More options").animateClick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return came && !QApplication::activeModalWidget(); }));
    QTest::qWait(300);
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(browser.urls.isEmpty());
    EXPECT_EQ(0, saves);
}

TEST_F(ShellWindow, OpensWithinItsScreenAndGrowsToTheSideOnly) {
    MainWindow& main = Open();
    const int height = main.height();
    // The screen of tests is smaller than the window needs.
    EXPECT_EQ(main.minimumSizeHint().width(), main.width());
    EXPECT_LE(main.width(), 919);
    EXPECT_NEAR(554, height, 20);
    main.resize(main.width() + 300, height + 300);
    QApplication::processEvents();
    EXPECT_EQ(height, main.height());
    EXPECT_GT(Find(main, "Path, original file")->width(), 400);
}

TEST_F(ShellWindow, SettingsComeBackAsTheyWereLeft) {
    const std::wstring place = FromUtf8(directory.Root().native() + "/");
    const char* const path = "/videos/a, \"b\" & c.y4m";
    std::map<std::string, bool> left;
    for (int start = 1; start <= 2; ++start) {
        QtSettingsStore store(QStringLiteral("Lumetry"), QStringLiteral("WindowTest"));
        state = StartShell(store, place, place);
        EXPECT_EQ(start, state.runNumber);
        window = std::make_unique<MainWindow>(
            state, [&] { return SaveSettings(store, Metric::GetMetricList(), state); });
        window->show();
        const auto boxes = [this] {
            std::map<std::string, bool> ticks;
            for (const QCheckBox* box : window->findChildren<QCheckBox*>())
                ticks[(box->accessibleName() + box->text()).toStdString()] = box->isChecked();
            return ticks;
        };
        EXPECT_EQ(start == 2, left == boxes());
        EXPECT_EQ(start == 1 ? "" : path, PathIn("original file"));
        EXPECT_EQ(start == 2, Find<QComboBox>(*window, "Metric").currentText() == QStringLiteral("MSE"));
        EXPECT_EQ(start == 2, Find<QRadioButton>(*window, "G-RGB").isChecked());
        if (start == 2) break;
        Type("Path, original file", path);
        for (QCheckBox* box : window->findChildren<QCheckBox*>())
            if (box->isEnabled()) box->click();
        left = boxes();
        ChooseMetricNamed(*window, L"mse");
        Click(*window, "G-RGB");
        Click(*window, "Exit");
        EXPECT_TRUE(window->HasEnded());
    }
    window.reset();
}

}  // namespace
