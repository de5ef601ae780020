#include "platform/ansi_text.h"

#include <iconv.h>

#include <memory>
#include <type_traits>

namespace {

constexpr char kReplacement = '_';

struct CloseConverter {
    void operator()(iconv_t converter) const { iconv_close(converter); }
};

/// Null where the system lacks the code page.
std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseConverter> OpenConverter() {
    const iconv_t converter = iconv_open("CP1252", "WCHAR_T");
    return std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseConverter>(
        converter == reinterpret_cast<iconv_t>(-1) ? nullptr : converter);
}

/// One character, or the replacement if the page lacks it.
char Convert(iconv_t converter, wchar_t character) {
    char byte = kReplacement;
    auto* in = reinterpret_cast<char*>(&character);
    char* out = &byte;
    std::size_t inLeft = sizeof character;
    std::size_t outLeft = 1;
    const bool done = iconv(converter, &in, &inLeft, &out, &outLeft) == 0;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    return done ? byte : kReplacement;
}

}  // namespace

std::string ToAnsi(std::wstring_view text) {
    const auto converter = OpenConverter();
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        const bool ascii = c >= 0 && c < 0x80;
        bytes += ascii ? static_cast<char>(c) : converter ? Convert(converter.get(), c) : kReplacement;
    }
    return bytes;
}
