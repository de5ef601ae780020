#pragma once

#include <string>

#include "app/rules/shell_state.h"
#include "platform/settings_store.h"

/// The state that the main dialog starts with: what is installed, what the user chose before, and what goes
/// together. `programDirectory` is the program's own, `writableDirectory` where it writes; both end in a
/// separator.
ShellState StartShell(const ISettingsStore& store, const std::wstring& programDirectory,
                      const std::wstring& writableDirectory,
                      const Metric::CMetricList& metrics = Metric::GetMetricList());

/// Whether this start, and no other, asks `kFeedbackQuestion`.
bool IsFeedbackDue(const ShellState& state);

/// Answered by "Send feedback" or "Cancel".
constexpr const wchar_t* kFeedbackQuestion =
    L"You are running this program for 30 times. Would you like to send a feedback or some suggestions to "
    L"developers?";
