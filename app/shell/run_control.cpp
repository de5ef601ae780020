#include "app/shell/run_control.h"

#include "app/rules/run_end.h"
#include "app/shell/progress_dialog.h"
#include "platform/qt/message_box.h"
#include "platform/text.h"
#include "report/show_results.h"

#include <system_error>
#include <utility>

RunControl::RunControl(ShellState& shellState, IFileQuestions& fileQuestions, QWidget& window,
                       std::function<bool()> save)
    : state(shellState), questions(fileQuestions), mainWindow(window), saveSettings(std::move(save)) {}

bool RunControl::StartRun(ProgressDialog& dialog) {
    if (!run) return Begin(dialog);
    AskToStop(dialog);
    return true;
}

bool RunControl::Begin(ProgressDialog& dialog) {
    RunStart start = PrepareRun(state, questions);
    emit Changed();
    if (start.refusal)
        ShowMessage(&mainWindow, QMessageBox::Warning, start.refusal->title, start.refusal->text);
    if (!start.ready) return false;

    if (!saveSettings()) start.notes.push_back(L"The settings can't be saved.");
    try {
        run = std::make_unique<RunThread>(state.job, dialog, std::move(start.notes));
        run->Start();
    } catch (const std::system_error& error) {
        run.reset();
        state.phase = RunPhase::Editing;
        emit Changed();
        const BoxText text = UserError(L"The measurement could not be started: " + FromUtf8(error.what()) +
                                       L". Close other programs and try again.");
        ShowMessage(&mainWindow, QMessageBox::Warning, text.title, text.text);
        return false;
    }
    window = &dialog;
    return true;
}

void RunControl::AskToStop(ProgressDialog& dialog) {
    run->Pause();
    const BoxText question = StopQuestion();
    if (AskYesNo(&dialog, QMessageBox::Warning, question.title, question.text)) run->Stop();
    run->Resume();
}

void RunControl::RunEnded() {
    if (state.playWav && !isAbandoned) player.Play(state.wavPath);
}

void RunControl::FinishRun(std::unique_ptr<FinishRecord> record) {
    run.reset();
    window.clear();
    state.phase = RunPhase::Editing;
    if (record && !isAbandoned) {
        LeaveRun(state, *record->outcome);
        emit Changed();
        if (state.phase == RunPhase::Viewing) ShowResultsOf(*record);
        state.phase = RunPhase::Editing;
    }
    record.reset();
    emit Changed();
}

void RunControl::ShowResultsOf(const FinishRecord& record) {
    const ReportParameters parameters = {*record.results, record.badFrames.get(), ViewerFiles(state.job),
                                         record.yuvTable};
    ShowResults(&mainWindow, parameters);
}

void RunControl::Abandon() {
    isAbandoned = true;
    if (!run) return;
    run->Stop();
    run->Resume();
    if (window) window->LeaveSoon();
}
