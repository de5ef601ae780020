#pragma once

#include <optional>
#include <span>
#include <string>

#include "app/rules/box_text.h"
#include "app/rules/capabilities.h"
#include "engine/model/file_record.h"
#include "video/layout_list.h"

/// What the dialog of raw file settings shows. Plain values: tests read it without a window.
struct YuvForm {
    std::wstring fileName;  ///< without directory
    int width = 0;          ///< 0 or more
    int height = 0;
    bool useScript = false;  ///< the radio button of the script parser is checked, else the internal one
    std::wstring whyScriptDisabled;         ///< for the tooltip of that radio button; empty: it can be used
    std::span<const rkLayoutItem> layouts;  ///< of the parser
    int layout = 0;                         ///< selected position
};

YuvForm YuvFormFrom(const FileRecord& record, const Capabilities& capabilities);

/// A parser's radio button was clicked: its layouts come, the selected one stays if it is among them.
void ChooseParser(YuvForm& form, bool useScript);

/// "OK". Stores size and layout, and unless a side is 0 the parser as well. Then the dialog ends; otherwise
/// the message is shown and it stays.
std::optional<BoxText> StoreForm(const YuvForm& form, FileRecord& record);

/// Whether a run can read the file as raw video without asking: it has a size, and a layout that its parser
/// offers.
bool HasRawSettings(const FileRecord& record);
