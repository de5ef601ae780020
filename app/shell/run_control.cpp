#include "app/shell/run_control.h"

#include "app/rules/run_end.h"
#include "app/rules/run_start.h"
#include "platform/qt/message_box.h"
#include "platform/text.h"
#include "report/show_results.h"

#include <system_error>
#include <utility>

RunControl::RunControl(ShellState& shellState, IFileQuestions& fileQuestions, QWidget& shellWindow,
                       std::function<bool()> save)
    : state(shellState), questions(fileQuestions), mainWindow(shellWindow), saveSettings(std::move(save)) {}

bool RunControl::StartRun(IRunWindow& runWindow) {
    if (!run) return Begin(runWindow);
    AskToStop(runWindow);
    return true;
}

bool RunControl::Begin(IRunWindow& runWindow) {
    RunStart start = PrepareRun(state, questions);
    emit Changed();
    if (start.refusal)
        ShowMessage(&mainWindow, QMessageBox::Warning, start.refusal->title, start.refusal->text);
    if (!start.ready) return false;

    if (!saveSettings()) start.notes.push_back(L"The settings can't be saved.");
    try {
        run = std::make_unique<RunThread>(state.job, runWindow, std::move(start.notes));
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
    window = &runWindow;
    return true;
}

void RunControl::AskToStop(IRunWindow& runWindow) {
    run->Pause();
    const BoxText question = StopQuestion();
    if (AskYesNo(runWindow.Widget(), QMessageBox::Warning, question.title, question.text)) run->Stop();
    run->Resume();
}

void RunControl::RunEnded() {
    if (state.playWav && !isAbandoned) player.Play(state.wavPath);
}

void RunControl::FinishRun(std::unique_ptr<FinishRecord> record) {
    run.reset();
    window = nullptr;
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
