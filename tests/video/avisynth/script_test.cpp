#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/avisynth/script_filter.h"
#include "video/avisynth/temporary_script.h"
#include "video/color_space.h"
#include "video/file_kind.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace {

TEST(FileKind, ByTheEndingInAnyCase) {
    const std::tuple<std::string, int, std::vector<const wchar_t*>> kKinds[] = {
        {"avi", 0, {L"/clips/orig.AVI", L"notaavi"}},
        {"mov", 6, {L"a.mov"}},
        {"avs", 4, {L"a.Avs"}},
        {"bmp", 4, {L"a.bmp"}},
        {"y4m", 4, {L"a.y4M"}},
        {"raw", 7, {L"a.YUV", L"a.yuv10", L"a.rgb", L"a.yuv16", L"a.rgb6"}},
        {"", 4, {L"a.yuv1", L"a.avi.txt", L"vi", L"a.mkv"}},
    };
    for (const auto& [expected, filter, names] : kKinds) {
        for (const wchar_t* name : names) {
            std::string kind;
            if (rkIsAviName(name)) kind += "avi";
            if (rkIsMovName(name)) kind += "mov";
            if (rkIsAvsName(name)) kind += "avs";
            if (rkIsBmpName(name)) kind += "bmp";
            if (rkIsY4mName(name)) kind += "y4m";
            if (rkIsRawName(name)) kind += "raw";
            EXPECT_EQ(expected, kind) << testing::PrintToString(name);
            EXPECT_EQ(filter, rkScriptFilterForFile(name)) << testing::PrintToString(name);
        }
    }
}

TEST(ScriptFilter, NamesDefaultParametersAndText) {
    const wchar_t* rgb24 = L"audio = false, pixel_type = \"RGB24\"";
    const struct {
        std::wstring role, function, plugin, parameters;
    } kFilters[] = {
        {L"AviSource", L"AviSource", L"", rgb24},
        {L"OpenDMLSource", L"OpenDMLSource", L"", rgb24},
        {L"AviFileSource", L"AviFileSource", L"", rgb24},
        {L"DirectShowSource", L"DirectShowSource", L"", rgb24},
        {L"DirectShowSource2", L"dss2", L"avss.dll", L""},
        {L"FFMpegSource", L"FFVideoSource", L"FFMpegSource.dll", L""},
        {L"QTSource", L"QTInput", L"QTSource.dll", L"color = 2, quality = 100, audio = false, mode = 0"},
        {L"RawSource", L"RawSource", L"rawsource.dll", L"352, 288, \"I420\""},
    };
    const rkScriptInput input = {L"C:\\v\\a", L"mine", 352, 288, IYUV};
    for (int filter = 0; filter < 8; ++filter) {
        const auto& c = kFilters[filter];
        EXPECT_EQ(filter, rkScriptFilterByName(c.role));
        EXPECT_EQ(filter, rkScriptFilterByName(c.function));
        EXPECT_EQ(c.parameters, rkDefaultParameters(input, filter));
        EXPECT_EQ((c.plugin.empty() ? L"" : L"loadplugin(\"avs_plugins\\" + c.plugin + L"\")\n") +
                      c.function + L"(\"C:\\v\\a\", x = 1)",
                  rkScriptText(input, filter, L"x = 1"));
    }
    EXPECT_EQ(rkDirectShowSource2Filter, rkScriptFilterByName(L"DSS2"));
    EXPECT_EQ(L"AviSource(\"C:\\v\\a\")", rkScriptText(input, 0, L""));
    for (const int none : {-1, 8}) EXPECT_EQ(L"", rkDefaultParameters(input, none));
    for (const wchar_t* name : {L"", L"Source", L"dss", L"dss22"}) EXPECT_EQ(-1, rkScriptFilterByName(name));
}

TEST(ScriptFilter, RawFormats) {
    const std::pair<int, const wchar_t*> kFormats[] = {
        {YV12, L"YV12"}, {IYUV, L"I420"}, {Y, L"Y8"},      {UYVY, L"UYVY"},
        {YUY2, L"YUYV"}, {VYUY, L"VYUY"}, {YVYU, L"YVYU"}, {P010, L"unknown format"}};
    for (const auto& [yuvType, format] : kFormats)
        EXPECT_EQ(std::wstring(L"16, 8, \"") + format + L"\"",
                  rkDefaultParameters({L"a", L"", 16, 8, yuvType}, rkRawSourceFilter));
}

namespace fs = std::filesystem;

/// In a current directory of its own.
struct TemporaryScriptTest : testing::Test {
    TemporaryScriptTest() { fs::current_path(directory.Root()); }
    ~TemporaryScriptTest() override { fs::current_path(old); }

    const fs::path old = fs::current_path();
    TemporaryDirectory directory;
    const fs::path script = directory.Path("!!%__#$@&.avs");
};

TEST_F(TemporaryScriptTest, TakesTheNamesPlaceAsLongAsItLives) {
    const std::string victim = directory.Write("victim", "keep");
    const std::pair<const char*, std::function<void()>> kCases[] = {
        {"a file left behind", [&] { std::ofstream(script) << "old, and longer than the new one"; }},
        {"a link to another file", [&] { fs::create_symlink(victim, script); }},
        {"a second name of another file", [&] { fs::create_hard_link(victim, script); }},
        {"a link to nothing", [&] { fs::create_symlink("gone", script); }},
    };
    for (const auto& [what, put] : kCases) {
        SCOPED_TRACE(what);
        put();
        rkTemporaryScript temporary;
        EXPECT_TRUE(temporary.Create(L"dss2(\"\u00E9\xDCFF\")"));
        EXPECT_EQ("dss2(\"\xC3\xA9\xFF\")", ReadWhole(script));
        EXPECT_FALSE(fs::is_symlink(script));
        EXPECT_EQ("keep", ReadWhole(victim));
    }
    EXPECT_FALSE(fs::exists(script));
    fs::create_directory(script);
    EXPECT_FALSE(rkTemporaryScript().Create(L"new"));
}

TEST_F(TemporaryScriptTest, WaitsForSomeoneElses) {
    auto first = std::make_unique<rkTemporaryScript>();
    ASSERT_TRUE(first->Create(L"first"));
    std::atomic<bool> isCreated = false;
    std::string second;
    std::thread other([&] {
        rkTemporaryScript temporary;
        isCreated = temporary.Create(L"second");
        second = ReadWhole(script);
    });
    rkRemoveStaleScript();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(isCreated);
    EXPECT_EQ("first", ReadWhole(script)) << "a live script is nobody else's to take away";
    first.reset();
    other.join();
    EXPECT_TRUE(isCreated);
    EXPECT_EQ("second", second);
    EXPECT_FALSE(fs::exists(script));
}

// Many at once, each of which must find its own text.
TEST_F(TemporaryScriptTest, NeverMixesTwo) {
    std::vector<std::thread> threads;
    std::atomic<int> own = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 5; ++round) {
                rkTemporaryScript temporary;
                const std::string text = std::to_string(i);
                if (temporary.Create(FromUtf8(text)) && ReadWhole(script) == text) ++own;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(40, own);
    EXPECT_FALSE(fs::exists(script));
}

TEST_F(TemporaryScriptTest, OfAKilledProgram) {
    const pid_t child = fork();
    if (child == 0) {
        rkTemporaryScript temporary;
        _exit(temporary.Create(L"killed") ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    ASSERT_EQ(0, status);
    ASSERT_TRUE(fs::exists(script));
    rkRemoveStaleScript();
    EXPECT_FALSE(fs::exists(script));
}

}  // namespace
