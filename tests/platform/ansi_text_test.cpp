#include "platform/ansi_text.h"

#include <gtest/gtest.h>

// Expected bytes: the table of code page 1252.
TEST(AnsiText, OneByteACharacter) {
    EXPECT_EQ("PSNR_YYUV;a.avi\r\n", ToAnsi(L"PSNR_YYUV;a.avi\r\n"));
    EXPECT_EQ("\xE4\x80\xFC", ToAnsi(L"\u00E4\u20AC\u00FC"));
    EXPECT_EQ("___", ToAnsi(L"\u0416\U0001F3A5" + std::wstring(1, wchar_t(0xDC80)))) << "not in the page";
}
