#pragma once

#include <algorithm>

#include "app/rules/preview_layout.h"

/// The size that a window opens with: the one that it would like, as far as the screen has room for that, but
/// never less than it needs.
constexpr PixelSize OpeningSize(PixelSize wanted, PixelSize least, PixelSize room) {
    return {std::max(std::min(wanted.width, room.width), least.width),
            std::max(std::min(wanted.height, room.height), least.height)};
}
