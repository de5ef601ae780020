#pragma once

class QApplication;

/// Gives the program its look, before the first window: where the platform brings a style or a palette of its
/// own that stays, otherwise Fusion with better contrast in the light or the dark palette, as the desktop
/// prefers. Sets the icon of the program's windows.
void InstallTheme(QApplication& application);
