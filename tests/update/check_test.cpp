#include "tests/update/update_fixture.h"

namespace {

class Check : public UpdateFixture {
protected:
    CheckResult Result(const std::string& own = "3.0.0.0") {
        UpdaterSettings settings = Settings();
        settings.version = own;
        return CAutoUpdater(settings).CheckForUpdate(server.Url());
    }
};

TEST_F(Check, ComparesTheVersions) {
    const struct {
        std::string own, server;
        CheckResult result;
    } cases[] = {
        {"3.0.0.0", "3.0.0.1", CheckResult::Newer},
        {"3.0.0.0", "3.0.0.1\r\n", CheckResult::Newer},
        {"3.0.9.9", "3.1.0.0", CheckResult::Newer},
        {"3.0.0.9", "3.0.0.10", CheckResult::Newer},
        {"3.0.0.0", "3.0.0.0", CheckResult::UpToDate},
        {"3.1.0.0", "3.0.9.9", CheckResult::UpToDate},
        {"3.0.0.2", "3.0.0.1", CheckResult::UpToDate},
        {"3.0.0.0", "0.0.0.0", CheckResult::UpToDate},
        {"0.0.0.0", "3.0.0.1", CheckResult::NoOwnVersion},
        {"", "3.0.0.1", CheckResult::NoOwnVersion},
        {"3.0.0.0", "", CheckResult::NotRead},
        {"3.0.0.0", "4", CheckResult::NotRead},
        {"3.0.0.0", "<html>", CheckResult::NotRead},
    };
    for (const auto& c : cases) {
        server.AnswerText("/update/LATEST", c.server);
        EXPECT_EQ(c.result, Result(c.own)) << c.own << " against " << c.server;
    }
}

TEST_F(Check, SaysWhatKeptItFromComparing) {
    EXPECT_EQ(CheckResult::NotOpened, Result()) << "no such file";
    server.Answer("/update/LATEST", {.body = "3.0.0.1", .toldLength = 8});
    EXPECT_EQ(CheckResult::NotRead, Result()) << "this may have become 3.0.0.12";

    UpdaterSettings offline = Settings();
    offline.isOnline = [] { return false; };
    CAutoUpdater updater(offline);
    EXPECT_FALSE(updater.IsConnected());
    EXPECT_EQ(CheckResult::NoConnection, updater.CheckForUpdate(server.Url()));
}

TEST_F(Check, ReadsTheStartOfALongAnswerOnly) {
    server.Answer("/update/LATEST", {.body = "4.0.0.0 and more, ", .isEndless = true});
    EXPECT_EQ(CheckResult::Newer, Result());
}

TEST_F(Check, TheAddressMayEndInASeparator) {
    Offer({{"tolvane", "new"}});
    CAutoUpdater updater(Settings());
    const std::string url = server.Url();
    EXPECT_EQ(CheckResult::Newer, updater.CheckForUpdate(url));
    EXPECT_EQ(CheckResult::Newer, updater.CheckForUpdate(url.substr(0, url.size() - 1)));
    EXPECT_EQ(CheckResult::NotOpened,
              updater.CheckForUpdate("http://localhost:" + std::to_string(server.Port())))
        << "plain HTTP from anywhere else";
    EXPECT_EQ(CheckResult::NotOpened, updater.CheckForUpdate("")) << "a build without a server";
}

}  // namespace
