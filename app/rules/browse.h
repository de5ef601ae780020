#pragma once

#include <optional>
#include <string>

#include "app/rules/box_text.h"
#include "app/rules/file_rows.h"
#include "app/rules/shell_state.h"

/// What the user is asked while a file is taken. Windows answer; each operation returns once the user has.
class IFileQuestions {
public:
    /// The system's file dialog with `kVideoFilters`, at first showing `preset`. Nothing if it was cancelled.
    virtual std::optional<std::wstring> ChooseFile(const std::wstring& preset) = 0;
    /// The dialog of raw settings on `record`, which changes as `YuvForm` tells. Whether it ended by "OK".
    virtual bool EditYuvSettings(FileRecord& record) = 0;
    /// `OpenWithAviSynthQuestion`: whether the answer is yes.
    virtual bool AskOpenWithAviSynth() = 0;
    virtual ~IFileQuestions() = default;
};

/// Asked with the icon for questions, "Yes" and "No".
BoxText OpenWithAviSynthQuestion();

/// What helps with a file that doesn't open; empty if nothing is known. It is for the cases in which nobody
/// was asked the question above, as with a path that was typed.
std::wstring OpeningAdvice(const FileRecord& slot, const Capabilities& capabilities);

/// "Browse" of a row: lets the user choose a file, works out how it is to be opened, and puts it into the
/// row's slot. The directory of a processed file becomes that of the CSV and the visualization files.
///
/// False if the user cancelled: nothing has changed after a cancelled file dialog, the slot is empty after
/// cancelled raw settings.
bool BrowseFile(ShellState& state, FileRow row, IFileQuestions& questions);

/// The same with a file that was chosen otherwise, as by dropping it.
bool TakeFile(ShellState& state, FileRow row, const std::wstring& path, IFileQuestions& questions);
