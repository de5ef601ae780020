#pragma once

#include <cstddef>
#include <span>

/// An item of a list in which a user picks a number that settings store.
struct Choice {
    const wchar_t* text;
    int value;
};

/// The position of the item that is shown for `value`: its own, or the first for a number that isn't listed.
constexpr int ChoicePosition(std::span<const Choice> list, int value) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].value == value) return static_cast<int>(i);
    }
    return 0;
}

/// The number to store for the item at `position`, one of the list's.
constexpr int ChoiceValue(std::span<const Choice> list, int position) {
    return list[static_cast<std::size_t>(position)].value;
}
