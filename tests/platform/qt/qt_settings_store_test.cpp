#include "platform/qt/qt_settings_store.h"

#include <gtest/gtest.h>
#include <QFile>

#include <climits>
#include <filesystem>
#include <fstream>

namespace {

QtSettingsStore Open(const char* organisation = "Lumetry") {
    return QtSettingsStore(QString::fromLatin1(organisation), QStringLiteral("TLV"));
}

// The file lies below the test program's own XDG_CONFIG_HOME.
struct SettingsStore : testing::Test {
    void SetUp() override { QFile::remove(store.FilePath()); }

    void WriteFile(const std::string& text) const { std::ofstream(store.FilePath().toStdString()) << text; }

    const std::filesystem::path home = qgetenv("XDG_CONFIG_HOME").toStdString();
    QtSettingsStore store = Open();
};

TEST_F(SettingsStore, TextsKeepEveryCharacter) {
    for (const std::wstring& text :
         {std::wstring(), std::wstring(L" blanks at the ends "),
          std::wstring(L"/a,b;c=d/\"quoted\"/'x'/back\\slash\\x41\\"),
          std::wstring(L"@Variant(1) @@ %41 100% [section] #;"),
          std::wstring(L"line\nline\r\n\ttab \u0001\u001f end"), std::wstring(L"zero\0within", 11),
          std::wstring(L"\u00e9\u0416\u20ac\u4e2d \U0001F600 \u200f\ufffd"),
          std::wstring(L"not UTF-8: \xdc80\xdcff.yuv"), std::wstring(5000, L'x'), std::wstring(L"42"),
          std::wstring(L"true")}) {
        ASSERT_TRUE(store.WriteText("metric_settings", text));
        EXPECT_EQ(text, Open().ReadText("metric_settings"));
        EXPECT_EQ(std::nullopt, store.ReadNumber("metric_settings"));
    }
    EXPECT_EQ(home / "Lumetry" / "TLV.ini", store.FilePath().toStdString());
}

TEST_F(SettingsStore, NumbersKeepTheirType) {
    for (int number : {0, 1, -1, INT_MAX, INT_MIN}) {
        ASSERT_TRUE(store.WriteText("rad", L"7"));
        EXPECT_EQ(std::nullopt, store.ReadNumber("rad"));
        ASSERT_TRUE(store.WriteNumber("rad", number));
        EXPECT_EQ(number, store.ReadNumber("rad"));
        EXPECT_EQ(std::nullopt, store.ReadText("rad"));
    }
}

TEST_F(SettingsStore, ReadsAFileWrittenByHand) {
    ASSERT_TRUE(store.WriteNumber("yuv_table", 1));
    WriteFile(
        "[numbers]\nyuv_table=0\nrad=12 frames\nsave_csv=\nhuge=4294967296\nhalf=1.5\n"
        "[texts]\noriginal=/data/a,b/c.yuv\n");
    EXPECT_EQ(0, store.ReadNumber("yuv_table"));
    for (const char* name : {"rad", "save_csv", "huge", "half", "absent"})
        EXPECT_EQ(std::nullopt, store.ReadNumber(name)) << name;
    EXPECT_EQ(L"/data/a,b/c.yuv", store.ReadText("original"));
}

// What another process has written between two calls is read, and survives a write of another value.
TEST_F(SettingsStore, KeepsWhatOthersWrite) {
    ASSERT_TRUE(store.WriteNumber("run_num", 1));
    ASSERT_TRUE(store.WriteText("metric", L"psnr"));
    WriteFile("[numbers]\nrun_num=2\ncomp_analysis=1\n[texts]\nmetric=vqm\n");
    ASSERT_TRUE(store.WriteNumber("run_num", 1));  // equal to what this one wrote, not to what is there
    EXPECT_EQ(1, store.ReadNumber("run_num"));
    EXPECT_EQ(1, store.ReadNumber("comp_analysis"));
    EXPECT_EQ(L"vqm", store.ReadText("metric"));
}

TEST_F(SettingsStore, DamagedLinesDontStopIt) {
    ASSERT_TRUE(store.WriteNumber("rad", 10));
    WriteFile("no section and no value\n[numbers\nrad=20\n\x80\xff=\n[texts]\nmetric=psnr\n");
    EXPECT_TRUE(store.WriteNumber("rad", 30));
    EXPECT_EQ(30, store.ReadNumber("rad"));
    EXPECT_EQ(L"psnr", store.ReadText("metric"));
}

TEST_F(SettingsStore, TellsThatAValueIsLost) {
    std::ofstream(home / "Taken") << "a file where the directory should be";
    EXPECT_FALSE(Open("Taken").WriteNumber("rad", 10));
    EXPECT_EQ(std::nullopt, Open("Taken").ReadNumber("rad"));
}

}  // namespace
