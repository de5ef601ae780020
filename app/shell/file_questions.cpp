#include "app/shell/file_questions.h"

#include "app/dialogs/file_kinds.h"
#include "app/dialogs/yuv_dialog.h"
#include "platform/qt/message_box.h"

std::optional<std::wstring> FileQuestions::ChooseFile(const std::wstring& preset) {
    const std::wstring start = preset.empty() ? StartingPlace() : preset;
    const auto chosen = ::ChooseFile(&window, L"Open", start, FileKindsOf(kVideoFilters));
    if (chosen) lastDirectory = DirectoryOf(*chosen);
    return chosen;
}

// The files of a comparison are mostly neighbours.
std::wstring FileQuestions::StartingPlace() const {
    if (!lastDirectory.empty()) return lastDirectory;
    for (const FileRecord& slot : state.job.fileSlots)
        if (!slot.name.empty()) return DirectoryOf(slot.name);
    return {};
}

bool FileQuestions::EditYuvSettings(FileRecord& record) {
    return ::EditYuvSettings(&window, record, state.capabilities);
}

bool FileQuestions::AskOpenWithAviSynth() {
    const BoxText question = OpenWithAviSynthQuestion();
    return AskYesNo(&window, QMessageBox::Question, question.title, question.text);
}
