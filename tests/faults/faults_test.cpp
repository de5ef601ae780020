#include "tests/faults/finished_run.h"
#include "tests/faults/scenario.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <memory>

namespace {

namespace fs = std::filesystem;

/// A scenario's files and the runs on them.
class FaultyRuns {
public:
    explicit FaultyRuns(const Scenario& chosen) : scenario(chosen) {
        for (const fs::path& directory : {in, out, fs::path(root.Path("streams"))})
            fs::create_directories(directory);
        program = std::make_unique<FaultyProgram>(Arguments(scenario, in, out), root.Path("streams"),
                                                  root.Path("data"));
        for (int frames = scenario.Frames(); frames >= 0; --frames)
            for (int masked = frames; masked >= (scenario.hasMask ? 0 : frames); --masked) {
                WriteInputs(scenario, in, frames, masked);
                known.Add(Run({}));
            }
        WriteInputs(scenario, in, scenario.Frames(), scenario.Frames());
    }

    FinishedRun Run(const FaultPlan& plan) {
        fs::remove_all(out);
        fs::create_directories(out);
        for (const char* name : {"values.csv", "results.json"}) std::ofstream(out / name) << kOldContent;
        const FaultyRun run = program->Run(plan);
        std::map<std::string, std::string> files;
        // A file under its first name stays if it is the taking away that fails.
        const bool mayStay =
            plan.calls == FaultPlan::Change && (plan.way == FaultPlan::FromThen || run.status == 0);
        for (const auto& entry : fs::directory_iterator(out)) {
            const std::string name = entry.path().filename();
            if (!mayStay || !name.starts_with(".tolvane-")) files[name] = ReadWhole(entry.path());
        }
        return {run, std::move(files)};
    }

    const KnownRuns& Known() const { return known; }

private:
    const Scenario& scenario;
    const TemporaryDirectory root;
    const fs::path in = root.Path("data/in"), out = root.Path("data/out");
    std::unique_ptr<FaultyProgram> program;
    KnownRuns known;
};

std::string Text(const FaultPlan& plan) {
    static constexpr const char* kCalls[] = {"none",  "open",   "read", "write", "seek",
                                             "close", "change", "look", "print", "memory"};
    static constexpr const char* kWays[] = {"once", "from then on", "shorter", "interrupted"};
    return std::string(kCalls[plan.calls]) + ", " + kWays[plan.way] + ", call " + std::to_string(plan.at);
}

/// Whether every call is to fail, also where that takes minutes.
bool WantsAll() {
    return std::getenv("TOLVANE_FAULTS_ALL") != nullptr;
}

class Faults : public testing::TestWithParam<Scenario> {
protected:
    void SetUp() override {
        ASSERT_EQ(0, runs.Known().Whole().run.status) << runs.Known().Whole().run.errors;
    }

    /// One run; false if nothing went wrong in it because it has fewer calls.
    bool Stands(const FaultPlan& plan) {
        const FinishedRun run = runs.Run(plan);
        ++count;
        const std::string complaints = runs.Known().Complaints(run);
        if (!complaints.empty())
            ADD_FAILURE() << Text(plan) << ", status " << run.run.status << '\n'
                          << complaints << run.run.errors;
        return run.run.faults > 0;
    }

    FaultyRuns runs{GetParam()};
    int count = 0;
};

TEST_P(Faults, OfEveryCallOnAFileAreTold) {
    for (const FaultPlan::Calls calls :
         {FaultPlan::Open, FaultPlan::Read, FaultPlan::Write, FaultPlan::Seek, FaultPlan::Close,
          FaultPlan::Change, FaultPlan::Look, FaultPlan::Print}) {
        for (const FaultPlan::Way way : {FaultPlan::Once, FaultPlan::FromThen}) {
            // Once a file says nothing of itself, it makes little difference from when on.
            const bool isSampled = calls == FaultPlan::Look && way == FaultPlan::FromThen && !WantsAll();
            FaultPlan plan = {.calls = calls, .way = way};
            while (Stands(plan)) plan.at += isSampled ? 5 : 1;
        }
    }
    std::cout << count << " runs\n";
}

TEST_P(Faults, OfMemoryAreTold) {
    const std::uint32_t calls =
        runs.Run({.calls = FaultPlan::Memory, .at = std::numeric_limits<std::uint32_t>::max()}).run.calls;
    const std::uint32_t step = WantsAll() ? 1 : std::max(1u, calls / 70);
    for (const FaultPlan::Way way : {FaultPlan::Once, FaultPlan::FromThen})
        for (std::uint32_t at = 1; at <= calls; at += step)
            Stands({.calls = FaultPlan::Memory, .way = way, .at = at});
    std::cout << count << " runs, " << calls << " blocks of memory\n";
}

TEST_P(Faults, ShorterAndInterruptedTransfersChangeNothing) {
    for (const FaultPlan::Calls calls : {FaultPlan::Read, FaultPlan::Write}) {
        for (const FaultPlan::Way way : {FaultPlan::Shorter, FaultPlan::Interrupt}) {
            const FinishedRun run = runs.Run({.calls = calls, .way = way});
            EXPECT_LT(0u, run.run.faults);
            EXPECT_EQ(0, run.run.status) << run.run.errors;
            EXPECT_EQ("", runs.Known().Complaints(run)) << Text({.calls = calls, .way = way});
        }
    }
}

std::string Name(const testing::TestParamInfo<Scenario>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(On, Faults, testing::ValuesIn(kScenarios), Name);

}  // namespace
