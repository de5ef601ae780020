#include "platform/qt/help.h"

#include "platform/program_directory.h"
#include "platform/qt/message_box.h"
#include "platform/qt/open_outside.h"
#include "platform/qt/wide_text.h"

#include <QFileInfo>
#include <QShortcut>

void ShowHelp(const std::wstring& page) {
    const std::wstring file = HelpFile(page, {ProgramDirectory() + L"help/", L"/usr/share/tolvane/help/"});
    if (OpenFileOutside(file)) return;
    const bool isThere = QFileInfo::exists(ToQString(file));
    const std::wstring reason =
        isThere ? L"No program of this system opened it. Open the file with a web browser."
                : L"The file is missing. Install the program again, with its directory \"help\".";
    ShowMessage(nullptr, QMessageBox::Warning, L"Tolvane: Help",
                L"Could not open the help page \"" + file + L"\". " + reason);
}

void AddHelpKey(QWidget& window, const std::wstring& page) {
    auto* key = new QShortcut(QKeySequence(Qt::Key_F1), &window);
    QObject::connect(key, &QShortcut::activated, &window, [page] { ShowHelp(page); });
}

std::wstring HelpFile(const std::wstring& page, const std::vector<std::wstring>& directories) {
    for (const std::wstring& directory : directories) {
        if (QFileInfo::exists(ToQString(directory + page))) return directory + page;
    }
    return directories.front() + page;
}
