#include "platform/qt/file_chooser.h"

#include "platform/text.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QTimer>

namespace {

const std::vector<FileKind> kKinds = {{L"All supported files ()", {L"*.avi", L"*.y4m"}},
                                      {L"All files (*.*)", {L"*.*"}}};

/// Runs `choose` and gives `act` the dialog that it opens.
template <class Choose, class Act>
auto WithDialog(Choose choose, Act act) {
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(nullptr, dialog);
        act(*dialog);
    });
    return choose();
}

class FileChooser : public testing::Test {
protected:
    auto ChooseFrom(const std::string& path) {
        return [path] { return ChooseFile(nullptr, L"Open", FromUtf8(path), kKinds); };
    }

    const TemporaryDirectory directory;
    const std::string clip = directory.Write("a b&c.y4m", "x");
};

TEST_F(FileChooser, OffersKindsByNameAndFindsWhatFits) {
    WithDialog(ChooseFrom(clip), [](QFileDialog& dialog) {
        auto* kinds = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        EXPECT_EQ("All supported files ()", kinds->itemText(0).toStdString());
        EXPECT_EQ("All files (*.*)", kinds->itemText(1).toStdString());
        EXPECT_EQ("All supported files () (*.avi *.AVI *.y4m *.Y4M)", dialog.nameFilters()[0].toStdString());
        EXPECT_EQ("All files (*.*) (*)", dialog.nameFilters()[1].toStdString());
        dialog.reject();
    });
}

TEST_F(FileChooser, BeginsAtThePathOrAtWhatThereIsOfIt) {
    const std::string root = directory.Root().native();
    const struct {
        const char* what;
        std::string path, selected;
    } cases[] = {
        {"a file", clip, clip},
        {"a directory", root, ""},
        {"a missing file", root + "/gone/gone.avi", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(std::nullopt, WithDialog(ChooseFrom(c.path), [&](QFileDialog& dialog) {
                      EXPECT_EQ(root, dialog.directory().absolutePath().toStdString());
                      EXPECT_EQ(c.selected, dialog.selectedFiles().join(u'|').toStdString());
                      dialog.reject();
                  }));
    }
}

TEST_F(FileChooser, GivesTheChosenFileOrFolder) {
    const auto accept = [](QFileDialog& dialog) { static_cast<QDialog&>(dialog).accept(); };
    EXPECT_EQ(FromUtf8(clip), WithDialog(ChooseFrom(clip), accept));
    const std::wstring root = FromUtf8(directory.Root().native());
    EXPECT_EQ(root, WithDialog([&] { return ChooseFolder(nullptr, L"Select folder", root); },
                               [&](QFileDialog& dialog) {
                                   EXPECT_EQ("Select folder", dialog.windowTitle().toStdString());
                                   accept(dialog);
                               }));
}

}  // namespace
