#include "app/dialogs/help.h"

#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "platform/program_directory.h"
#include "platform/qt/wide_text.h"
#include "tests/app/shell/user.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QUrl>

namespace {

/// Stands for the user's programs: what is opened comes here.
class Opened : public QObject {
    Q_OBJECT

public:
    Opened() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Take"); }
    ~Opened() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public slots:
    void Take(const QUrl& url) { urls.append(url); }
};

void Touch(const std::wstring& file) {
    QFile made(ToQString(file));
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
}

TEST(Help, PageComesFromTheFirstDirectoryThatHasIt) {
    const TemporaryDirectory directory;
    const std::wstring first = directory.Root().wstring() + L"/first/";
    const std::wstring second = directory.Root().wstring() + L"/second/";
    QDir().mkpath(ToQString(first));
    QDir().mkpath(ToQString(second));
    Touch(second + L"a.html");
    EXPECT_EQ(second + L"a.html", HelpFile(L"a.html", {first, second}));
    Touch(first + L"a.html");
    EXPECT_EQ(first + L"a.html", HelpFile(L"a.html", {first, second}));
    EXPECT_EQ(first + L"b.html", HelpFile(L"b.html", {first, second}));
}

TEST(Help, AMissingPageIsNamed) {
    QString text;
    User user;
    user.In("Tolvane: Help", [&](QWidget& window) {
        text = dynamic_cast<QMessageBox&>(window).text();
        window.close();
        return true;
    });
    ShowHelp(L"no such page.html");
    const std::wstring file = ProgramDirectory() + L"help/no such page.html";
    EXPECT_TRUE(text.remove(QChar(0x200B)).contains(ToQString(L"\"" + file + L"\""))) << text.toStdString();
}

// The pages are the real ones, which stand beside every program of the build.
TEST(Help, F1AndTheButtonOpenThePageOfTheDialog) {
    Opened opened;
    FileRecord record;
    MeasurementJob job;
    ScriptDialog script(nullptr, record, {});
    MatrixDialog matrix(nullptr, job);
    MetricDialog metric(nullptr, job);
    const struct {
        QDialog& dialog;
        const wchar_t* page;
        bool hasButton;
    } cases[] = {{script, kHelpScripts, true}, {matrix, kHelpMatrix, true}, {metric, kHelpStart, false}};
    for (const auto& c : cases) {
        opened.urls.clear();
        c.dialog.show();
        c.dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&c.dialog));
        QTest::keyClick(c.dialog.focusWidget(), Qt::Key_F1);
        if (c.hasButton) Click(c.dialog, "Help");
        ASSERT_EQ(c.hasButton ? 2 : 1, opened.urls.size());
        EXPECT_EQ(ToQString(ProgramDirectory() + L"help/" + c.page), opened.urls[0].toLocalFile());
        EXPECT_EQ(opened.urls.front(), opened.urls.back());
        EXPECT_TRUE(c.dialog.isVisible());
    }
}

}  // namespace

#include "help_test.moc"
