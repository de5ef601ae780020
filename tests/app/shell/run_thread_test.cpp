#include "app/shell/run_thread.h"

#include "app/rules/run_start.h"
#include "app/shell/run_voices.h"
#include "tests/app/shell/shell_window.h"

#include <thread>

namespace {

using Kind = RunEvent::Kind;

TEST(RunFeed, KeepsTheOrderAndOfPositionsTheLast) {
    RunFeed feed;
    feed.Add({.kind = Kind::Range, .last = 10});
    for (int frame : {0, 1, 2}) feed.Add({.kind = Kind::Position, .first = frame});
    feed.Add({.kind = Kind::Line, .line = L"between"});
    for (int frame : {3, 4}) feed.Add({.kind = Kind::Position, .first = frame});
    feed.Add({.kind = Kind::FramesOver});
    std::vector<std::pair<Kind, int>> taken;
    for (const RunEvent& event : feed.Take()) taken.emplace_back(event.kind, event.first);
    const std::vector<std::pair<Kind, int>> expected = {
        {Kind::Range, 0}, {Kind::Position, 2}, {Kind::Line, 0}, {Kind::Position, 4}, {Kind::FramesOver, 0}};
    EXPECT_EQ(expected, taken);
    EXPECT_TRUE(feed.Take().empty());
}

TEST(RunFeed, LosesNothingBetweenThreads) {
    constexpr int kLines = 20000;
    RunFeed feed;
    std::thread worker([&] {
        for (int i = 0; i < kLines; ++i) {
            feed.Add({.kind = Kind::Position, .first = i});
            feed.Add({.kind = Kind::Line, .first = i});
        }
    });
    int expected = 0;
    while (expected < kLines) {
        for (const RunEvent& event : feed.Take()) {
            ASSERT_EQ(expected, event.first);
            if (event.kind == Kind::Line) ++expected;
        }
    }
    worker.join();
}

TEST(RunLog, TellsOnceThatItsFileIsLost) {
    RunFeed feed;
    CLogInterface log(L"/nowhere/log.txt", feed);
    EXPECT_FALSE(log.Log(L"first") || log.Log(L"second"));
    std::wstring lines;
    for (const RunEvent& event : feed.Take()) lines += event.line.substr(event.line.find(L" : ") + 3) + L"|";
    EXPECT_EQ(L"first|This log isn't kept: \"/nowhere/log.txt\" can't be written.|second|", lines);
}

/// Runs without a window.
struct RunThreads : ShellWindow, IRunWindow {
    void Show(const std::vector<RunEvent>&) override {}
    void RunFinished(std::unique_ptr<FinishRecord> finish) override { record = std::move(finish); }
    void LeaveSoon() override {}
    QWidget* Widget() override { return nullptr; }

    std::unique_ptr<FinishRecord> record;
};

TEST_F(RunThreads, OneThatIsGivenUpStopsItsRun) {
    ChooseLongVideo();
    Answers answers;
    ASSERT_TRUE(PrepareRun(state, answers).ready);
    auto run = std::make_unique<RunThread>(state.job, *this);
    run->Start();
    run->Pause();  // as while it is asked whether to stop it
    run.reset();
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(CompletionPartial, record->outcome->measurement);
}

}  // namespace
