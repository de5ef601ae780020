#pragma once

#include <array>
#include <string>

#include "engine/model/output_settings.h"

constexpr int kBadFramesTypes = 4;
constexpr std::array<const wchar_t*, kBadFramesTypes> kBadFramesTypeTexts = {
    L"With maximum difference between original and processed",
    L"With maximum difference between first processed and second processed",
    L"With maximum difference, where metric for first is better than for second",
    L"With maximum difference, where metric for second is better than for first",
};

constexpr int kDefaultBadFrames = 10;
constexpr int kMaxBadFrames = 50;
constexpr int kMaxRadiusSteps = 100;
constexpr int kRadiusStep = 10;  ///< frames

/// What the bad-frames dialog shows.
struct BadFramesForm {
    std::array<std::wstring, kBadFramesTypes> whyTypeDisabled;  ///< for tooltips; empty: it can be chosen
    int type = 0;                                               ///< the checked radio button
    int number = kDefaultBadFrames;                             ///< slider, 1 to `kMaxBadFrames`
    int radiusSteps = 0;                                        ///< slider, 0 to `kMaxRadiusSteps`
    int radiusShown = 0;  ///< the value beside it: frames as stored, from its first movement on `RadiusOf`
    std::wstring outputDir;
    std::wstring whyDisabled;  ///< of everything else
};

/// The radius in frames of a slider position.
constexpr int RadiusOf(int radiusSteps) {
    return radiusSteps * kRadiusStep;
}

BadFramesForm BadFramesFormFrom(const BadFramesSettings& settings, bool comparing);

/// The radius slider moved.
void MoveRadius(BadFramesForm& form, int radiusSteps);

/// "OK". What can't be used isn't stored.
void StoreForm(const BadFramesForm& form, BadFramesSettings& settings);
