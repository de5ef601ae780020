#pragma once

#include <string>

#include "app/rules/shell_state.h"
#include "platform/settings_store.h"

/// The user's choices from one start of the program to the next, by the names under which they are stored.
/// Numbers outside the range of what they choose are taken and given back as they are.

/// Takes what the store has and defaults for the rest. `state` comes from `NewShellState`;
/// `programDirectory`, where the program writes, ends in a separator and is the default of all output
/// directories. Counts this start in `runNumber`.
void LoadSettings(const ISettingsStore& store, const std::wstring& programDirectory,
                  const Metric::CMetricList& metrics, ShellState& state);

/// A value that gets lost doesn't keep the others from being stored. False if there was one.
bool SaveSettings(ISettingsStore& store, const Metric::CMetricList& metrics, const ShellState& state);
