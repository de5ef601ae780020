#pragma once

#include <string>

#include "app/rules/choice_list.h"

/// The RGB/YUV matrices, by the number of `yuvTable`: the radio buttons of their dialog.
constexpr Choice kMatrixChoices[] = {{L"REC.601", 0}, {L"PC.601", 1}};

/// What the main dialog says of the present matrix.
inline std::wstring MatrixText(int yuvTable) {
    const auto position = static_cast<std::size_t>(ChoicePosition(kMatrixChoices, yuvTable));
    return std::wstring(L"RGB <-> YUV Matrix: ") + kMatrixChoices[position].text;
}
