#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

namespace Kernels {

/// Calls test() once for each instruction set that was compiled and that this machine has, with the vector
/// code bound to it. Afterwards the best one is bound again.
template <class Test>
void ForEachTarget(const Test& test) {
    const auto bind = [](auto targets) {
        hwy::SetSupportedTargetsForTest(targets);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    };
    for (const auto target : hwy::SupportedAndGeneratedTargets()) {
        SCOPED_TRACE(hwy::TargetName(target));
        bind(target);
        test();
    }
    bind(decltype(hwy::SupportedTargets()){0});
}

/// The same with parallel loops on teams of 1, 2 and 8 threads for each instruction set.
template <class Test>
void ForEachTargetAndTeam(const Test& test) {
    const int before = omp_get_max_threads();
    for (const int threads : {1, 2, 8}) {
        SCOPED_TRACE(threads);
        omp_set_num_threads(threads);
        ForEachTarget(test);
    }
    omp_set_num_threads(before);
}

}  // namespace Kernels
