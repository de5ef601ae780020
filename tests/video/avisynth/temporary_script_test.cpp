#include "video/avisynth/temporary_script.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "platform/text.h"
#include "tests/temporary_directory.h"

namespace {

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
