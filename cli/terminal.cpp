#include "cli/terminal.h"

#include <cstdio>

void Terminal::Line(std::string_view text) {
    const std::string shown = bar;
    HideBar();
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    if (!shown.empty()) ShowBar(shown);
}

void Terminal::ShowBar(const std::string& text) {
    // Blanks cover what a longer bar left.
    const std::size_t blanks = bar.size() > text.size() ? bar.size() - text.size() : 0;
    std::fprintf(stderr, "\r%s%*s", text.c_str(), static_cast<int>(blanks), "");
    std::fflush(stderr);
    bar = text;
}

void Terminal::HideBar() {
    if (bar.empty()) return;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(bar.size()), "");
    std::fflush(stderr);
    bar.clear();
}
