#pragma once

#include <span>
#include <string>

/// What a reader or writer says of its error `code`: "Error when reading file \"a.avi\": ", with `doing` for
/// "reading" and only if a name is known, then the code's text. A code beyond `texts` is "Unrecognized
/// error!".
std::wstring rkErrorText(const wchar_t* doing, const std::wstring& fileName,
                         std::span<const wchar_t* const> texts, int code);
