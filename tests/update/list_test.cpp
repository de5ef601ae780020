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
    const std::string kNames[] = {
        "",
        "/etc/passwd",
        "\\windows\\a.dll",
        "//host/share",
        "\\\\host\\share",
        "..",
        "../a",
        "..\\a",
        "a/../../b",
        "a\\..\\..\\b",
        "a/..",
        "a\\/..\\b",
        ".",
        "./a",
        "a/./b",
        "a/.. /b",
        ".. /a",
        ".../a",
        "../",
        "a//b",
        "a/",
        "a\\",
        "a\\\\b",
        "C:a",
        "C:\\a",
        "c:/a",
        "a:stream",
        "a.dll.",
        "a.dll ",
        std::string("a\0b", 3),
        std::string("\0", 1),
        "a\nb",
        "a\tb",
        "\x1b[2J",
        "a\x7f",
        std::string(201, 'a'),
        "a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a",
        // the updater's own
        "LIST",
        "list",
        "LIST/a",
        ".COMPLETED",
        ".completed",
        ".COMPLETED\\a",
        ".TRIED",
        "update/a",
        "Update\\LIST",
        "update",
        "update.failed/a",
    };
    for (const std::string& name : kNames) {
        EXPECT_EQ(L"", LocalName(name)) << name;
        EXPECT_FALSE(ParseUpdateList("2\r\n" + Line(1, name) + Line(1, "good"))) << name;
    }
}

TEST(UpdateList, TakesNamesThatOnlyLookDangerous) {
    for (const std::string name :
         {"a..b", "..a", ".a", "a.b.c", "%2e%2e/a", "updates/a", "a/LIST", "a/update/b", "~", "$HOME", "a;b",
          "-rf", " a", "a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a"})
        EXPECT_EQ(std::wstring(name.begin(), name.end()), LocalName(name)) << name;
}

TEST(UpdateList, RefusesWhatCantBeTrue) {
    const std::string kMaximum = std::to_string(kMaxUpdateBytes);
    const std::string kBeyond = std::to_string(kMaxUpdateBytes + 1);
    const struct {
        const char* what;
        std::string text;
        bool isList;
    } cases[] = {
        {"one file", "5\r\n5 a", true},
        {"separators",
         "3\r\n1\ta\r\n1:b\r\n1\xA0"
         "c",
         true},
        {"the largest", kMaximum + "\r\n" + kMaximum + " a", true},
        {"nothing", "", false},
        {"white space", " \r\n", false},
        {"no file", "0\r\n", false},
        {"no total", "a\r\n", false},
        {"total above the sum", "6\r\n5 a", false},
        {"total below the sum", "9\r\n5 a\r\n5 b", false},
        {"beyond any update", kBeyond + "\r\n" + kBeyond + " a", false},
        {"sizes that overflow to the total", "0\r\n9223372036854775808 a\r\n9223372036854775808 b", false},
        {"beyond 64 bits", "5\r\n18446744073709551621 a", false},
        {"negative", "-5\r\n-5 a", false},
        {"negative beside positive", "5\r\n10 a\r\n-5 b", false},
        {"hexadecimal", "0x5\r\n0x5 a", false},
        {"a size without a name", "5\r\n5", false},
        {"a size without a name, then a file", "5\r\n5\r\n0 a", false},
        {"no separator", "5\r\n5a", false},
        {"no separator before a longer name", "5\r\n5ab", false},
        {"a name without a size", "5\r\na\r\n5 b", false},
        {"line feeds alone", "6\n5 a\n1 b", false},
        {"a web page", "<html><body>Log in, please</body></html>", false},
        {"twice the same", "2\r\n1 a\r\n1 a", false},
        {"twice the same for some file systems", "2\r\n1 a\r\n1 A", false},
        {"twice the same, spelled differently", "2\r\n1 a\\b\r\n1 a/b", false},
        {"a file as directory", "2\r\n1 a\r\n1 a/b", false},
        {"a file as directory, the other way round", "2\r\n1 a/b/c\r\n1 A/b", false},
        {"the place of a previous version", "2\r\n1 a.dll\r\n1 a.dll.bak", false},
        {"the place of an arriving file", "2\r\n1 a.dll.arriving\r\n1 a.dll", false},
    };
    for (const auto& c : cases) EXPECT_EQ(c.isList, ParseUpdateList(c.text).has_value()) << c.what;
}

TEST(UpdateList, HasAtMost16384Bytes) {
    std::string text = "0\r\n";
    for (int i = 0; text.size() < kMaxListBytes - 100; ++i) text += Line(0, "file" + std::to_string(i));
    text += "0 " + std::string(kMaxListBytes - text.size() - 2, 'a');
    ASSERT_EQ(16384u, text.size());
    EXPECT_TRUE(ParseUpdateList(text));
    EXPECT_FALSE(ParseUpdateList(text + "\r"));
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
    constexpr struct {
        const wchar_t* name;
        bool isProgram;
    } kCases[] = {
        {L"tolvane", true},       {L"tolvane-measure", true},   {L"sub/started", true},
        {L"a.EXE", true},         {L"avs_plugins/a.dll", true}, {L"plugins/a.tlp", true},
        {L"liba.so", true},       {L"liba.so.1", true},         {L"liba.so.1.2.3", true},
        {L"liba.so.conf", false}, {L"liba.so.", false},         {L"exe", false},
        {L"a.exe.txt", false},    {L"tolvane.html", false},     {L"tolvane/readme", false},
        {L"a.dll/readme", false},
    };
    for (const auto& c : kCases) EXPECT_EQ(c.isProgram, IsProgramFile(c.name, L"started")) << c.name;
}

}  // namespace
