#include "video/error_text.h"

#include <cstddef>

std::wstring rkErrorText(const wchar_t* doing, const std::wstring& fileName,
                         std::span<const wchar_t* const> texts, int code) {
    const std::wstring file =
        fileName.empty() ? L"" : std::wstring(L"Error when ") + doing + L" file \"" + fileName + L"\": ";
    const auto index = static_cast<std::size_t>(code);
    const bool known = code >= 0 && index < texts.size();
    return file + (known ? texts[index] : L"Unrecognized error!");
}
