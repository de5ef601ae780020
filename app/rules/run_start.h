#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/rules/box_text.h"
#include "app/rules/browse.h"
#include "app/rules/shell_state.h"

/// What became of the wish to measure. Not ready and no message: the user cancelled a question.
struct RunStart {
    bool ready = false;
    std::optional<BoxText> refusal = {};
    std::vector<std::wstring> notes = {};  ///< lines for the head of the run's log
};

/// Checks what the main dialog holds and fills `job.run` for a run: input files, mask, and a new interruption
/// token. Raw files without settings are asked for. Ready: the phase is `Measuring` and the worker is to be
/// started; otherwise the job of a run is as before.
RunStart PrepareRun(ShellState& state, IFileQuestions& questions,
                    const Metric::CMetricList& metrics = Metric::GetMetricList());

/// Asks for the settings of a raw file that lacks them; false if the user cancelled that.
bool SettleRawFile(FileRecord& slot, IFileQuestions& questions);

/// Asked while the run is paused, with the icon for warnings, "Yes" and "No". "Yes" stops the run.
BoxText StopQuestion();

/// A copy of the slot for opening it: a file that isn't raw by its name has no raw size, though the slot may
/// still hold that of a file before. Runs and the preview open this.
FileRecord ToOpen(FileRecord slot);

/// Why the preview doesn't open: shown with the icon for errors and "OK".
BoxText PreviewFailure(const FileRecord& slot, const Capabilities& capabilities);
