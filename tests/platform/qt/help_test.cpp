#include "platform/qt/help.h"

#include "platform/program_directory.h"
#include "platform/qt/wide_text.h"
#include "platform/text.h"
#include "tests/platform/qt/opened_files.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace {

TEST(Help, PageComesFromTheFirstDirectoryThatHasIt) {
    const TemporaryDirectory directory;
    for (const char* name : {"first", "second"}) std::filesystem::create_directory(directory.Path(name));
    const std::wstring first = FromUtf8(directory.Path("first/"));
    const std::wstring second = FromUtf8(directory.Path("second/"));
    directory.Write("second/a.html", "");
    EXPECT_EQ(second + L"a.html", HelpFile(L"a.html", {first, second}));
    directory.Write("first/a.html", "");
    EXPECT_EQ(first + L"a.html", HelpFile(L"a.html", {first, second}));
    EXPECT_EQ(first + L"b.html", HelpFile(L"b.html", {first, second}));
}

TEST(Help, KeyOpensThePageOrNamesTheMissingOne) {
    OpenedFiles opened;
    QWidget window;
    AddHelpKey(window, kHelpMatrix);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_F1);
    ASSERT_EQ(1, opened.urls.size());
    EXPECT_EQ(ToQString(ProgramDirectory() + L"help/" + kHelpMatrix), opened.urls[0].toLocalFile());

    QString text;
    QTimer::singleShot(0, [&text] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        text = box->text();
        box->close();
    });
    ShowHelp(L"no such page.html");
    const std::wstring file = ProgramDirectory() + L"help/no such page.html";
    EXPECT_TRUE(text.remove(QChar(0x200B)).contains(ToQString(L"\"" + file + L"\""))) << text.toStdString();
}

}  // namespace
