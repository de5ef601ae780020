#include "platform/program_directory.h"
#include "platform/qt/file_chooser.h"
#include "platform/qt/help.h"
#include "platform/qt/message_box.h"
#include "platform/qt/wide_text.h"
#include "platform/text.h"
#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"

namespace {

TEST(FileChooser, BeginsAtThePathAndGivesTheChosenFileOrFolder) {
    const std::vector<FileKind> kinds = {{L"All supported files ()", {L"*.avi", L"*.y4m"}},
                                         {L"All files (*.*)", {L"*.*"}}};
    const TemporaryDirectory directory;
    const std::string root = directory.Root().native(), clip = directory.Write("a b&c.y4m", "x");
    const struct {
        std::string path, selected;
        QDialog::DialogCode answer;
    } cases[] = {{clip, clip, QDialog::Accepted},
                 {clip, clip, QDialog::Rejected},
                 {root, "", QDialog::Rejected},
                 {root + "/gone/a.avi", "", QDialog::Rejected}};
    User user;
    for (const auto& c : cases) {
        user.In("Open", [&](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            EXPECT_EQ(root, dialog.directory().absolutePath().toStdString());
            EXPECT_EQ(c.selected, dialog.selectedFiles().join(u'|').toStdString());
            auto* shown = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
            EXPECT_EQ("All supported files ()", shown->itemText(0).toStdString());
            EXPECT_EQ("All files (*.*)", shown->itemText(1).toStdString());
            EXPECT_EQ("All supported files () (*.avi *.AVI *.y4m *.Y4M)|All files (*.*) (*)",
                      dialog.nameFilters().join(u'|').toStdString());
            static_cast<QDialog&>(dialog).done(c.answer);
        });
        const auto chosen = ChooseFile(nullptr, L"Open", FromUtf8(c.path), kinds);
        EXPECT_EQ(c.answer == QDialog::Accepted ? std::optional(FromUtf8(c.path)) : std::nullopt, chosen);
    }
    user.In("Select folder", [](QWidget& window) { dynamic_cast<QDialog&>(window).accept(); });
    EXPECT_EQ(FromUtf8(root), ChooseFolder(nullptr, L"Select folder", FromUtf8(root)));
}

TEST(Help, PageComesFromTheFirstDirectoryThatHasIt) {
    const TemporaryDirectory directory;
    for (const char* name : {"first", "second"}) std::filesystem::create_directory(directory.Path(name));
    const std::wstring first = FromUtf8(directory.Path("first/"));
    const std::wstring second = FromUtf8(directory.Path("second/"));
    directory.Write("second/a.html", "");
    EXPECT_EQ(second + L"a.html", HelpFile(L"a.html", {first, second}));
    EXPECT_EQ(first + L"b.html", HelpFile(L"b.html", {first, second}));
    directory.Write("first/a.html", "");
    EXPECT_EQ(first + L"a.html", HelpFile(L"a.html", {first, second}));
}

TEST(MessageBox, SafeAnswerIsDefaultAndEscape) {
    const std::pair<std::function<bool()>, const char*> cases[] = {
        {[] { return AskYesNo(nullptr, QMessageBox::Question, L"Title", L"Sure?"); }, "Yes"},
        {[] { return AskToProceed(nullptr, QMessageBox::Question, L"Title", L"?", L"Send"); }, "Send"}};
    User user;
    for (const auto& [ask, yes] : cases) {
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
            user.In("Title", [key](QWidget& box) { Press(box, key); });
            EXPECT_FALSE(ask());
        }
        user.Press("Title", yes);
        EXPECT_TRUE(ask());
    }
}

TEST(MessageBox, TextIsShownAndCopiedAsItIs) {
    const QString text = QStringLiteral("\"a<b>.yuv\" ") + QString(200, u'p');
    User user;
    user.In("Could not open file", [&](QWidget& window) {
        auto& box = dynamic_cast<QMessageBox&>(window);
        EXPECT_EQ(Qt::PlainText, box.textFormat());
        EXPECT_EQ(text, box.text().remove(QChar(0x200B)));
        EXPECT_TRUE(box.informativeText().contains(QStringLiteral("Try &lt;b&gt;.")));
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(text, QGuiApplication::clipboard()->text());
        EXPECT_EQ(QMessageBox::Critical, box.icon());
        box.close();
    });
    ShowMessage(nullptr, QMessageBox::Critical, L"Could not open file", ToWide(text), L"Try <b>.");
    QString missing;
    user.In("Tolvane: Help", [&](QWidget& window) {
        missing = dynamic_cast<QMessageBox&>(window).text().remove(QChar(0x200B));
        window.close();
    });
    ShowHelp(L"no such page.html");
    EXPECT_TRUE(missing.contains(ToQString(L"\"" + ProgramDirectory() + L"help/no such page.html\"")));
}

}  // namespace
