#pragma once

#include <string>

/// The local time of day as `HH:MM:SS`, hours on a 24-hour clock, or with `twelveHours` on a 12-hour clock
/// (01 to 12).
std::wstring TimeOfDay(bool twelveHours = false);
