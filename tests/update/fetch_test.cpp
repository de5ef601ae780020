#include "tests/update/update_fixture.h"

#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

namespace {

namespace fs = std::filesystem;

struct Check : UpdateFixture {
    CheckResult Result(const std::string& own = "3.0.0.0") {
        UpdaterSettings settings = Settings();
        settings.version = own;
        return CAutoUpdater(settings).CheckForUpdate(server.Url());
    }
};

TEST_F(Check, ComparesTheVersions) {
    EXPECT_EQ(CheckResult::NotOpened, Result()) << "no such file";
    const std::tuple<std::string, std::string, CheckResult> cases[] = {
        {"3.0.9.9", "3.1.0.0\r\n", CheckResult::Newer},
        {"3.0.0.9", "3.0.0.10", CheckResult::Newer},
        {"3.0.0.0", "3.0.0.0", CheckResult::UpToDate},
        {"3.1.0.0", "3.0.9.9", CheckResult::UpToDate},
        {"0.0.0.0", "3.0.0.1", CheckResult::NoOwnVersion},
        {"", "3.0.0.1", CheckResult::NoOwnVersion},
        {"3.0.0.0", "", CheckResult::NotRead},
        {"3.0.0.0", "<html>", CheckResult::NotRead}};
    for (const auto& [own, offered, result] : cases) {
        server.AnswerText("/update/LATEST", offered);
        EXPECT_EQ(result, Result(own)) << own << " against " << offered;
    }
    server.Answer("/update/LATEST", {.body = "3.0.0.1", .toldLength = 8});
    EXPECT_EQ(CheckResult::NotRead, Result()) << "this may have become 3.0.0.12";
    server.Answer("/update/LATEST", {.body = "4.0.0.0 and more, ", .isEndless = true});
    EXPECT_EQ(CheckResult::Newer, Result()) << "the start is enough";
}

TEST_F(Check, AsksTheServersOwnAddressOnly) {
    Offer({{"tolvane", "new"}});
    UpdaterSettings settings = Settings();
    CAutoUpdater updater(settings);
    std::string url = server.Url();
    EXPECT_EQ(CheckResult::Newer, updater.CheckForUpdate(url));
    url.pop_back();
    EXPECT_EQ(CheckResult::Newer, updater.CheckForUpdate(url)) << "without a separator at the end";
    const std::string elsewhere = "http://localhost:" + std::to_string(server.Port());
    EXPECT_EQ(CheckResult::NotOpened, updater.CheckForUpdate(elsewhere)) << "plain HTTP";
    EXPECT_EQ(CheckResult::NotOpened, updater.CheckForUpdate("")) << "a build without a server";
    settings.isOnline = [] { return false; };
    EXPECT_EQ(CheckResult::NoConnection, CAutoUpdater(settings).CheckForUpdate(url));
}

struct Download : UpdateFixture {
    DownloadResult Result() { return CAutoUpdater(Settings()).DownloadUpdate(server.Url()); }
};

TEST_F(Download, StagesEveryFileUnderItsName) {
    const std::string large(10000, 'x');
    Offer({{"tolvane", large}, {"plugins/deep/a.tlp", "plugin"}, {"empty", ""}});
    CAutoUpdater updater(Settings());
    EXPECT_EQ(DownloadResult::Success, updater.DownloadUpdate(server.Url()));
    EXPECT_TRUE(updater.IsUpdateDownloaded());
    EXPECT_EQ(10006, updater.TotalSize());
    EXPECT_EQ(3 + 1, updater.Progress()) << "blocks of 4096 bytes";
    const std::map<std::string, std::string> expected = {
        {"tolvane", Script("old")},
        {"update/.COMPLETED", ""},
        {"update/LIST", ListOf({{"tolvane", large}, {"plugins/deep/a.tlp", "plugin"}, {"empty", ""}})},
        {"update/empty", ""},
        {"update/plugins/deep/a.tlp", "plugin"},
        {"update/tolvane", large}};
    EXPECT_EQ(expected, Everything());
}

TEST_F(Download, AsksForTheBytesOfTheListAndStagesTheCharacters) {
    server.AnswerText("/update/files/Win32/LIST", "2\r\n1 sub\\a b\r\n1 \xE9%41");
    server.AnswerText("/update/files/Win32/%E9%2541", "2");
    server.AnswerText("/update/files/Win32/sub/a%20b", "1");
    EXPECT_EQ(DownloadResult::Success, Result());
    EXPECT_EQ("1", Contents("update/sub/a b"));
    EXPECT_EQ("2", Contents("update/\xC3\xA9%41"));
}

TEST_F(Download, RefusesABadListBeforeItTouchesAnything) {
    Write("update/partial", "of an earlier download");
    const auto before = Everything();
    EXPECT_EQ(DownloadResult::ListNotOpened, Result());
    const std::pair<const char*, HttpAnswer> cases[] = {
        {"nothing", {}},
        {"broken off", {.body = "3\r\n3 a", .toldLength = 20}},
        {"too long", {.body = "0\r\n0 a" + std::string(16384, ' ')}},
        {"wrong total", {.body = "4\r\n3 a"}},
        {"parent directory", {.body = "6\r\n3 a\r\n3 ../b"}},
        {"the mark", {.body = "0\r\n0 .COMPLETED"}},
    };
    server.AnswerText("/update/files/Win32/a", "new");
    for (const auto& [what, answer] : cases) {
        server.Answer("/update/files/Win32/LIST", answer);
        EXPECT_EQ(DownloadResult::ListNotRead, Result()) << what;
        EXPECT_EQ(before, Everything()) << what;
    }
}

TEST_F(Download, IsCompleteWithEveryFileOfItsSizeOnly) {
    const std::pair<const char*, HttpAnswer> cases[] = {
        {"missing", {.status = 404, .body = "12345"}},
        {"short", {.body = "1234"}},
        {"long", {.body = "123456"}},
        {"broken off", {.body = "123", .toldLength = 5}},
        {"too slow", {.body = "12345", .pause = std::chrono::seconds(2)}},
        {"moved", {.status = 301, .headers = "Location: /elsewhere\r\n"}},
    };
    server.AnswerText("/elsewhere", "12345");
    for (const auto& [what, answer] : cases) {
        SCOPED_TRACE(what);
        Offer({{"first", "1"}, {"file", "12345"}});
        server.Answer("/update/files/Win32/file", answer);
        CAutoUpdater updater(Settings());
        EXPECT_EQ(DownloadResult::FileFailed, updater.DownloadUpdate(server.Url()));
        EXPECT_FALSE(updater.IsUpdateDownloaded());
        EXPECT_EQ("1", Contents("update/first")) << "what is there stays";
        EXPECT_LE(Contents("update/file").size(), 5u);
        server.AnswerText("/update/files/Win32/file", "12345");
        EXPECT_EQ(DownloadResult::Success, updater.DownloadUpdate(server.Url()));
        EXPECT_TRUE(updater.IsUpdateDownloaded());
    }
}

TEST_F(Download, StartsAfresh) {
    Stage({{"tolvane", "older"}, {"deep/er/file", "older"}});
    Write("update/.TRIED", "");
    Offer({{"tolvane", "new"}});
    server.Answer("/update/files/Win32/tolvane", {.status = 404});
    EXPECT_EQ(DownloadResult::FileFailed, Result());
    for (const char* name : {"update/.COMPLETED", "update/.TRIED", "update/deep"})
        EXPECT_FALSE(Exists(name)) << name;
}

TEST_F(Download, FollowsNoLinkOutOfTheDirectory) {
    fs::create_directory(directory.Path("elsewhere"));
    directory.Write("elsewhere/kept", "kept");
    Offer({{"sub/a", "new"}});

    fs::create_symlink(directory.Path("elsewhere"), Program("update"));
    EXPECT_FALSE(CAutoUpdater(Settings()).IsUpdateDownloaded());
    EXPECT_EQ(DownloadResult::Success, Result()) << "the link goes, not what it points at";
    EXPECT_FALSE(fs::is_symlink(Program("update")));

    fs::create_directory_symlink(directory.Path("elsewhere"), Program("update/link"));
    EXPECT_EQ(DownloadResult::Success, Result());
    EXPECT_EQ("kept", ReadWhole(directory.Path("elsewhere/kept")));

    // Somebody puts a link in the way while the file is on its way.
    server.Answer("/update/files/Win32/LIST", {.body = "6\r\n3 sub/a\r\n3 sub/b"});
    server.Answer("/update/files/Win32/sub/a",
                  {.body = "new", .beforeBody = [this] {
                       fs::rename(Program("update/sub"), Program("update/moved"));
                       fs::create_directory_symlink(directory.Path("elsewhere"), Program("update/sub"));
                   }});
    server.AnswerText("/update/files/Win32/sub/b", "new");
    EXPECT_EQ(DownloadResult::FileFailed, Result());
    EXPECT_FALSE(fs::exists(directory.Path("elsewhere/b")));
}

// Each step that can fail, up to the end; a full disk is one of them.
TEST_F(Download, LocalFailuresAreTold) {
    Offer({{"sub/a", "new"}, {"b", "newer"}});
    int step = 0;
    for (;; ++step) {
        CAutoUpdater updater(FailingAt(step));
        const DownloadResult result = updater.DownloadUpdate(server.Url());
        if (result == DownloadResult::Success) break;
        EXPECT_TRUE(result == DownloadResult::FileFailed || result == DownloadResult::LocalFailed) << step;
        EXPECT_FALSE(updater.IsUpdateDownloaded()) << step;
    }
    EXPECT_GT(step, 10);
    UpdaterSettings nowhere = Settings();
    nowhere.programPath = FromUtf8(directory.Path("missing/tolvane"));
    EXPECT_EQ(DownloadResult::LocalFailed, CAutoUpdater(nowhere).DownloadUpdate(server.Url()));
}

TEST_F(Download, OneProcessAtATime) {
    Offer({{"a", "new"}});
    const int other = open(Program("").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(0, flock(other, LOCK_EX));
    EXPECT_EQ(DownloadResult::LocalFailed, Result());
    EXPECT_FALSE(Exists("update"));
    close(other);
    EXPECT_EQ(DownloadResult::Success, Result());
}

}  // namespace
