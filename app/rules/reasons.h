#pragma once

#include <string>

/// Tooltips of controls that are off: what turns them on.

/// `Needs "Comparative analysis"`, with the label of the box that is to be on.
inline std::wstring Needs(const std::wstring& label) {
    return L"Needs \"" + label + L"\"";
}

constexpr const wchar_t* kNeedsAviSynth = L"Needs AviSynth";
