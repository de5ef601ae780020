#pragma once

#include <string>

#include "platform/settings_store.h"

/// What this installation can open through scripts. Found once, at start.
struct Capabilities {
    bool aviSynth = false;      ///< there is a script host
    bool avss = false;          ///< plug-in of DirectShowSource2
    bool ffmpegSource = false;  ///< plug-in of FFMpegSource
    bool qtSource = false;      ///< plug-in of QTSource
    bool rawSource = false;     ///< plug-in of RawSource
};

/// The script host is part of the program; a number "script_host" of 0 in the settings does without it. A
/// plug-in is there if its file in "avs_plugins" opens for reading. `programDirectory` ends in a separator.
Capabilities FindCapabilities(const ISettingsStore& settings, const std::wstring& programDirectory);
