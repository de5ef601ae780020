#include "update/update_flow.h"

#include "tests/update/update_fixture.h"

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr const wchar_t* kAvailable =
    L"ask: Update is available: An update of Tolvane is now available. Do you want to download update now? "
    L"(It will be "
    L"downloaded in the background)";
constexpr const wchar_t* kComplete = L"ask: Download completed: Download complete! Restart Tolvane now?";
constexpr const wchar_t* kConnection =
    L"warn: Download error: Internet connection error. Check for the internet connection.";
constexpr const wchar_t* kFile =
    L"warn: Download error: File download error. Check for internet connection, administrator rights and "
    L"free space on "
    L"disk.";
constexpr const wchar_t* kLocal =
    L"warn: Download error: File management error. Check for administrator rights and for file consistency.";

/// Answers from a list, then "No", and notes what was asked.
class Answers : public IUpdateQuestions {
public:
    explicit Answers(std::vector<bool> answers, bool endsWindows = true)
        : answers(std::move(answers)), endsWindows(endsWindows) {}

    bool AskYesNo(const std::wstring& title, const std::wstring& text) override {
        said.push_back(L"ask: " + title + L": " + text);
        const bool answer = next < answers.size() && answers[next];
        ++next;
        return answer;
    }
    void ShowWarning(const std::wstring& title, const std::wstring& text) override {
        said.push_back(L"warn: " + title + L": " + text);
    }
    bool EndWindows() override {
        said.push_back(L"end windows");
        if (onEnd) onEnd();
        return endsWindows;
    }
    void Restart() override { said.push_back(L"restart"); }

    std::vector<std::wstring> said;
    std::function<void()> onEnd;

private:
    std::vector<bool> answers;
    bool endsWindows;
    std::size_t next = 0;
};

class Flow : public UpdateFixture {
protected:
    using Said = std::vector<std::wstring>;

    Said Run(std::vector<bool> answers) { return Run(std::move(answers), Settings()); }
    Said Run(std::vector<bool> answers, const UpdaterSettings& settings) {
        Answers questions(std::move(answers));
        CAutoUpdater updater(settings);
        RunUpdate(updater, questions, server.Url());
        return questions.said;
    }
};

TEST_F(Flow, SaysNothingWithoutANewerVersion) {
    EXPECT_EQ(Said(), Run({true, true}));
    for (const char* version : {"3.0.0.0", "2.9.9.9", "nonsense"}) {
        server.AnswerText("/update/LATEST", version);
        EXPECT_EQ(Said(), Run({true, true})) << version;
    }
    Offer({{"tolvane", "new"}});
    UpdaterSettings offline = Settings();
    offline.isOnline = [] { return false; };
    const std::size_t requests = server.Requests().size();
    EXPECT_EQ(Said(), Run({true, true}, offline));
    EXPECT_EQ(requests, server.Requests().size());
}

TEST_F(Flow, InstallsAndRestartsIfTheUserWantsIt) {
    Offer({{"tolvane", Script("new")}});
    EXPECT_EQ(Said({kAvailable}), Run({false}));
    EXPECT_FALSE(Exists("update"));

    EXPECT_EQ(Said({kAvailable, kComplete}), Run({true, false}));
    EXPECT_TRUE(Exists("update/.COMPLETED"));
    EXPECT_EQ(Script("old"), Contents("tolvane"));
    CAutoUpdater next(Settings());
    EXPECT_EQ(StartAction::Restart, InstallAtStart(next)) << "the next start doesn't ask";
    EXPECT_EQ(Script("new"), Contents("tolvane"));

    WriteProgram("tolvane", "old");
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows", L"restart"}), Run({true, true}));
    EXPECT_EQ(Script("new"), Contents("tolvane"));
}

TEST_F(Flow, TheWindowsEndBeforeTheirProgramIsReplaced) {
    Offer({{"tolvane", Script("new")}});
    Answers questions({true, true});
    questions.onEnd = [this] { EXPECT_EQ(Script("old"), Contents("tolvane")); };
    CAutoUpdater updater(Settings());
    RunUpdate(updater, questions, server.Url());
    EXPECT_EQ(Script("new"), Contents("tolvane"));
}

TEST_F(Flow, AProgramThatEndsMeanwhileIsUpdatedAtTheNextStart) {
    Offer({{"tolvane", Script("new")}});
    Answers questions({true, true}, false);
    CAutoUpdater updater(Settings());
    RunUpdate(updater, questions, server.Url());
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows"}), questions.said);
    EXPECT_EQ(Script("old"), Contents("tolvane"));
    EXPECT_TRUE(updater.IsUpdateDownloaded());
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
    UpdaterSettings settings = Settings();
    settings.fileHook = [](std::string_view step, const std::string& name) {
        return step == "rename" && name == "update/tolvane" ? EIO : 0;
    };
    EXPECT_EQ(Said({kAvailable, kComplete, L"end windows", L"restart"}), Run({true, true}, settings));

    settings.fileHook = [](std::string_view step, const std::string& name) {
        return (step == "rename" && name == "update/tolvane") || (step == "create" && name == "update/.TRIED")
                   ? EIO
                   : 0;
    };
    const Said said = Run({true, true}, settings);
    ASSERT_EQ(5u, said.size());
    EXPECT_TRUE(said[3].starts_with(L"warn: Update error: "));
    CAutoUpdater next(settings);
    EXPECT_EQ(StartAction::GoOn, InstallAtStart(next)) << "no restart that could go on for ever";
}

TEST_F(Flow, EndsInSilenceWithTheProgram) {
    Offer({{"tolvane", std::string(1000, 'x')}});
    const auto start = std::chrono::steady_clock::now();
    for (const std::string path :
         {"/update/LATEST", "/update/files/Win32/LIST", "/update/files/Win32/tolvane"}) {
        SCOPED_TRACE(path);
        Offer({{"tolvane", std::string(1000, 'x')}});
        server.Answer(path, {.body = std::string(1000, ' '), .pause = 50ms});
        Answers questions({true, true});
        UpdaterSettings settings = Settings();
        settings.http = {};
        CAutoUpdater updater(settings);
        std::thread thread([&] { RunUpdate(updater, questions, server.Url()); });
        std::this_thread::sleep_for(200ms);
        updater.Cancel();
        thread.join();
        EXPECT_EQ(path == "/update/LATEST" ? Said() : Said({kAvailable}), questions.said);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

}  // namespace
