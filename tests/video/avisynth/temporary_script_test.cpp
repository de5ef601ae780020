#include "video/avisynth/temporary_script.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
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

TEST_F(TemporaryScriptTest, LastsAsLongAsItsObject) {
    {
        rkTemporaryScript temporary;
        ASSERT_TRUE(temporary.Create(L"dss2(\"\u00E9\xDCFF\")"));
        EXPECT_EQ("dss2(\"\xC3\xA9\xFF\")", ReadWhole(script));
    }
    EXPECT_TRUE(fs::is_empty(directory.Root()));
}

TEST_F(TemporaryScriptTest, TakesTheNamesPlace) {
    const std::string victim = directory.Write("victim", "keep");
    const struct {
        const char* what;
        void (*put)(const fs::path& script, const std::string& victim);
        bool created;
    } kCases[] = {
        {"a file left behind", [](auto& s, auto&) { std::ofstream(s) << "old and longer than the new"; },
         true},
        {"a link to another file", [](auto& s, auto& v) { fs::create_symlink(v, s); }, true},
        {"a second name of another file", [](auto& s, auto& v) { fs::create_hard_link(v, s); }, true},
        {"a link to nothing", [](auto& s, auto&) { fs::create_symlink("gone", s); }, true},
        {"a directory", [](auto& s, auto&) { fs::create_directory(s); }, false},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        c.put(script, victim);
        rkTemporaryScript temporary;
        EXPECT_EQ(c.created, temporary.Create(L"new"));
        if (c.created) {
            EXPECT_EQ("new", ReadWhole(script));
            EXPECT_FALSE(fs::is_symlink(script));
        }
        EXPECT_EQ("keep", ReadWhole(victim));
    }
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
    for (const bool atStart : {true, false}) {
        const pid_t child = fork();
        if (child == 0) {
            rkTemporaryScript temporary;
            _exit(temporary.Create(L"killed") ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        ASSERT_EQ(0, status);
        ASSERT_TRUE(fs::exists(script));
        if (atStart) {
            rkRemoveStaleScript();
        } else {
            rkTemporaryScript temporary;
            EXPECT_TRUE(temporary.Create(L"next"));
        }
        EXPECT_FALSE(fs::exists(script));
    }
}

TEST_F(TemporaryScriptTest, NowhereToWrite) {
    fs::create_directory("gone");
    fs::current_path("gone");
    fs::remove(directory.Path("gone"));
    rkTemporaryScript temporary;
    EXPECT_FALSE(temporary.Create(L"x"));
}

}  // namespace
