#pragma once

#include <span>

/// An entry of the list in which a user picks the layout of a raw file.
struct rkLayoutItem {
    const wchar_t* text;
    int colorSpace;
};

/// The layouts that the internal reader of raw files takes, in the order of the list. Static storage.
std::span<const rkLayoutItem> rkInternalReaderLayouts();

/// The same for raw files read through a script.
std::span<const rkLayoutItem> rkScriptReaderLayouts();

/// The position of the item that is selected while `colorSpace` is the current layout: its own, or 0 if it
/// isn't listed.
int rkLayoutPosition(std::span<const rkLayoutItem> list, int colorSpace);
