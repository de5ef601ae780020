#pragma once

#include <span>

/// A choice in a file dialog's list of kinds.
struct FileFilter {
    const wchar_t* text;
    std::span<const wchar_t* const> patterns;
};

constexpr const wchar_t* kVideoPatterns[] = {
    L"*.avi", L"*.avs", L"*.bmp", L"*.yuv", L"*.y4m", L"*.rgb",  L"*.mpg",  L"*.mkv", L"*.mp4",
    L"*.flv", L"*.wmv", L"*.ogm", L"*.mov", L"*.vob", L"*.mpeg", L"*.m2ts", L"*.asf",
};
constexpr const wchar_t* kAnyPatterns[] = {L"*.*"};
constexpr const wchar_t* kWavPatterns[] = {L"*.WAV"};

constexpr FileFilter kVideoFilters[] = {
    {L"All supported files ()", kVideoPatterns},
    {L"All files (*.*)", kAnyPatterns},
};
constexpr FileFilter kWavFilters[] = {{L"WAV Files (*.WAV)", kWavPatterns}};
