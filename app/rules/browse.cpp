#include "app/rules/browse.h"

#include "app/rules/script_parameters.h"
#include "video/file_kind.h"

namespace {

/// The user's own filter and parameters stay with the row, whatever file comes.
void SuitFilter(FileRecord& slot) {
    if (!slot.onlyPreferred && !slot.customParameters) TakeFilterByName(slot);
}

/// Raw files of one comparison mostly have one size and layout: a slot without a size takes the first one
/// known.
void BorrowRawSize(const MeasurementJob& job, FileRecord& slot) {
    if (slot.width != 0 || slot.height != 0) return;
    for (const FileRecord& other : job.fileSlots) {
        if (other.width == 0 || other.height == 0) continue;
        slot.width = other.width;
        slot.height = other.height;
        slot.yuvType = other.yuvType;
        TakeRawParameters(slot);
        return;
    }
}

bool OpensWithoutScript(const std::wstring& name) {
    return rkIsRawName(name) || rkIsAviName(name) || rkIsAvsName(name) || rkIsBmpName(name) ||
           rkIsY4mName(name);
}

}  // namespace

BoxText OpenWithAviSynthQuestion() {
    return {
        L"Open with AviSynth",
        L"The file is neither AVI, nor raw format, nor AVS. This file can only be opened through AviSynth. "
        L"Open file with AviSynth?"};
}

std::wstring OpeningAdvice(const FileRecord& slot, const Capabilities& capabilities) {
    if (slot.name.empty() || slot.useAvs || OpensWithoutScript(slot.name)) return {};
    if (!capabilities.aviSynth) return L"Such a file needs AviSynth, which isn't there.";
    return L"Such a file needs \"Open with AVISynth\" in its row.";
}

bool BrowseFile(ShellState& state, FileRow row, IFileQuestions& questions) {
    const auto chosen = questions.ChooseFile(SlotOf(state.job, row).name);
    return chosen && TakeFile(state, row, *chosen, questions);
}

bool TakeFile(ShellState& state, FileRow row, const std::wstring& path, IFileQuestions& questions) {
    MeasurementJob& job = state.job;
    FileRecord& slot = SlotOf(job, row);

    // 1. The path, and the filter that goes with it.
    SetPath(slot, path);
    SuitFilter(slot);

    // 2. What a raw file doesn't say of itself.
    if (rkIsRawName(path)) {
        BorrowRawSize(job, slot);
        if (!questions.EditYuvSettings(slot)) {
            SetPath(slot, {});
            SuitFilter(slot);
            return false;
        }
    }

    // 3. What only a script opens.
    if (!OpensWithoutScript(path) && state.capabilities.aviSynth && !slot.useAvs)
        slot.useAvs = questions.AskOpenWithAviSynth();

    // 4. Results go beside the video that they speak of.
    if (row == RowProcessed || row == RowSecond)
        job.csv.outputDir = job.visualization.outputDir = DirectoryOf(path);
    return true;
}
