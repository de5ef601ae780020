#pragma once

#include "tests/faults/fault_plan.h"

#include <atomic>

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
