#include "tests/cli/program.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

ProgramRun RunProgram(const std::string& arguments) {
    const TemporaryDirectory streams;
    const std::string command =
        TOLVANE_MEASURE " >" + streams.Path("output") + " 2>" + streams.Path("errors") + " " + arguments;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            ReadWhole(streams.Path("output")), ReadWhole(streams.Path("errors"))};
}

nlohmann::json Measured(const std::string& arguments, int status) {
    const ProgramRun run = RunProgram(arguments + " -q --json -");
    EXPECT_EQ(status, run.status) << run.errors;
    return nlohmann::json::parse(run.output);
}
