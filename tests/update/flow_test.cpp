#include "update/update_flow.h"

#include "tests/update/update_fixture.h"

namespace {

const std::wstring kAvailable =
    L"ask: Update is available: An update of Tolvane is now available. Do you want to download update now? "
    L"(It will be downloaded in the background)";
const std::wstring kComplete = L"ask: Download completed: Download complete! Restart Tolvane now?";
const std::wstring kError = L"warn: Download error: ";
const std::wstring kConnection = kError + L"Internet connection error. Check for the internet connection.";
const std::wstring kFile = kError +
                           L"File download error. Check for internet connection, administrator "
                           L"rights and free space on disk.";
const std::wstring kLocal =
    kError + L"File management error. Check for administrator rights and for file consistency.";

/// A flow whose questions are answered from a list, then with "No". What was said is noted.
struct Flow : UpdateFixture, IUpdateQuestions {
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
        return true;
    }
    void Restart() override { said.push_back(L"restart"); }

    std::vector<bool> answers;
    Said said;
};

TEST_F(Flow, SaysNothingWithoutANewerVersionNorFetchesOneUnasked) {
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
    EXPECT_EQ(Said({kAvailable}), Run({false}));
    EXPECT_FALSE(Exists("update"));
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

}  // namespace
