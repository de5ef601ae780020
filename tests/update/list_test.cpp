#include "update/program_file.h"
#include "update/staging_format.h"
#include "update/update_list.h"
#include "update/update_name.h"
#include "update/version.h"

#include <gtest/gtest.h>

namespace {

std::string Line(int size, const std::string& name) {
    return std::to_string(size) + " " + name + "\r\n";
}

TEST(UpdateList, ReadsSizesAndNames) {
    const auto list = ParseUpdateList("30\r\n10 tolvane\r\n20\tplugins\\a b.tlp\r\n\r\n0 doc/\xE9.html");
    ASSERT_TRUE(list);
    EXPECT_EQ(30u, list->totalSize);
    ASSERT_EQ(3u, list->entries.size());
    EXPECT_EQ(10u, list->entries[0].size);
    EXPECT_EQ(L"tolvane", list->entries[0].name);
    EXPECT_EQ(L"plugins/a b.tlp", list->entries[1].name);
    EXPECT_EQ("plugins/a b.tlp", list->entries[1].serverName);
    EXPECT_EQ("doc/\xE9.html", list->entries[2].serverName);
    EXPECT_EQ(L"doc/\u00E9.html", list->entries[2].name) << "each byte is a character";
}

TEST(UpdateList, RefusesNamesThatLeaveTheDirectory) {
    const auto expectRefused = [](const std::string& name) {
        EXPECT_EQ(L"", LocalName(name)) << name;
        EXPECT_FALSE(ParseUpdateList("2\r\n" + Line(1, name) + Line(1, "good"))) << name;
    };
    for (const char* name :  // from the root
         {"", "/etc/passwd", "\\windows\\a.dll", "//host/share", "\\\\host\\share"})
        expectRefused(name);
    for (const char* name :  // upward
         {"..", "../a", "..\\a", "a/../../b", "a\\..\\..\\b", "a/..", "a\\/..\\b", ".", "./a", "a/./b",
          "a/.. /b", ".. /a", ".../a", "../"})
        expectRefused(name);
    for (const char* name :  // other places and names
         {"a//b", "a/", "a\\", "a\\\\b", "C:a", "C:\\a", "c:/a", "a:stream", "a.dll.", "a.dll ", "a\nb",
          "a\tb", "\x1b[2J", "a\x7f"})
        expectRefused(name);
    for (const std::string& name : {std::string("a\0b", 3), std::string("\0", 1), std::string(201, 'a'),
                                    std::string("a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a")})
        expectRefused(name);
    for (const char* name :  // the updater's own
         {"LIST", "list", "LIST/a", ".COMPLETED", ".completed", ".COMPLETED\\a", ".TRIED", "update/a",
          "Update\\LIST", "update", "update.failed/a"})
        expectRefused(name);
    for (const std::string name :  // that only look dangerous
         {"a..b", "..a", ".a", "a.b.c", "%2e%2e/a", "updates/a", "a/LIST", "a/update/b", "~", "$HOME", "a;b",
          "-rf", " a", "a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a"})
        EXPECT_EQ(std::wstring(name.begin(), name.end()), LocalName(name)) << name;
}

TEST(UpdateList, RefusesWhatCantBeTrue) {
    const std::string kMaximum = std::to_string(kMaxUpdateBytes);
    const std::string kBeyond = std::to_string(kMaxUpdateBytes + 1);
    const std::string separators = "3\r\n1\ta\r\n1:b\r\n1\xA0" + std::string("c");
    for (const std::string& text : {separators, kMaximum + "\r\n" + kMaximum + " a"})
        EXPECT_TRUE(ParseUpdateList(text)) << text;
    const std::pair<const char*, std::string> cases[] = {
        {"nothing", ""},
        {"no file", "0\r\n"},
        {"no total", "a\r\n"},
        {"total above the sum", "6\r\n5 a"},
        {"total below the sum", "9\r\n5 a\r\n5 b"},
        {"beyond any update", kBeyond + "\r\n" + kBeyond + " a"},
        {"sizes that overflow to the total", "0\r\n9223372036854775808 a\r\n9223372036854775808 b"},
        {"beyond 64 bits", "5\r\n18446744073709551621 a"},
        {"negative", "-5\r\n-5 a"},
        {"hexadecimal", "0x5\r\n0x5 a"},
        {"a size without a name", "5\r\n5"},
        {"a size without a name, then a file", "5\r\n5\r\n0 a"},
        {"no separator", "5\r\n5a"},
        {"a name without a size", "5\r\na\r\n5 b"},
        {"line feeds alone", "6\n5 a\n1 b"},
        {"a web page", "<html><body>Log in, please</body></html>"},
        {"twice the same", "2\r\n1 a\\b\r\n1 a/b"},
        {"twice the same for some file systems", "2\r\n1 a\r\n1 A"},
        {"a file as directory", "2\r\n1 a\r\n1 a/b"},
        {"a file as directory, the other way round", "2\r\n1 a/b/c\r\n1 A/b"},
        {"the place of a previous version", "2\r\n1 a.dll\r\n1 a.dll.bak"},
        {"the place of an arriving file", "2\r\n1 a.dll.arriving\r\n1 a.dll"}};
    for (const auto& [what, text] : cases) EXPECT_FALSE(ParseUpdateList(text)) << what;
}

TEST(UpdateVersion, ReadsFourNumbers) {
    EXPECT_EQ((Version{3, 0, 0, 1}), ParseVersion("3.0.0.1"));
    EXPECT_EQ((Version{10, 20, 30, 40}), ParseVersion(" 10. 20.30.\n40\r\n<!-- -->"));
    EXPECT_EQ((Version{-1, 0, 0, 0}), ParseVersion("-1.0.0.0"));
    for (const char* text :
         {"", "3", "3.0.0", "3.0.0.", "3,0,0,1", "v3.0.0.1", "3.0.0.99999999999", "3 .0.0.1"})
        EXPECT_FALSE(ParseVersion(text)) << text;
}

TEST(ProgramFile, IsToldByItsName) {
    for (const wchar_t* name :
         {L"tolvane", L"tolvane-measure", L"sub/started", L"a.EXE", L"avs_plugins/a.dll", L"plugins/a.tlp",
          L"liba.so", L"liba.so.1", L"liba.so.1.2.3"})
        EXPECT_TRUE(IsProgramFile(name, L"started")) << name;
    for (const wchar_t* name : {L"liba.so.conf", L"liba.so.", L"exe", L"a.exe.txt", L"tolvane.html",
                                L"tolvane/readme", L"a.dll/readme"})
        EXPECT_FALSE(IsProgramFile(name, L"started")) << name;
}

}  // namespace
