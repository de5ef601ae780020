#include "kernels/machine.h"

#include <hwy/targets.h>

#include <cstdlib>

namespace {

/// The runtime of the teams reads its settings when it is initialised, which the library being a part of the
/// program (see CMakeLists.txt) is after this: functions with a priority come first.
[[gnu::constructor(101)]] void SpinBriefly() {
    if (std::getenv("OMP_WAIT_POLICY") == nullptr) setenv("GOMP_SPINCOUNT", "2000", 0);
}

}  // namespace

namespace Kernels {

void ChooseInstructionSet() {
    hwy::ChosenTarget& chosen = hwy::GetChosenTarget();
    if (!chosen.IsInitialized()) chosen.Update(hwy::SupportedTargets());
}

}  // namespace Kernels
