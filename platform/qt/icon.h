#pragma once

#include "platform/qt/palette.h"

#include <QIcon>

/// The pictures of buttons and the status line, drawn on a grid of 16.
enum class IconName {
    Folder,
    Eye,
    Sliders,
    Globe,
    Mail,
    Help,
    Play,
    Stop,
    Ok,
    Info,
    Warning,
    Previous,
    Next,
    PreviousBad,
    NextBad,
    Plus,
    Minus,
    Copy,
    Frame
};
constexpr int kIconCount = 19;

/// The icon in the colour of button text, as the application's palette has it at each painting; sharp at any
/// size and device ratio. The triangle of `PreviousBad` and `NextBad` keeps the colour of bad frames.
QIcon TintedIcon(IconName name);

/// The icon of a status, in its colour.
QIcon StatusIcon(Status status);

/// The program's own icon, in its own colours.
QIcon ProgramIcon();
