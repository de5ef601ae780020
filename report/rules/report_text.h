#pragma once

#include <array>
#include <map>
#include <string>

#include "report/rules/report_series.h"

namespace Report {

/// The files of a comparison, by their index.
constexpr int kFileCount = 3;
inline constexpr std::array<const wchar_t*, kFileCount> kFileNames = {L"Original", L"First processed",
                                                                      L"Second processed"};

/// As the "Values" group shows it: "33.6166".
std::wstring ValueText(float value);

/// A line for the frame, and one for each curve that has a value there.
std::wstring PointText(const std::map<int, Series>& series, int frame);

/// What a screen reader says of a plot: "Frame 212 of 0 to 299. First processed 33.6166."
std::wstring PlotDescription(const std::map<int, Series>& series, int firstFrame, int lastFrame, int current);

/// "Tolvane - First processed, frame 212". It is also what a screen reader says of the picture, without the
/// program.
std::wstring FrameTitle(int file, int frame);
std::wstring FrameDescription(int file, int frame);

/// Why a control is disabled.
inline constexpr const wchar_t* kNeedsBadFrames = L"Needs a run with \"Save \"bad frames\"\"";
std::wstring NeedsFileText(int file);
std::wstring NeedsResultsText(int file);

/// "150 frames".
std::wstring FrameCountText(int count);

}  // namespace Report
