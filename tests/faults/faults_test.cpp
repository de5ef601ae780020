#include "tests/faults/fault_plan.h"
#include "tests/faults/finished_run.h"
#include "tests/faults/scenario.h"
#include "tests/temporary_directory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <limits>

namespace {

namespace fs = std::filesystem;

/// Whether every call is to fail, also where that takes minutes.
const bool kAll = std::getenv("TOLVANE_FAULTS_ALL") != nullptr;

/// A scenario's files, and tolvane-measure with the library of faults, started once for many runs on them.
class Faults : public testing::TestWithParam<Scenario> {
protected:
    Faults() {
        fs::create_directories(in);
        Start();
        for (int frames = scenario.Frames(); frames >= 0; --frames)
            for (int masked = frames; masked >= (scenario.hasMask ? 0 : frames); --masked) {
                WriteInputs(scenario, in, frames, masked);
                known.push_back(Run({}));
            }
        WriteInputs(scenario, in, scenario.Frames(), scenario.Frames());
        EXPECT_EQ(0, known[0].status) << known[0].errors;
    }
    ~Faults() override {
        close(plans);
        close(answers);
        int status = 0;
        waitpid(program, &status, 0);
        EXPECT_EQ(0, status) << "the library of faults itself failed";
    }

    FinishedRun Run(const FaultPlan& plan) {
        fs::remove_all(out);
        fs::create_directories(out);
        for (const char* name : {"values.csv", "results.json"})
            root.Write(std::string("data/out/") + name, kOldContent);
        for (const std::string& path : {output, errors}) fs::resize_file(path, 0);
        FaultAnswer answer;
        if (write(plans, &plan, sizeof plan) != sizeof plan ||
            read(answers, &answer, sizeof answer) != sizeof answer)
            std::abort();
        calls = answer.calls;
        faults = answer.faults;
        // A file under its first name stays if it is the taking away that fails.
        const bool mayStay =
            plan.calls == FaultPlan::Change && (plan.way == FaultPlan::FromThen || answer.waitStatus == 0);
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(out)) {
            const std::string name = entry.path().filename();
            if (!mayStay || !name.starts_with(".tolvane-")) files[name] = ReadWhole(entry.path());
        }
        return {answer.waitStatus, ReadWhole(output), ReadWhole(errors), std::move(files)};
    }

    /// One run, which has to stand; false if nothing went wrong in it because it has fewer calls.
    bool Stands(const FaultPlan& plan) {
        static constexpr const char* kCalls[] = {"none",  "open",   "read", "write", "seek",
                                                 "close", "change", "look", "print", "memory"};
        static constexpr const char* kWays[] = {"once", "from then on", "shorter", "interrupted"};
        const FinishedRun run = Run(plan);
        EXPECT_EQ("", Complaints(run, known)) << kCalls[plan.calls] << ", " << kWays[plan.way] << ", call "
                                              << plan.at << ", status " << run.status << '\n'
                                              << run.errors;
        EXPECT_TRUE(run.status == 0 || plan.way < FaultPlan::Shorter) << "nothing fails";
        ++count;
        return faults > 0;
    }

    std::uint32_t calls = 0, faults = 0;  ///< of the last run
    int count = 0;                        ///< of runs that had to stand

private:
    /// Starts the program in the watched directory, with its streams in files, which are emptied before a run.
    void Start() {
        std::array<int, 2> plan = {}, answer = {};
        if (pipe2(plan.data(), O_CLOEXEC) != 0 || pipe2(answer.data(), O_CLOEXEC) != 0) std::abort();
        constexpr int kStream = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
        const std::pair<int, int> ends[] = {{plan[0], kPlanDescriptor},
                                            {answer[1], kAnswerDescriptor},
                                            {open(output.c_str(), kStream, 0600), STDOUT_FILENO},
                                            {open(errors.c_str(), kStream, 0600), STDERR_FILENO}};
        std::vector<std::string> words = Arguments(scenario, in, out);
        words.insert(words.begin(), TOLVANE_MEASURE);
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const std::string watched = root.Path("data");
        program = fork();
        if (program == 0) {
            for (const auto& [end, target] : ends) dup2(end, target);
            setenv("LD_PRELOAD", TOLVANE_FAULTS, 1);
            setenv(kFaultDirectoryVariable, (watched + "/").c_str(), 1);
            if (chdir(watched.c_str()) == 0) execv(TOLVANE_MEASURE, pointers.data());
            _exit(127);
        }
        for (const auto& [end, target] : ends) close(end);
        plans = plan[1];
        answers = answer[0];
    }

    const Scenario& scenario = GetParam();
    const TemporaryDirectory root;
    const fs::path in = root.Path("data/in"), out = root.Path("data/out");
    const std::string output = root.Path("output"), errors = root.Path("errors");
    std::vector<FinishedRun> known;
    pid_t program = -1;
    int plans = -1, answers = -1;
};

TEST_P(Faults, OfEveryCallOnAFileAreTold) {
    for (const FaultPlan::Calls kind :
         {FaultPlan::Open, FaultPlan::Read, FaultPlan::Write, FaultPlan::Seek, FaultPlan::Close,
          FaultPlan::Change, FaultPlan::Look, FaultPlan::Print}) {
        for (const FaultPlan::Way way : {FaultPlan::Once, FaultPlan::FromThen}) {
            // Once a file says nothing of itself, it makes little difference from when on.
            const bool isSampled = kind == FaultPlan::Look && way == FaultPlan::FromThen && !kAll;
            FaultPlan plan = {.calls = kind, .way = way};
            while (Stands(plan)) plan.at += isSampled ? 5 : 1;
        }
    }
    std::cout << count << " runs\n";
}

TEST_P(Faults, OfMemoryAreTold) {
    Run({.calls = FaultPlan::Memory, .at = std::numeric_limits<std::uint32_t>::max()});
    const std::uint32_t blocks = calls, step = kAll ? 1 : std::max(1u, blocks / 70);
    for (const FaultPlan::Way way : {FaultPlan::Once, FaultPlan::FromThen})
        for (std::uint32_t at = 1; at <= blocks; at += step)
            Stands({.calls = FaultPlan::Memory, .way = way, .at = at});
    std::cout << count << " runs, " << blocks << " blocks of memory\n";
}

TEST_P(Faults, ShorterAndInterruptedTransfersChangeNothing) {
    for (const FaultPlan::Calls kind : {FaultPlan::Read, FaultPlan::Write})
        for (const FaultPlan::Way way : {FaultPlan::Shorter, FaultPlan::Interrupt})
            EXPECT_TRUE(Stands({.calls = kind, .way = way}));
}

INSTANTIATE_TEST_SUITE_P(On, Faults, testing::ValuesIn(kScenarios),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
