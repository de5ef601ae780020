#pragma once

#include <string>
#include <string_view>

/// Standard error as log lines and the progress bar share it: the bar is the last line, and lines appear
/// above it. One thread at a time.
class Terminal {
public:
    /// Writes a line of its own.
    void Line(std::string_view text);
    /// Shows `text` as the bar in place of the last one.
    void ShowBar(const std::string& text);
    void HideBar();

private:
    std::string bar;  // as it stands on the screen; empty: none
};
