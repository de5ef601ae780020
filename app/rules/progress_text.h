#pragma once

#include <string>

/// The three texts under the progress bar after `done` of `length` frames in `seconds`: "Frame 188 of 300",
/// "412 frames/s", "less than a second left". Rate and time left are empty while nothing is known of them.
struct ProgressTexts {
    std::wstring frame;
    std::wstring rate;
    std::wstring left;
};

ProgressTexts ProgressTextsOf(int done, int length, double seconds);
