#include "app/rules/shell_start.h"
#include "app/shell/contact.h"
#include "tests/app/shell/shell_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <set>

namespace {

std::string StatusOf(QWidget& window) {
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        const std::string text = label->text().toStdString();
        if (text == "Ready" || text == "Select video files and options") return text;
    }
    return "";
}

void Type(QWidget& window, const std::string& field, const std::string& text) {
    auto& edit = Find<QLineEdit>(window, field);
    edit.setFocus();
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, QString::fromStdString(text));
}

void ChooseMetricNamed(QWidget& window, const std::wstring& id) {
    int index = -1;
    Metric::GetMetricList().FindById(id, index);
    auto& list = Find<QComboBox>(window, "Metric");
    list.setCurrentIndex(list.findData(index));
    emit list.activated(list.currentIndex());
}

TEST_F(ShellWindow, ShowsTheDefaultsOfAFirstStart) {
    const std::wstring place = FromUtf8(directory.Root().native() + "/");
    state = StartShell(MemorySettingsStore(), place, place);
    MainWindow& main = Open();
    EXPECT_EQ("Tolvane 3.0", main.windowTitle().toStdString());
    for (const QCheckBox* box : main.findChildren<QCheckBox*>())
        EXPECT_EQ(box->text() == QStringLiteral("Show resu&lts visualization"), box->isChecked())
            << box->text().toStdString();
    for (const std::string& row : kRowNames)
        EXPECT_EQ("", Find<QLineEdit>(main, "Path, " + row).text().toStdString());
    EXPECT_EQ(0, Find<QComboBox>(main, "Metric").currentIndex());
    EXPECT_TRUE(Find<QRadioButton>(main, "Y-YUV").isChecked());
    EXPECT_EQ("Select video files and options", StatusOf(main));
    EXPECT_FALSE(Find<QPushButton>(main, "Process").isEnabled());
}

TEST_F(ShellWindow, IsReadyWhenTheMetricsFilesAreChosen) {
    MainWindow& main = Open();
    const auto& process = Find<QPushButton>(main, "Process");
    const auto expect = [&](bool ready) {
        EXPECT_EQ(ready, process.isEnabled());
        EXPECT_EQ(ready ? "Ready" : "Select video files and options", StatusOf(main));
    };
    Type(main, "Path, processed file", "b.y4m");
    expect(false);
    EXPECT_EQ(L"b.y4m", state.job.fileSlots[RowProcessed].name);
    EXPECT_EQ(L"b.y4m", state.job.fileSlots[RowProcessed].sourceName);
    ChooseMetricNamed(main, L"blurring_metric");
    expect(true);  // one file is enough
    Click(main, "Save metric visualization video / image");
    expect(false);  // but not to visualize
    Type(main, "Path, original file", "a.y4m");
    expect(true);
}

TEST_F(ShellWindow, TakesNoMoreOfATypedPathThanItShows) {
    MainWindow& main = Open();
    auto& field = Find<QLineEdit>(main, "Path, original file");
    field.setFocus();
    field.insert(QString(300, u'a'));
    emit field.textEdited(field.text());
    EXPECT_EQ(260u, state.job.fileSlots[RowOriginal].name.size());
    EXPECT_EQ(260, field.text().size());
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
    Type(main, "Path, original file", "a.bmp");
    ExpectAsTheFormTells();
    Type(main, "Path, processed file", "b.avi");
    Click(main, "Save \"bad frames\"");
    EXPECT_EQ(10, state.job.badFrames.count);
    ExpectAsTheFormTells();
}

TEST_F(ShellWindow, FollowsTheMetric) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    int plugin = -1;
    ASSERT_TRUE(metrics.FindById(L"roi_psnr", plugin)) << "a configurable metric without a page";
    MainWindow& main = Open();
    Find<QRadioButton>(main, "B-RGB").click();
    EXPECT_EQ(Metric::ComponentB, state.job.selection.begin()->component);
    for (int i = 0; i < metrics.GetCount(); ++i) {
        SCOPED_TRACE(ToUtf8(metrics.GetId(i)));
        ChooseMetricNamed(main, metrics.GetId(i));
        ExpectAsTheFormTells();
        const auto& text = Find<QLabel>(main, "Metric settings");
        EXPECT_EQ(i == plugin, text.isVisible());
        EXPECT_EQ(metrics.GetDefaultSettings(i), FromUtf8(text.text().toStdString()));
        const int component = state.job.selection.begin()->component;
        EXPECT_TRUE(
            Find<QRadioButton>(main, ControlNames()[static_cast<std::size_t>(ComponentControl(component))])
                .isChecked());
    }
}

TEST_F(ShellWindow, MnemonicsAreUniqueAndAsPlanned) {
    state.job.comparativeAnalysis = true;
    MainWindow& main = Open();
    std::multiset<char> found;
    for (const QWidget* widget : main.findChildren<QWidget*>()) {
        QString text;
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) text = button->text();
        if (const auto* group = qobject_cast<const QGroupBox*>(widget)) text = group->title();
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && label->buddy()) text = label->text();
        const auto at = text.indexOf(u'&');
        if (at >= 0) found.insert(text.at(at + 1).toUpper().toLatin1());
    }
    const std::string planned = "123ABCDEFHIKLMNOPRSTUVWXZ";
    EXPECT_EQ(planned, std::string(found.begin(), found.end()));
}

TEST_F(ShellWindow, MnemonicsOfStepsLeadToTheirFirstControls) {
    MainWindow& main = Open();
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
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
    MainWindow& main = Open();
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));

    std::vector<std::string> expected;
    const auto addRow = [&](int row) {
        const auto names = RowControlNames(kRowNames[static_cast<std::size_t>(row)]);
        expected.insert(expected.end(), names.begin(), names.end());
    };
    addRow(0);
    addRow(1);
    expected.push_back("Comparative analysis");
    addRow(2);
    expected.push_back("Use mask file:");
    addRow(3);
    for (const char* name :
         {"Use black mask", "Advanced, RGB/YUV matrix", "Metric", "Online metric info", "Y-YUV",
          "Save CSV file", "Save metric visualization video / image", "Advanced, CSV and visualization",
          "Save \"bad frames\"", "Advanced, \"bad frames\"", "More options", "Show results visualization",
          "Website", "Feedback", "Help", "Process", "Exit"})
        expected.push_back(name);

    for (const std::string& name : expected) {
        const QWidget* focused = QApplication::focusWidget();
        ASSERT_EQ(Find(main, name), focused)
            << name << ", but was on " << focused->accessibleName().toStdString();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(Find(main, expected.front()), QApplication::focusWidget());
}

TEST_F(ShellWindow, EscapeDoesNothingAndEnterProcesses) {
    MainWindow& main = Open();
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    QTest::keyClick(&main, Qt::Key_Escape);
    EXPECT_TRUE(main.isVisible());
    auto& field = Find<QLineEdit>(main, "Path, original file");
    QTest::keyClick(&field, Qt::Key_Return);  // not ready: nothing happens
    EXPECT_EQ(0, saves);

    state.job.maskSlot.useMask = true;  // so that the run is refused
    Type(main, "Path, original file", "/a.y4m");
    Type(main, "Path, processed file", "/b.y4m");
    User user;
    user.Press("Tolvane: Error", "OK");
    QTest::keyClick(&field, Qt::Key_Return);
}

TEST_F(ShellWindow, CtrlOAndCtrlPBelongToTheRowWithTheFocus) {
    MainWindow& main = Open();
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    Type(main, "Path, processed file", directory.Path("missing.mkv"));
    QString message, advice;
    User user;
    user.In("Could not open file for preview",
            [&](QWidget& window) {
                auto& box = dynamic_cast<QMessageBox&>(window);
                message = box.text().remove(QChar(0x200B));  // where it may break
                advice = box.informativeText();
                return box.close();
            })
        .In("Open", [](QWidget& dialog) {
            dialog.close();
            return true;
        });
    auto& box = Find<QCheckBox>(main, "Open with AVISynth, processed file");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ("Could not open file \"" + directory.Path("missing.mkv") + "\" for preview.",
              message.toStdString());
    EXPECT_TRUE(advice.contains(QStringLiteral("needs \"Open with AVISynth\"")));
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_O, Qt::ControlModifier);
}

TEST_F(ShellWindow, PreviewAsksForWhatARawFileLacks) {
    const std::string title = "Tolvane - YUV File settings";
    MainWindow& main = Open();
    Type(main, "Path, original file", directory.Write("a.yuv", std::string(96, '\x80')));
    User user;
    user.Press(title, "Cancel");
    Click(main, "Preview, original file");
    user.In(title,
            [](QWidget& window) {
                for (QLineEdit* field : window.findChildren<QLineEdit*>())
                    field->setText(QStringLiteral("8"));
                return true;
            })
        .Press(title, "OK")
        .In("Tolvane - Preview", [](QWidget& window) { return window.close(); });
    Click(main, "Preview, original file");
    user.In("Tolvane - Preview", [](QWidget& window) { return window.close(); });
    Click(main, "Preview, original file");  // known now
}

/// Takes the addresses that the program opens.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() {
        for (const QString& scheme : schemes) QDesktopServices::setUrlHandler(scheme, this, "Open");
    }
    ~Browser() override {
        for (const QString& scheme : schemes) QDesktopServices::unsetUrlHandler(scheme);
    }
    const QStringList schemes = {QStringLiteral("https"), QStringLiteral("mailto"), QStringLiteral("file")};
    QString opened;

public slots:
    void Open(const QUrl& url) { opened = url.toString(); }
};

TEST_F(ShellWindow, LinksLeadOutside) {
    Browser browser;
    MainWindow& main = Open();
    const struct {
        std::string button, begin;
    } cases[] = {{"Website", "https://"}, {"Feedback", "mailto:"}, {"Online metric info", "https://"}};
    for (const auto& c : cases) {
        browser.opened.clear();
        Click(main, c.button);
        EXPECT_EQ(0u, browser.opened.toStdString().find(c.begin)) << c.button;
    }
    // A plug-in's address can be of any kind, but only pages are opened.
    for (const wchar_t* address : {L"file:///usr/bin/true", L"page.html", L""}) {
        browser.opened.clear();
        User user;
        user.Press("Tolvane: Error", "OK");
        OpenPage(&main, address);
        EXPECT_EQ("", browser.opened.toStdString());
    }
}

TEST_F(ShellWindow, ClicksThatComeLateAreLost) {
    state = StateWith(L"/a.y4m", L"/b.y4m");
    state.job.csv.save = state.job.badFrames.save = true;
    Browser browser;
    MainWindow& main = Open();
    const std::string title = "Tolvane - More options";
    bool came = false;
    User user;
    user.In(title, [&](QWidget& options) {
        came = true;
        for (auto* button : main.findChildren<QPushButton*>())
            if (button->window() == &main) button->animateClick();
        QTest::qWait(300);
        EXPECT_EQ(&options, QApplication::activeModalWidget());
        Find<QPushButton>(options, "Cancel").animateClick();  // one of its own isn't late
        return true;
    });
    Find<QPushButton>(main, "More options").animateClick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return came && !QApplication::activeModalWidget(); }));
    QTest::qWait(300);
    EXPECT_FALSE(QApplication::activeModalWidget());
    EXPECT_TRUE(main.isVisible());
    EXPECT_EQ("", browser.opened.toStdString());
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

}  // namespace

#include "main_window_test.moc"
