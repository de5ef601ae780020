#include "platform/qt/file_chooser.h"

#include "platform/qt/wide_text.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

namespace {

// In the form "name (pattern pattern)". A desktop's own dialog may tell "*.avi" from "*.AVI", so both stand
// there.
QString NameFilter(const FileKind& kind) {
    QStringList patterns;
    for (const std::wstring& pattern : kind.patterns) {
        const QString given = pattern == L"*.*" ? QStringLiteral("*") : ToQString(pattern);
        patterns << given << given.toLower() << given.toUpper();
    }
    patterns.removeDuplicates();
    return QStringLiteral("%1 (%2)").arg(ToQString(kind.name), patterns.join(u' '));
}

// The nearest directory above `path` that exists.
QString ExistingDirectory(const QString& path) {
    QFileInfo info(path);
    while (!info.isDir() && !info.isRoot() && info.path() != info.filePath()) info.setFile(info.path());
    return info.filePath();
}

std::optional<std::wstring> Run(QFileDialog& dialog) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return ToWide(dialog.selectedFiles().constFirst());
}

}  // namespace

std::optional<std::wstring> ChooseFile(QWidget* parent, const std::wstring& title, const std::wstring& path,
                                       const std::vector<FileKind>& kinds) {
    QStringList filters;
    for (const FileKind& kind : kinds) filters.append(NameFilter(kind));

    const QString start = ToQString(path);
    QFileDialog dialog(parent, ToQString(title), ExistingDirectory(start));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(filters);
    if (QFileInfo(start).isFile()) dialog.selectFile(start);
    return Run(dialog);
}

std::optional<std::wstring> ChooseNewFile(QWidget* parent, const std::wstring& title,
                                          const std::wstring& path, const FileKind& kind) {
    const QString start = ToQString(path);
    QFileDialog dialog(parent, ToQString(title), ExistingDirectory(start));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(NameFilter(kind));
    dialog.setDefaultSuffix(QFileInfo(ToQString(kind.patterns.front())).suffix());
    dialog.selectFile(QFileInfo(start).fileName());
    return Run(dialog);
}

std::optional<std::wstring> ChooseFolder(QWidget* parent, const std::wstring& title,
                                         const std::wstring& path) {
    QFileDialog dialog(parent, ToQString(title), ExistingDirectory(ToQString(path)));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return Run(dialog);
}
