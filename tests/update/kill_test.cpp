#include "tests/update/update_fixture.h"
#include "update/update_flow.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

namespace fs = std::filesystem;

/// What happens to a program that is killed before one of the steps that change files, and then started again.
struct Kill : UpdateFixture {
    /// Lets a process of its own do something with an updater and kills it before the step `last`, from 0 on;
    /// false if it ended before that. With `isOtherVolume` no staged file can be moved without copying.
    template <class Action>
    bool KilledAt(int last, bool isOtherVolume, Action action) {
        const pid_t child = fork();
        if (child == 0) {
            CAutoUpdater updater(
                Settings([=, steps = 0](std::string_view step, const std::string& name) mutable {
                    if (steps++ == last) raise(SIGKILL);
                    return isOtherVolume && step == "rename" && name.starts_with("update/") ? EXDEV : 0;
                }));
            action(updater);
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(child, waitpid(child, &status, 0));
        EXPECT_TRUE(WIFSIGNALED(status) || status == 0);
        return WIFSIGNALED(status);
    }

    /// What the program prints that starts now.
    std::string Run() const {
        std::FILE* output = popen(Program("tolvane").c_str(), "r");
        char line[100] = "";
        EXPECT_NE(nullptr, std::fgets(line, sizeof line, output));
        EXPECT_EQ(0, pclose(output));
        return line;
    }

    void ExpectProgramRuns() const {
        const std::string line = Run();
        EXPECT_TRUE(line == "old\n" || line == "new\n") << line;
    }

    void Reset() const {
        UpdateFixture::Reset();
        Write("plugins/a.tlp", "old");
        Write("help.html", "old");
    }

    const Files update = {{"plugins/a.tlp", "new"},
                          {"tolvane", Script("new")},
                          {"more/deep/b.txt", "new"},
                          {"help.html", "new"}};

    void ExpectInstalled() const {
        const std::map<std::string, std::string> expected = {
            {"tolvane", Script("new")},   {"tolvane.bak", Script("old")}, {"plugins/a.tlp", "new"},
            {"plugins/a.tlp.bak", "old"}, {"more/deep/b.txt", "new"},     {"help.html", "new"}};
        auto files = Everything();
        // Without the mark it doesn't count, and the next download removes it.
        EXPECT_FALSE(files.contains("update/.COMPLETED"));
        std::erase_if(files, [](const auto& file) { return file.first.starts_with("update/"); });
        EXPECT_EQ(expected, files);
        EXPECT_EQ("new\n", Run());
    }
};

constexpr auto kInstall = [](CAutoUpdater& updater) { InstallAtStart(updater); };

TEST_F(Kill, InTheMidstOfAnInstallOnceOrTwice) {
    // Every pair of points would take a minute. The steps are odd numbers, so that all kinds of pairs come.
    constexpr std::tuple<bool, int, int, int> kCases[] = {
        {false, 1, 0, 25}, {true, 1, 0, 40}, {true, 7, 3, 40}};
    for (const auto& [isOtherVolume, step, secondStep, leastPoints] : kCases) {
        int first = 0;
        for (bool isKilled = true; isKilled; first += step) {
            bool isKilledAgain = true;
            for (int second = 0; isKilledAgain; second += secondStep) {
                SCOPED_TRACE(testing::Message() << first << ", " << second << " of " << secondStep);
                Reset();
                Stage(update);
                isKilled = KilledAt(first, isOtherVolume, kInstall);
                isKilledAgain = secondStep > 0 && KilledAt(second, isOtherVolume, kInstall);
                ExpectProgramRuns();
                CAutoUpdater next(Settings());
                const bool isReady = next.IsUpdateDownloaded();
                EXPECT_EQ(isReady ? StartAction::Restart : StartAction::GoOn, InstallAtStart(next));
                EXPECT_EQ(StartAction::GoOn, InstallAtStart(next));
                ExpectInstalled();
            }
        }
        EXPECT_GT(first, leastPoints);
    }
}

TEST_F(Kill, InTheMidstOfADownload) {
    Offer(update);
    int points = 0;
    for (bool isKilled = true; isKilled; ++points) {
        SCOPED_TRACE(points);
        Reset();
        Stage({{"tolvane", "of an earlier download"}});
        isKilled = KilledAt(points, false, [&](auto& updater) { updater.DownloadUpdate(server.Url()); });
        EXPECT_EQ("old\n", Run());
        CAutoUpdater next(Settings());
        if (points == 0) continue;  // the earlier download is whole
        if (next.IsUpdateDownloaded()) {
            EXPECT_EQ(StartAction::Restart, InstallAtStart(next));
            ExpectInstalled();
        } else {
            EXPECT_EQ(DownloadResult::Success, next.DownloadUpdate(server.Url()));
        }
    }
    EXPECT_GT(points, 20);
}

TEST_F(Kill, InTheMidstOfSettingAside) {
    for (int points = 0, isKilled = true; isKilled; ++points) {
        SCOPED_TRACE(points);
        Reset();
        Write("update.failed/rest", "of an earlier one");
        Stage(update);
        fs::remove(Program("update/tolvane"));
        isKilled = KilledAt(points, false, kInstall);
        isKilled = KilledAt(points, false, kInstall) || isKilled;
        ExpectProgramRuns();
        CAutoUpdater next(Settings());
        int restarts = 0;
        for (int i = 0; i < 5; ++i) restarts += InstallAtStart(next) == StartAction::Restart ? 1 : 0;
        EXPECT_LE(restarts, 1);
        EXPECT_FALSE(Exists("update/.COMPLETED"));
        EXPECT_EQ("old\n", Run());
    }
}

}  // namespace
