#pragma once

#include <string>

#include "app/rules/reasons.h"
#include "app/rules/shell_state.h"

/// What the dialog of more options shows.
struct MoreOptionsForm {
    bool playWav = false;
    std::wstring wavPath;
    /// Of the path and its "Browse"; empty: they can be used.
    std::wstring WhyPathDisabled() const { return playWav ? L"" : Needs(L"Play WAV file, when finished"); }
};

inline MoreOptionsForm MoreOptionsFormFrom(const ShellState& state) {
    return {state.playWav, state.wavPath};
}

inline void StoreForm(const MoreOptionsForm& form, ShellState& state) {
    state.playWav = form.playWav;
    state.wavPath = form.wavPath;
}
