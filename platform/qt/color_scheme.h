#pragma once

#include "platform/qt/palette.h"

/// What the desktop prefers, by the settings portal on the session bus. Light when there is no bus or no
/// portal, it states no preference, or it hasn't answered after 100 ms. Each call asks anew. A bus that
/// itself hangs holds up the platform part of Qt as well; that has no limit here.
ColorScheme DesktopColorScheme();
