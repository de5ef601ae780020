#pragma once

#include <string>
#include <vector>

class QWidget;

/// The help: pages of HTML in the directory "help" beside the program, or where packages put them.
constexpr const wchar_t* kHelpStart = L"index.html";
constexpr const wchar_t* kHelpYuvFile = L"yuv_file.html";
constexpr const wchar_t* kHelpPreview = L"preview.html";
constexpr const wchar_t* kHelpMetrics = L"metrics.html";
constexpr const wchar_t* kHelpOutput = L"output.html";
constexpr const wchar_t* kHelpBadFrames = L"bad_frames.html";
constexpr const wchar_t* kHelpCompression = L"compression.html";
constexpr const wchar_t* kHelpMoreOptions = L"more_options.html";
constexpr const wchar_t* kHelpScripts = L"AviSynth_filters.html";
constexpr const wchar_t* kHelpRun = L"run.html";
constexpr const wchar_t* kHelpMatrix = L"YUV_RGB.html";
constexpr const wchar_t* kHelpViewer = L"viewer.html";
constexpr const wchar_t* kHelpFrames = L"frames.html";

/// Opens a page with the user's program for HTML, or tells in a message which file couldn't be opened. GUI
/// thread only.
void ShowHelp(const std::wstring& page);

/// F1 shows the page while `window` or what is in it has the focus.
void AddHelpKey(QWidget& window, const std::wstring& page);

/// The file of a page: in the first of `directories` that has it, otherwise in the first. Each ends in a
/// separator.
std::wstring HelpFile(const std::wstring& page, const std::vector<std::wstring>& directories);
