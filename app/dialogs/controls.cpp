#include "app/dialogs/controls.h"

#include "app/rules/window_size.h"
#include "platform/qt/file_chooser.h"
#include "platform/qt/path_field.h"
#include "platform/qt/wide_text.h"

#include <QDialog>
#include <QLayout>
#include <QScreen>

namespace {

constexpr QSize kWindowFrame(8, 40);  // of a window manager; not known before the window is shown

PixelSize ToPixels(QSize size) {
    return {size.width(), size.height()};
}

}  // namespace

void SetAvailable(QWidget& control, const std::wstring& whyDisabled) {
    control.setEnabled(whyDisabled.empty());
    control.setToolTip(PlainToolTip(ToQString(whyDisabled)));
}

void SetGroupAvailable(QWidget& group, const std::wstring& whyDisabled) {
    SetAvailable(group, whyDisabled);
    const QList<QWidget*> members = group.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (QWidget* member : members) SetAvailable(*member, whyDisabled);
}

QString WithMnemonic(const std::wstring& text, QStringView word) {
    QString label = LiteralLabel(ToQString(text));
    return label.insert(label.indexOf(word), u'&');
}

void FocusFirst(QWidget& field) {
    field.setFocus(Qt::TabFocusReason);
}

QSize RoomFor(const QWidget& window) {
    return window.screen()->availableSize() - kWindowFrame;
}

QSize OpeningSizeOf(const QWidget& window, QSize wanted) {
    const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
    const PixelSize size = OpeningSize(ToPixels(wanted), ToPixels(least), ToPixels(RoomFor(window)));
    return {size.width, size.height};
}

void SetUsualSize(QDialog& dialog, QSize usual) {
    QSize size = OpeningSizeOf(dialog, usual);
    const QLayout& layout = *dialog.layout();
    if (layout.hasHeightForWidth())
        size.setHeight(qMax(size.height(), layout.totalHeightForWidth(size.width())));
    dialog.resize(size);
}

void BrowseFolder(PathField& field) {
    if (const auto folder = ChooseFolder(field.window(), L"Select folder", field.Path()))
        field.SetPath(*folder);
}
