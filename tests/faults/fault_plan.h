#pragma once

#include <atomic>
#include <cstdint>

/// What the preloaded library lets fail, and how. The library and the tests share it; it travels as plain
/// bytes.
struct FaultPlan {
    /// Calls of one kind, which are counted together. All but `Memory` and `Print` count only on files below
    /// the watched directory, if there is one.
    enum Calls : std::uint32_t {
        None,
        Open,    ///< open, fopen
        Read,    ///< read, pread
        Write,   ///< write, pwrite, writev
        Seek,    ///< lseek
        Close,   ///< close, fclose: closed all the same
        Change,  ///< fsync, rename, ftruncate, fchmod, mkdir, unlink
        Look,    ///< stat, fstat, lstat, faccessat
        Print,   ///< fwrite and fflush of standard output
        Memory,  ///< malloc, calloc, realloc, aligned blocks; `new` is malloc. From the first watched file on.
    };
    enum Way : std::uint32_t {
        Once,       ///< call number `at` fails
        FromThen,   ///< that one and all later ones fail
        Shorter,    ///< from then on reads and writes do half of what they are asked for, one byte at least
        Interrupt,  ///< from then on every second call is interrupted by a signal
    };

    Calls calls = None;
    Way way = Once;
    std::uint32_t at = 1;          ///< counts from 1, from the start of `main`
    std::uint32_t leastBytes = 0;  ///< smaller blocks of memory don't count
    std::uint32_t patienceSeconds = 30;
};

/// What the library answers when the program has ended.
struct FaultAnswer {
    std::int32_t waitStatus = 0;  ///< of waitpid; ended by SIGALRM: it hung
    std::uint32_t calls = 0;      ///< that counted
    std::uint32_t faults = 0;     ///< how many of them failed, were shortened or interrupted
};

/// Where the library takes plans from and puts its answers: one after the other, each a run of the program
/// from `main` on in a process of its own. Loading and linking it is so done once for many runs.
constexpr int kPlanDescriptor = 197, kAnswerDescriptor = 198;

/// The directory whose files are watched, ending in `/`. Unset: all files.
constexpr const char* kFaultDirectoryVariable = "TOLVANE_FAULT_DIRECTORY";

/// Instead of plans from a descriptor one for this very process, for a debugger: calls, way and number as in
/// the enumerations, least bytes, such as "8 1 120 0".
constexpr const char* kFaultVariable = "TOLVANE_FAULT";

// -- The library's own

/// The plan of this process and what came of it.
struct FaultCounter {
    FaultPlan plan;
    std::atomic<std::uint32_t> calls = 0;
    std::atomic<std::uint32_t> faults = 0;
    std::atomic<bool> hasBegun = false;  ///< a watched file has been opened
};

/// Null where nothing is to fail: before `main`, and in the process that only starts the others.
extern std::atomic<FaultCounter*> faultCounter;

enum class Fault { None, Fails, GoesShorter };

/// Counts a call; what is planned for it. If it is to fail, `errno` is set, to `error` or to that of an
/// interruption.
Fault NextFault(FaultPlan::Calls calls, int error);
