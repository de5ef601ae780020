// Starts the program's `main` again and again, each time in a child process with a plan of its own.

#include "tests/faults/fault_plan.h"

#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

std::atomic<FaultCounter*> faultCounter = nullptr;

Fault NextFault(FaultPlan::Calls calls, int error) {
    FaultCounter* const counter = faultCounter;
    if (counter == nullptr || counter->plan.calls != calls) return Fault::None;
    const std::uint32_t number = ++counter->calls;
    const FaultPlan& plan = counter->plan;
    const bool isPast = plan.way == FaultPlan::Once ? number == plan.at : number >= plan.at;
    if (!isPast || (plan.way == FaultPlan::Interrupt && number % 2 == 0)) return Fault::None;
    ++counter->faults;
    if (plan.way == FaultPlan::Shorter) return Fault::GoesShorter;
    errno = plan.way == FaultPlan::Interrupt ? EINTR : error;
    return Fault::Fails;
}

namespace {

using Main = int (*)(int, char**, char**);
Main programMain = nullptr;

/// In memory that a process shares with those that it starts.
FaultCounter* NewCounter() {
    void* const memory =
        mmap(nullptr, sizeof(FaultCounter), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) std::abort();
    return new (memory) FaultCounter;
}

/// Answers plans until there are no more. True in each child, which is to run the program.
bool Serve() {
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    FaultCounter* const counter = NewCounter();
    FaultPlan plan;
    while (read(kPlanDescriptor, &plan, sizeof plan) == sizeof plan) {
        counter->plan = plan;
        counter->calls = counter->faults = 0;
        counter->hasBegun = false;
        const pid_t child = fork();
        if (child < 0) std::abort();
        if (child == 0) {
            close(kPlanDescriptor);
            close(kAnswerDescriptor);
            alarm(plan.patienceSeconds);
            faultCounter = counter;
            return true;
        }
        FaultAnswer answer;
        if (waitpid(child, &answer.waitStatus, 0) != child) std::abort();
        answer.calls = counter->calls;
        answer.faults = counter->faults;
        if (write(kAnswerDescriptor, &answer, sizeof answer) != sizeof answer) break;
    }
    return false;
}

void TakePlanFrom(const char* text) {
    FaultCounter* const counter = NewCounter();
    FaultPlan& plan = counter->plan;
    unsigned calls = 0, way = 0;
    if (std::sscanf(text, "%u %u %u %u", &calls, &way, &plan.at, &plan.leastBytes) < 3) std::abort();
    plan.calls = static_cast<FaultPlan::Calls>(calls);
    plan.way = static_cast<FaultPlan::Way>(way);
    faultCounter = counter;
}

int FaultyMain(int argc, char** argv, char** environment) {
    unsetenv("LD_PRELOAD");  // this process alone is meant
    if (const char* const text = std::getenv(kFaultVariable)) {
        TakePlanFrom(text);
    } else if (!Serve()) {
        _exit(0);
    }
    return programMain(argc, argv, environment);
}

}  // namespace

// What the program's entry point calls, ahead of the C library's own.
extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(),
                                 void (*linkerFini)(), void* stackEnd) {
    const auto real = reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    programMain = main;
    return real(FaultyMain, argc, argv, init, fini, linkerFini, stackEnd);
}
