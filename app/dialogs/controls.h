#pragma once

#include <QSize>
#include <QString>

#include <string>

class PathField;
class QDialog;
class QWidget;

/// What all dialogs do with their controls.

/// Turns `control` on if there is no reason against it, otherwise off, with the reason as its tooltip.
void SetAvailable(QWidget& control, const std::wstring& whyDisabled);
/// The same for a group, or a label, and all that is in it.
void SetGroupAvailable(QWidget& group, const std::wstring& whyDisabled);

/// `text` as the label of a control. Its mnemonic is the first letter of `word`, which occurs in it.
QString WithMnemonic(const std::wstring& text, QStringView word);

/// Gives `field` the focus when its window opens, with its text selected as the Tab key does.
void FocusFirst(QWidget& field);

/// The room that a window's screen has for it and its frame.
QSize RoomFor(const QWidget& window);
/// The size to open a window with that is complete and would like to have `wanted`.
QSize OpeningSizeOf(const QWidget& window, QSize wanted);
/// Gives a dialog that is complete the size to open with: `usual`, which is meant for text of 9 points, or
/// what it needs if that is more.
void SetUsualSize(QDialog& dialog, QSize usual);

/// Lets the user choose a directory for `field`, as its "Browse" does.
void BrowseFolder(PathField& field);
