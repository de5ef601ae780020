#include "tests/faults/faulty_program.h"

#include "tests/temporary_directory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

/// A pipe whose ends no other program inherits.
std::array<int, 2> MakePipe() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
    return ends;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> Environment(const std::string& watched) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) variables.push_back(*variable);
    variables.push_back("LD_PRELOAD=" TOLVANE_FAULTS);
    variables.push_back(std::string(kFaultDirectoryVariable) + "=" + watched + "/");
    return variables;
}

/// Lets a stream of the program go to a file, which can be emptied while the program has it.
void AddStream(posix_spawn_file_actions_t& actions, int descriptor, const std::string& path) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
    posix_spawn_file_actions_addopen(&actions, descriptor, path.c_str(), kFlags, 0600);
}

}  // namespace

FaultyProgram::FaultyProgram(const std::vector<std::string>& arguments, const std::string& directory,
                             const std::string& watched)
    : outputPath(directory + "/output"), errorsPath(directory + "/errors") {
    const std::array<int, 2> planPipe = MakePipe(), answerPipe = MakePipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    AddStream(actions, STDOUT_FILENO, outputPath);
    AddStream(actions, STDERR_FILENO, errorsPath);
    posix_spawn_file_actions_adddup2(&actions, planPipe[0], kPlanDescriptor);
    posix_spawn_file_actions_adddup2(&actions, answerPipe[1], kAnswerDescriptor);
    posix_spawn_file_actions_addchdir_np(&actions, watched.c_str());

    std::vector<std::string> words = {TOLVANE_MEASURE};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = Environment(watched);
    if (posix_spawn(&process, TOLVANE_MEASURE, &actions, nullptr, Pointers(words).data(),
                    Pointers(variables).data()) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&actions);
    close(planPipe[0]);
    close(answerPipe[1]);
    plans = planPipe[1];
    answers = answerPipe[0];
}

FaultyProgram::~FaultyProgram() {
    close(plans);
    close(answers);
    int status = 0;
    waitpid(process, &status, 0);
    EXPECT_EQ(0, status) << "the library of faults itself failed";
}

FaultyRun FaultyProgram::Run(const FaultPlan& plan) {
    for (const std::string& path : {outputPath, errorsPath}) std::filesystem::resize_file(path, 0);
    FaultAnswer answer;
    if (write(plans, &plan, sizeof plan) != sizeof plan ||
        read(answers, &answer, sizeof answer) != sizeof answer)
        std::abort();
    const int status = answer.waitStatus;
    return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            .hung = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM,
            .output = ReadWhole(outputPath),
            .errors = ReadWhole(errorsPath),
            .calls = answer.calls,
            .faults = answer.faults};
}
