#pragma once

#include <optional>
#include <string>

#include "app/rules/browse.h"
#include "app/rules/metric_choice.h"
#include "app/rules/shell_state.h"

/// A user with prepared answers, who notes what is asked.
struct Answers : IFileQuestions {
    std::optional<std::wstring> file;
    bool acceptRaw = true;
    bool openWithAviSynth = false;
    std::string asked;
    FileRecord shownRaw;  ///< as the raw settings found it

    std::optional<std::wstring> ChooseFile(const std::wstring&) override {
        asked += "file ";
        return file;
    }
    bool EditYuvSettings(FileRecord& record) override {
        asked += "raw ";
        shownRaw = record;
        if (acceptRaw && record.height <= 0) record.width = record.height = 16;
        return acceptRaw;
    }
    bool AskOpenWithAviSynth() override {
        asked += "script ";
        return openWithAviSynth;
    }
};

constexpr Capabilities kEverything = {true, true, true, true, true};

/// A fresh state with paths in its slots; "" leaves one empty.
inline ShellState StateWith(const wchar_t* original = L"", const wchar_t* processed = L"",
                            const wchar_t* second = L"", const wchar_t* mask = L"") {
    ShellState state = NewShellState(kEverything);
    const wchar_t* paths[] = {original, processed, second, mask};
    for (const FileRow row : kFileRows) SetPath(SlotOf(state.job, row), paths[row]);
    return state;
}

/// Selects a metric of the program by its id.
inline void ChooseById(ShellState& state, const wchar_t* id) {
    int index = -1;
    Metric::GetMetricList().FindById(id, index);
    ChooseMetric(state.job, index, Metric::GetMetricList());
}
