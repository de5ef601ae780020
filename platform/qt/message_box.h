#pragma once

#include <QMessageBox>

#include <string>

/// Modal messages over `parent`, or over the active window without one. They return when the user has
/// answered. Title and text are shown letter for letter, whatever a file's name brings into them. GUI thread
/// only.

/// With "OK". `advice` stands as a text of its own below.
void ShowMessage(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title, const std::wstring& text,
                 const std::wstring& advice = {});

/// With "Yes" and "No"; whether it was "Yes". "No" is the default, and what Escape and the close box mean.
bool AskYesNo(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title, const std::wstring& text);

/// With a button of the given label and "Cancel"; whether it was the button. "Cancel" is the default, and
/// what Escape and the close box mean.
bool AskToProceed(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title,
                  const std::wstring& text, const std::wstring& label);
