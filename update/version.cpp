#include "update/version.h"

#include "update/update_name.h"

#include <charconv>

std::optional<Version> ParseVersion(std::string_view text) {
    Version version{};
    for (std::size_t i = 0; i < version.size(); ++i) {
        if (i > 0) {
            if (!text.starts_with('.')) return {};
            text.remove_prefix(1);
        }
        text = SkipWhiteSpace(text);
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), version[i]);
        if (error != std::errc()) return {};
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return version;
}
