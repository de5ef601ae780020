#pragma once

#include <QColor>
#include <QPalette>

enum class ColorScheme { Light, Dark };

/// What a message about the state of things means. Shown with an icon and words, never by its colour alone.
enum class Status { Neutral, Good, Warning, Error };

/// The palette of windows where the platform brings none. Quiet text has the role `PlaceholderText`.
QPalette SchemePalette(ColorScheme scheme);

/// The colours below have no role in a palette; they follow its lightness, so that they also fit a platform's
/// palette. They are asked for at each painting and kept nowhere, as a palette can change at any time.

/// Whether the windows of `palette` are darker than their text.
bool IsDark(const QPalette& palette);

/// The line around fields, lists, boxes and radio buttons: 3:1 against window and field, fainter for disabled
/// ones. The group is the palette's current one.
QColor OutlineColor(const QPalette& palette);

/// At least 4.5:1 against the window.
QColor StatusColor(Status status, const QPalette& palette);

/// The sign of a bad frame.
QColor BadFrameColor(const QPalette& palette);
