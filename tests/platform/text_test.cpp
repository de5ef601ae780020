#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/ansi_text.h"

TEST(Text, Utf8) {
    const std::tuple<const char*, std::string, std::wstring> kCases[] = {
        {"two, three and four bytes", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8E\xA5", L"a\u00E4\u20AC\U0001F3A5"},
        {"last code point", "\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
        {"Latin-1 byte", "caf\xE9.avi", std::wstring(L"caf") + wchar_t(0xDCE9) + L".avi"},
        {"cut sequence", "\xE2\x82", {wchar_t(0xDCE2), wchar_t(0xDC82)}},
        {"overlong slash", "\xC0\xAF", {wchar_t(0xDCC0), wchar_t(0xDCAF)}},
        {"surrogate", "\xED\xA0\x80", {wchar_t(0xDCED), wchar_t(0xDCA0), wchar_t(0xDC80)}},
        {"too high",
         "\xF4\x90\x80\x80",
         {wchar_t(0xDCF4), wchar_t(0xDC90), wchar_t(0xDC80), wchar_t(0xDC80)}},
    };
    for (const auto& [what, bytes, text] : kCases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(text, FromUtf8(bytes));
        EXPECT_EQ(bytes, ToUtf8(text)) << "every name must come back as it was";
    }
    EXPECT_EQ("\xEF\xBF\xBD", ToUtf8(std::wstring(1, wchar_t(0xD800)))) << "a lone surrogate is no character";
}

TEST(Text, Utf16LeAndAnsi) {
    const std::wstring noCharacter(1, wchar_t(0xDC80));
    const std::string expected("a\0\xAC\x20\x3C\xD8\xA5\xDF\xFD\xFF", 10);  // U+1F3A5 is D83C DFA5
    EXPECT_EQ(expected, ToUtf16Le(L"a\u20AC\U0001F3A5" + noCharacter));
    // Expected bytes: the table of code page 1252.
    EXPECT_EQ("a.avi\r\n\xE4\x80\xFC", ToAnsi(L"a.avi\r\n\u00E4\u20AC\u00FC"));
    EXPECT_EQ("___", ToAnsi(L"\u0416\U0001F3A5" + noCharacter)) << "not in the page";
}

TEST(Text, PartsOfNames) {
    for (const wchar_t* path : {L"/clips/a.avi", L"C:\\clips/x\\a.avi", L"a.avi"})
        EXPECT_EQ(L"a.avi", FileNamePart(path));
    EXPECT_EQ(L"", FileNamePart(L"/clips/"));
    EXPECT_TRUE(EndsWithNoCase(L"A.Y4M", L"y4m"));
    EXPECT_FALSE(EndsWithNoCase(L"4m", L"y4m") || EndsWithNoCase(L"a.y4", L"y4m"));
}

TEST(Text, CopyTextStaysInsideItsBuffer) {
    wchar_t buffer[] = L"######";
    CopyText(L"abcdef", buffer, 4);
    EXPECT_STREQ(L"abc", buffer);
    EXPECT_EQ(L'#', buffer[4]);
    CopyText(L"xyz", buffer, 0);
    CopyText(L"xyz", nullptr, 4);
    EXPECT_STREQ(L"abc", buffer);
}
