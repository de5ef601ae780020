#pragma once

#include <string>
#include <string_view>

/// All text of the system is `std::wstring`, one code point a character. Bytes from outside (file names,
/// arguments) that aren't UTF-8 become U+DC80 to U+DCFF, one a byte, and turn back into the same bytes, so
/// every name survives.

std::wstring FromUtf8(std::string_view bytes);

/// The inverse of `FromUtf8`. A character that is no code point becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// UTF-16 as little-endian bytes, surrogate pairs included, without a byte order mark.
std::string ToUtf16Le(std::wstring_view text);

/// Lower case of A to Z, every other character unchanged, whatever the locale.
wchar_t AsciiLower(wchar_t c);

/// Whether `text` ends with `ending`, the letters A to Z in any case.
bool EndsWithNoCase(std::wstring_view text, std::wstring_view ending);

/// What stands behind the last directory separator, `/` or `\`; the whole text if there is none.
std::wstring_view FileNamePart(std::wstring_view path);

/// Copies `text` into a buffer of `size` characters, cut so that the closing 0 fits. Does nothing for a null
/// buffer or a size below 1.
void CopyText(std::wstring_view text, wchar_t* buffer, int size);
