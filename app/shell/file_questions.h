#pragma once

#include "app/rules/browse.h"

class QWidget;

/// Asks by windows over the main dialog.
class FileQuestions : public IFileQuestions {
public:
    /// Both outlive this.
    FileQuestions(QWidget& mainWindow, const ShellState& state) : window(mainWindow), state(state) {}

    std::optional<std::wstring> ChooseFile(const std::wstring& preset) override;
    bool EditYuvSettings(FileRecord& record) override;
    bool AskOpenWithAviSynth() override;

private:
    std::wstring StartingPlace() const;

    QWidget& window;
    const ShellState& state;
    std::wstring lastDirectory;  // of the last file that was chosen
};
