#pragma once

#include <string>
#include <utility>

/// Title and text of a message box. Its icon and buttons stand where the text comes from.
struct BoxText {
    std::wstring title;
    std::wstring text;
    std::wstring advice = {};  ///< a text of its own below: what the user can do
};

/// What the user did wrong: shown with the icon for warnings and "OK".
inline BoxText UserError(std::wstring text) {
    return {L"Tolvane: Error", std::move(text)};
}
