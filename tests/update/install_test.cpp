#include "tests/update/update_fixture.h"
#include "update/update_flow.h"

#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

namespace {

namespace fs = std::filesystem;

class Install : public UpdateFixture {
protected:
    InstallResult Result() { return CAutoUpdater(Settings()).InstallUpdate(); }
    std::string Temporary(const std::string& name) const { return ReadWhole(directory.Path("tmp/" + name)); }

    /// Settings with which a kind of step always fails.
    UpdaterSettings Failing(const std::string& which, const std::string& start) const {
        UpdaterSettings settings = Settings();
        settings.fileHook = [=](std::string_view step, const std::string& name) {
            return step == which && name.starts_with(start) ? EIO : 0;
        };
        return settings;
    }
};

TEST_F(Install, MovesEveryFileIntoPlace) {
    Write("doc/help.html", "old help");
    Write("plugins/a.tlp", "old plugin");
    Write("plugins/a.tlp.bak", "older plugin");
    Write("own.txt", "the user's");
    directory.Write("tmp/help.html", "of somebody else");
    Stage({{"tolvane", Script("new")},
           {"doc/help.html", "new help"},
           {"plugins\\deep\\b.tlp", "new plugin b"},
           {"plugins/a.tlp", "new plugin"}});
    // As the download names it.
    fs::create_directories(Program("update/plugins/deep"));
    fs::rename(Program("update/plugins\\deep\\b.tlp"), Program("update/plugins/deep/b.tlp"));

    EXPECT_EQ(InstallResult::Installed, Result());
    const std::map<std::string, std::string> expected = {
        {"tolvane", Script("new")},          {"tolvane.bak", Script("old")},
        {"doc/help.html", "new help"},       {"plugins/a.tlp", "new plugin"},
        {"plugins/a.tlp.bak", "old plugin"}, {"plugins/deep/b.tlp", "new plugin b"},
        {"own.txt", "the user's"},
    };
    EXPECT_EQ(expected, Everything());
    EXPECT_EQ("old help", Temporary("help.html"));
}

TEST_F(Install, KeepsPermissions) {
    Write("secret.txt", "old");
    Write("a.so.1", "old");
    chmod(Program("secret.txt").c_str(), 0600);
    chmod(Program("a.so.1").c_str(), 0750);
    chmod(Program("tolvane").c_str(), 0711);
    Stage({{"tolvane", "new"},
           {"a.so.1", "new"},
           {"secret.txt", "new"},
           {"tolvane-measure", "new"},
           {"read.me", "new"}});
    chmod(Program("update/tolvane-measure").c_str(), 0640);
    chmod(Program("update/read.me").c_str(), 0640);
    EXPECT_EQ(InstallResult::Installed, Result());
    EXPECT_EQ(0711u, Mode("tolvane"));
    EXPECT_EQ(0711u, Mode("tolvane.bak"));
    EXPECT_EQ(0750u, Mode("a.so.1"));
    EXPECT_EQ(0600u, Mode("secret.txt"));
    EXPECT_EQ(0750u, Mode("tolvane-measure")) << "a new program may be executed by who may read it";
    EXPECT_EQ(0640u, Mode("read.me"));
}

TEST_F(Install, TouchesNothingBeforeEverythingIsThere) {
    const std::string script = Script("new");
    const struct {
        const char* what;
        std::function<void()> spoil;
    } cases[] = {
        {"no list", [&] { fs::remove(Program("update/LIST")); }},
        {"a list with a bad name", [&] { Write("update/LIST", "0\r\n0 ../a"); }},
        {"a list that is too long",
         [&] {
             Write("update/LIST", ListOf({{"a", ""}}) + std::string(16384, ' '));
         }},
        {"a list that is a link",
         [&] {
             fs::rename(Program("update/LIST"), directory.Path("LIST"));
             fs::create_symlink(directory.Path("LIST"), Program("update/LIST"));
         }},
        {"a file is missing", [&] { fs::remove(Program("update/sub/last")); }},
        {"a file is short", [&] { Write("update/sub/last", "ne"); }},
        {"a file is long", [&] { Write("update/sub/last", "newer"); }},
        {"a file is a link",
         [&] {
             directory.Write("last", "new");
             fs::remove(Program("update/sub/last"));
             fs::create_symlink(directory.Path("last"), Program("update/sub/last"));
         }},
        {"a staged directory is a link",
         [&] {
             fs::rename(Program("update/sub"), directory.Path("sub"));
             fs::create_directory_symlink(directory.Path("sub"), Program("update/sub"));
         }},
        {"the target is a directory", [&] { fs::create_directories(Program("sub/last")); }},
        {"the way to the target is a link",
         [&] {
             fs::create_directories(directory.Path("outside"));
             fs::create_directory_symlink(directory.Path("outside"), Program("sub"));
         }},
        {"the way to the target is a file", [&] { Write("sub", "a file"); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(Program(""));
        fs::create_directory(Program(""));
        WriteProgram("tolvane", "old");
        Stage({{"tolvane", script}, {"sub/last", "new"}});
        c.spoil();
        EXPECT_EQ(InstallResult::TryAgain, Result());
        EXPECT_EQ(Script("old"), Contents("tolvane"));
        EXPECT_FALSE(Exists("tolvane.bak"));
        EXPECT_FALSE(fs::exists(directory.Path("outside/last")));
    }
}

TEST_F(Install, ReplacesALinkAndNotWhatItPointsAt) {
    directory.Write("outside", "outside");
    fs::create_symlink(directory.Path("outside"), Program("a.so"));
    fs::create_symlink(directory.Path("outside"), Program("b.txt"));
    Stage({{"a.so", "new"}, {"b.txt", "new"}});
    EXPECT_EQ(InstallResult::Installed, Result());
    EXPECT_EQ("outside", ReadWhole(directory.Path("outside")));
    EXPECT_FALSE(fs::is_symlink(Program("a.so")));
    EXPECT_TRUE(fs::is_symlink(Program("a.so.bak")));
    EXPECT_EQ("new", Contents("b.txt"));
}

TEST_F(Install, TheTemporaryDirectoryIsNoReasonToFail) {
    Write("a.txt", "old");
    Write("b.txt", "old");
    directory.Write("kept", "kept");
    fs::create_directories(directory.Path("tmp/a.txt/full"));
    fs::create_symlink(directory.Path("kept"), directory.Path("tmp/b.txt"));
    Stage({{"a.txt", "new"}, {"b.txt", "new"}});
    EXPECT_EQ(InstallResult::Installed, Result());
    EXPECT_EQ("new", Contents("a.txt"));
    EXPECT_EQ("old", Temporary("b.txt"));
    EXPECT_EQ("kept", ReadWhole(directory.Path("kept"))) << "a link that somebody laid isn't written through";

    setenv("TMPDIR", "/nonexistent", 1);
    Stage({{"a.txt", "newer"}});
    EXPECT_EQ(InstallResult::Installed, Result());
    EXPECT_EQ("newer", Contents("a.txt"));
}

TEST_F(Install, AStepThatFailsOnceIsMadeUpForAtTheNextStart) {
    // With and without a second volume, and up to the step behind the last one.
    for (const bool isOtherVolume : {false, true}) {
        for (int failing = 0, last = 1; failing < last; ++failing) {
            SCOPED_TRACE(failing);
            fs::remove_all(Program(""));
            fs::create_directory(Program(""));
            WriteProgram("tolvane", "old");
            Write("a.txt", "old");
            Stage({{"sub/a.tlp", "new"}, {"tolvane", Script("new")}, {"a.txt", "new"}});

            UpdaterSettings settings = Settings();
            int steps = 0;
            settings.fileHook = [&](std::string_view step, const std::string& name) {
                if (steps++ == failing) return EIO;
                return isOtherVolume && step == "rename" && name.starts_with("update/") ? EXDEV : 0;
            };
            CAutoUpdater first(settings);
            const StartAction action = InstallAtStart(first);
            EXPECT_EQ(StartAction::Restart, action);
            last = steps;
            CAutoUpdater second(Settings());
            InstallAtStart(second);
            EXPECT_FALSE(second.IsUpdateDownloaded());
            EXPECT_EQ(StartAction::GoOn, InstallAtStart(second));
            EXPECT_EQ(Script("new"), Contents("tolvane"));
            EXPECT_EQ(Script("old"), Contents("tolvane.bak"));
            EXPECT_EQ("new", Contents("sub/a.tlp"));
            EXPECT_EQ("new", Contents("a.txt"));
            EXPECT_FALSE(Exists("tolvane.arriving"));
        }
    }
}

TEST_F(Install, WhatCantBeInstalledIsSetAsideAfterTheSecondTry) {
    Write("update.failed/rest", "of an earlier one");
    Stage({{"a.txt", "new"}, {"tolvane", Script("new")}});
    const UpdaterSettings settings = Failing("rename", "update/tolvane");

    CAutoUpdater first(settings);
    EXPECT_EQ(StartAction::Restart, InstallAtStart(first));
    EXPECT_TRUE(Exists("update/.COMPLETED"));
    CAutoUpdater second(settings);
    EXPECT_EQ(StartAction::TellAndGoOn, InstallAtStart(second));
    CAutoUpdater third(settings);
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(third));

    EXPECT_EQ(Script("old"), Contents("tolvane"));
    EXPECT_FALSE(Exists("update"));
    EXPECT_EQ(Script("new"), Contents("update.failed/tolvane"));
    EXPECT_FALSE(Exists("update.failed/rest"));
    EXPECT_EQ(FromUtf8(Program("update.failed")), third.FailedDownloadPath());
    EXPECT_NE(std::wstring::npos, InstallFailure(third).text.find(third.FailedDownloadPath()));
}

TEST_F(Install, TheProgramItselfComesLast) {
    Stage({{"tolvane", Script("new")}, {"plugins/a.tlp", "new"}});
    EXPECT_EQ(InstallResult::TryAgain, CAutoUpdater(Failing("rename", "update/plugins")).InstallUpdate());
    EXPECT_EQ(Script("old"), Contents("tolvane")) << "it would say that it is up to date";
}

TEST_F(Install, NeverRestartsForEver) {
    // A directory in which nothing can be changed, or nothing be removed, or no mark be written.
    const struct {
        const char* step;
        const char* name;
        int warnings;  // none where not even the download can be put away: they would come at every start
    } cases[] = {{"", "", 0},
                 {"remove", "", 0},
                 {"remove", "update/.COMPLETED", 1},
                 {"rename", "update", 1},
                 {"create", "update/.TRIED", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.step);
        Stage({{"tolvane", Script("new")}});
        UpdaterSettings settings = Settings();
        settings.fileHook = [&](std::string_view step, const std::string& name) {
            return (*c.step == 0 || step == c.step) && name.starts_with(c.name) ? EACCES : 0;
        };
        std::map<StartAction, int> actions;
        for (int start = 0; start < 6; ++start) {
            CAutoUpdater updater(settings);
            const StartAction action = InstallAtStart(updater);
            ++actions[action];
            if (action == StartAction::TellAndGoOn) {
                EXPECT_TRUE(fs::is_directory(ToUtf8(updater.FailedDownloadPath())));
            }
        }
        EXPECT_LE(actions[StartAction::Restart], 1);
        EXPECT_EQ(c.warnings, actions[StartAction::TellAndGoOn]);
        EXPECT_FALSE(Contents("tolvane").empty());
    }
}

TEST_F(Install, WaitsForAnotherProcessButNotForEver) {
    Stage({{"tolvane", Script("new")}});
    const int other = open(Program("").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(0, flock(other, LOCK_EX));
    EXPECT_EQ(InstallResult::NotNow, Result());
    std::thread end([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        close(other);
    });
    EXPECT_EQ(InstallResult::Installed, Result());
    end.join();
    EXPECT_EQ(InstallResult::Installed, Result()) << "somebody else has done it";
}

TEST_F(Install, NothingToInstall) {
    CAutoUpdater updater(Settings());
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(updater));
    Write("update/tolvane", "half a download");
    Write("update/LIST", ListOf({{"tolvane", "half a download"}}));
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(updater));
    fs::create_directory(Program("update/.COMPLETED"));
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(updater)) << "the mark is a file";
    EXPECT_EQ(Script("old"), Contents("tolvane"));
}

}  // namespace
