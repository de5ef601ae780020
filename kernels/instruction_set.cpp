#include "kernels/instruction_set.h"

#include <hwy/targets.h>

namespace Kernels {

void ChooseInstructionSet() {
    hwy::ChosenTarget& chosen = hwy::GetChosenTarget();
    if (!chosen.IsInitialized()) chosen.Update(hwy::SupportedTargets());
}

}  // namespace Kernels
