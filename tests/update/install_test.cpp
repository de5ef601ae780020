#include "tests/update/update_fixture.h"
#include "update/update_flow.h"

#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

namespace {

namespace fs = std::filesystem;

struct Install : UpdateFixture {
    InstallResult Result() { return CAutoUpdater(Settings()).InstallUpdate(); }
    std::string Temporary(const std::string& name) const { return ReadWhole(directory.Path("tmp/" + name)); }

    /// Puts a staged file or directory somewhere else, and a link to it in its place.
    void ReplaceByLink(const std::string& name) const {
        fs::rename(Program(name), directory.Path("moved"));
        fs::create_symlink(directory.Path("moved"), Program(name));
    }
};

TEST_F(Install, MovesEveryFileIntoPlace) {
    Write("doc/help.html", "old help");
    Write("plugins/a.tlp", "old plugin");
    Write("plugins/a.tlp.bak", "older plugin");
    Write("own.txt", "the user's");
    directory.Write("tmp/help.html", "of somebody else");
    Files files = {{"tolvane", Script("new")},
                   {"doc/help.html", "new help"},
                   {"plugins/a.tlp", "new plugin"},
                   {"plugins/deep/b.tlp", "new plugin b"}};
    Stage(files);
    files.back().first = "plugins\\deep\\b.tlp";  // as a list may name it
    Write("update/LIST", ListOf(files));

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
    Stage({{"tolvane", "new"},
           {"a.so.1", "new"},
           {"secret.txt", "new"},
           {"tolvane-measure", "new"},
           {"read.me", "new"}});
    const std::pair<const char*, mode_t> before[] = {
        {"secret.txt", 0600},     {"a.so.1", 0750}, {"tolvane", 0711}, {"update/tolvane-measure", 0640},
        {"update/read.me", 0640},
    };
    for (const auto& [name, mode] : before) chmod(Program(name).c_str(), mode);
    EXPECT_EQ(InstallResult::Installed, Result());
    const std::pair<const char*, mode_t> after[] = {
        {"secret.txt", 0600}, {"a.so.1", 0750}, {"tolvane", 0711}, {"tolvane.bak", 0711}, {"read.me", 0640}};
    for (const auto& [name, mode] : after) EXPECT_EQ(mode, Mode(name)) << name;
    EXPECT_EQ(0750u, Mode("tolvane-measure")) << "a new program may be executed by who may read it";
}

TEST_F(Install, TouchesNothingBeforeEverythingIsThere) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"no list", [&] { fs::remove(Program("update/LIST")); }},
        {"a list with a bad name", [&] { Write("update/LIST", "0\r\n0 ../a"); }},
        {"a list that is too long", [&] { Write("update/LIST", "0\r\n0 a" + std::string(16384, ' ')); }},
        {"a list that is a link", [&] { ReplaceByLink("update/LIST"); }},
        {"a file is missing", [&] { fs::remove(Program("update/sub/last")); }},
        {"a file is short", [&] { Write("update/sub/last", "ne"); }},
        {"a file is long", [&] { Write("update/sub/last", "newer"); }},
        {"a file is a link", [&] { ReplaceByLink("update/sub/last"); }},
        {"a staged directory is a link", [&] { ReplaceByLink("update/sub"); }},
        {"the target is a directory", [&] { fs::create_directories(Program("sub/last")); }},
        {"the way to the target is a link",
         [&] { fs::create_symlink(directory.Path("tmp"), Program("sub")); }},
        {"the way to the target is a file", [&] { Write("sub", "a file"); }}};
    for (const auto& [what, spoil] : cases) {
        SCOPED_TRACE(what);
        Reset();
        fs::remove_all(directory.Path("moved"));
        Stage({{"tolvane", Script("new")}, {"sub/last", "new"}});
        spoil();
        EXPECT_EQ(InstallResult::TryAgain, Result());
        EXPECT_EQ(Script("old"), Contents("tolvane"));
        EXPECT_FALSE(Exists("tolvane.bak"));
        EXPECT_FALSE(fs::exists(directory.Path("tmp/last")));
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
            Reset();
            Write("a.txt", "old");
            Stage({{"sub/a.tlp", "new"}, {"tolvane", Script("new")}, {"a.txt", "new"}});

            int steps = 0;
            CAutoUpdater first(Settings([&](std::string_view step, const std::string& name) {
                if (steps++ == failing) return EIO;
                return isOtherVolume && step == "rename" && name.starts_with("update/") ? EXDEV : 0;
            }));
            EXPECT_EQ(StartAction::Restart, InstallAtStart(first));
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
    CAutoUpdater updater(Failing("rename", "update/tolvane"));
    EXPECT_EQ(StartAction::Restart, InstallAtStart(updater));
    EXPECT_TRUE(Exists("update/.COMPLETED"));
    EXPECT_EQ(StartAction::TellAndGoOn, InstallAtStart(updater));
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(updater));

    EXPECT_EQ(Script("old"), Contents("tolvane"));
    EXPECT_FALSE(Exists("update"));
    EXPECT_EQ(Script("new"), Contents("update.failed/tolvane"));
    EXPECT_FALSE(Exists("update.failed/rest"));
    EXPECT_EQ(FromUtf8(Program("update.failed")), updater.FailedDownloadPath());
    EXPECT_NE(std::wstring::npos, InstallFailure(updater).text.find(updater.FailedDownloadPath()));
}

TEST_F(Install, TheProgramItselfComesLast) {
    Stage({{"tolvane", Script("new")}, {"plugins/a.tlp", "new"}});
    EXPECT_EQ(InstallResult::TryAgain, CAutoUpdater(Failing("rename", "update/plugins")).InstallUpdate());
    EXPECT_EQ(Script("old"), Contents("tolvane")) << "it would say that it is up to date";
}

TEST_F(Install, NeverRestartsForEver) {
    // A directory in which nothing can be changed, or nothing be removed, or no mark be written.
    const std::tuple<const char*, const char*, int> cases[] = {{"", "", 0},
                                                               {"remove", "", 0},
                                                               {"remove", "update/.COMPLETED", 1},
                                                               {"rename", "update", 1},
                                                               {"create", "update/.TRIED", 0}};
    for (const auto& [step, name, warnings] : cases) {
        SCOPED_TRACE(step);
        Stage({{"tolvane", Script("new")}});
        CAutoUpdater updater(Failing(step, name));
        std::map<StartAction, int> actions;
        for (int start = 0; start < 6; ++start) {
            const StartAction action = InstallAtStart(updater);
            ++actions[action];
            const std::string aside = ToUtf8(updater.FailedDownloadPath());
            EXPECT_TRUE(action != StartAction::TellAndGoOn || fs::is_directory(aside));
        }
        EXPECT_LE(actions[StartAction::Restart], 1);
        EXPECT_EQ(warnings, actions[StartAction::TellAndGoOn]);
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

struct Tree : UpdateFixture {
    /// With ways out of the program's directory.
    Tree() {
        Write("sub/other", "");
        Write("file", "inside");
        fs::create_directories(directory.Path("outside"));
        directory.Write("outside/file", "outside");
        fs::create_directory_symlink(directory.Path("outside"), Program("way"));
        fs::create_symlink(directory.Path("outside/file"), Program("link"));
        fs::create_symlink("sub", Program("near"));
    }

    FileHook hook;
    FileTree tree{Program(""), hook};
};

TEST_F(Tree, FollowsNoLink) {
    EXPECT_FALSE(tree.Read("link", 100));
    for (const char* name : {"file/below", "way/file", "near/file"}) {
        EXPECT_EQ(FileTree::Kind::Unreachable, tree.Look(name).kind) << name;
        EXPECT_FALSE(tree.Read(name, 100)) << name;
    }
    EXPECT_FALSE(tree.WriteWhole("link", "x"));
    EXPECT_FALSE(tree.WriteWhole("way/new", "x"));
    EXPECT_FALSE(tree.MakeDirectoriesFor("way/deeper/new"));
    EXPECT_FALSE(tree.RemoveFile("way/file"));
    EXPECT_FALSE(tree.RemoveAll("way/file"));
    EXPECT_FALSE(tree.SetMode("link", 0600));
    EXPECT_NE(0, tree.Rename("file", "way/new"));
    EXPECT_FALSE(tree.Duplicate("file", tree, "way/new"));
    EXPECT_TRUE(tree.RemoveAll("way")) << "the link itself";
    EXPECT_TRUE(tree.RemoveAll("link"));
    EXPECT_FALSE(fs::exists(directory.Path("outside/new")));
    EXPECT_EQ("outside", ReadWhole(directory.Path("outside/file")));
    EXPECT_EQ("inside", tree.Read("file", 6));
    EXPECT_FALSE(tree.Read("file", 5)) << "longer than asked for";
}

TEST_F(Tree, CopiesWhereNoSecondNameCanBe) {
    chmod(Program("file").c_str(), 0754);
    std::string broken = "link";
    hook = [&](std::string_view step, const std::string&) {
        return broken.find(step) != broken.npos ? EPERM : 0;
    };
    EXPECT_TRUE(tree.Duplicate("file", tree, "sub/copy"));
    EXPECT_EQ("inside", Contents("sub/copy"));
    EXPECT_EQ(0754u, Mode("sub/copy"));
    EXPECT_EQ(1u, fs::hard_link_count(Program("file")));
    EXPECT_FALSE(tree.Duplicate("file", tree, "sub/copy")) << "what is there stays";
    broken = "link, write";
    EXPECT_FALSE(tree.Duplicate("file", tree, "half"));
    EXPECT_FALSE(Exists("half"));
}

}  // namespace
