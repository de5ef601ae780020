#include "update/update_flow.h"

#include "tests/update/update_fixture.h"

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;

const std::wstring kAvailable =
    L"ask: Update is available: An update of Tolvane is now available. Do you want to download update now? "
    L"(It will be downloaded in the background)";
const std::wstring kComplete = L"ask: Download completed: Download complete! Restart Tolvane now?";
const std::wstring kError = L"warn: Download error: ";
const std::wstring kConnection = kError + L"Internet connection error. Check for the internet connection.";
const std::wstring kFile =
    kError +
    L"File download error. Check for internet connection, administrator rights and free space on disk.";
const std::wstring kLocal =
    kError + L"File management error. Check for administrator rights and for file consistency.";

/// A flow whose questions are answered from a list, then with "No". What was said is noted.
class Flow : public UpdateFixture, protected IUpdateQuestions {
protected:
    using Said = std::vector<std::wstring>;

    Said Run(std::vector<bool> answersInOrder) { return Run(std::move(answersInOrder), Settings()); }
    Said Run(std::vector<bool> answersInOrder, const UpdaterSettings& settings) {
        CAutoUpdater updater(settings);
        return Run(std::move(answersInOrder), updater);
    }
    Said Run(std::vector<bool> answersInOrder, CAutoUpdater& updater) {
        answers = std::move(answersInOrder);
        said.clear();
        RunUpdate(updater, *this, server.Url());
        return said;
    }

    bool AskYesNo(const std::wstring& title, const std::wstring& text) override {
        const std::size_t asked = said.size();
        said.push_back(L"ask: " + title + L": " + text);
        return asked < answers.size() && answers[asked];
    }
    void ShowWarning(const std::wstring& title, const std::wstring& text) override {
        said.push_back(L"warn: " + title + L": " + text);
    }
    bool EndWindows() override {
        said.push_back(L"end windows");
        EXPECT_EQ(Script("old"), Contents("tolvane")) << "the windows end before their program is replaced";
        return endsWindows;
    }
    void Restart() override { said.push_back(L"restart"); }

    std::vector<bool> answers;
    bool endsWindows = true;
    Said said;
};

TEST_F(Flow, SaysNothingWithoutANewerVersion) {
    EXPECT_EQ(Said(), Run({true, true}));
    for (const char* version : {"3.0.0.0", "nonsense"}) {
        Offer({{"tolvane", "new"}}, version);
        EXPECT_EQ(Said(), Run({true, true})) << version;
    }
    Offer({{"tolvane", "new"}});
    UpdaterSettings offline = Settings();
    offline.isOnline = [] { return false; };
    EXPECT_EQ(Said(), Run({true, true}, offline));
    EXPECT_EQ(3u, server.Requests().size()) << "and doesn't try";
}

TEST_F(Flow, InstallsAndRestartsIfTheUserWantsIt) {
    Offer({{"tolvane", Script("new")}});
    EXPECT_EQ(Said({kAvailable}), Run({false}));
    EXPECT_FALSE(Exists("update"));

    CAutoUpdater next(Settings());
    EXPECT_EQ(Said({kAvailable, kComplete}), Run({true, false}));
    EXPECT_TRUE(next.IsUpdateDownloaded());
    endsWindows = false;
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows"}), Run({true, true})) << "it ends meanwhile";
    EXPECT_EQ(Script("old"), Contents("tolvane"));
    EXPECT_EQ(StartAction::Restart, InstallAtStart(next)) << "the next start doesn't ask";
    EXPECT_EQ(Script("new"), Contents("tolvane"));

    endsWindows = true;
    WriteProgram("tolvane", "old");
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows", L"restart"}), Run({true, true}));
    EXPECT_EQ(Script("new"), Contents("tolvane"));
}

TEST_F(Flow, TellsWhyADownloadFailed) {
    server.AnswerText("/update/LATEST", "4.0.0.0");
    EXPECT_EQ(Said({kAvailable, kConnection}), Run({true})) << "no list";
    server.AnswerText("/update/files/Win32/LIST", "no list");
    EXPECT_EQ(Said({kAvailable, kConnection}), Run({true})) << "a bad list";
    server.AnswerText("/update/files/Win32/LIST", "3\r\n3 a");
    EXPECT_EQ(Said({kAvailable, kFile}), Run({true})) << "no file";
    EXPECT_EQ(Said({kAvailable, kLocal}), Run({true}, FailingAt(0))) << "no staging directory";
}

TEST_F(Flow, RestartsAfterTheFirstFailureAndTellsTheSecond) {
    Offer({{"tolvane", Script("new")}});
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows", L"restart"}),
              Run({true, true}, Failing("rename", "update/tolvane")));

    const UpdaterSettings settings = Settings([](std::string_view step, const std::string& name) {
        const bool isMark = step == "create" && name == "update/.TRIED";
        return isMark || (step == "rename" && name == "update/tolvane") ? EIO : 0;
    });
    Run({true, true}, settings);
    ASSERT_EQ(5u, said.size());
    EXPECT_TRUE(said[3].starts_with(L"warn: Update error: "));
    CAutoUpdater next(settings);
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(next)) << "no restart that could go on for ever";
}

TEST_F(Flow, EndsInSilenceWithTheProgram) {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string path :
         {"/update/LATEST", "/update/files/Win32/LIST", "/update/files/Win32/tolvane"}) {
        SCOPED_TRACE(path);
        Offer({{"tolvane", std::string(1000, 'x')}});
        server.Answer(path, {.body = std::string(1000, ' '), .pause = 50ms});
        UpdaterSettings settings = Settings();
        settings.http = {};
        CAutoUpdater updater(settings);
        std::thread thread([&] { Run({true, true}, updater); });
        std::this_thread::sleep_for(200ms);
        updater.Cancel();
        thread.join();
        EXPECT_EQ(path == "/update/LATEST" ? Said() : Said({kAvailable}), said);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

}  // namespace
