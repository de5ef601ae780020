#pragma once

namespace Kernels {

/// Binds the kernels to the machine's best instruction set. They do so themselves at the first call of the
/// first of them, but that call then asks the processor anew for every row: up to 20 ms in a virtual machine.
/// Any thread.
///
/// A program that g++ links with this also waits well: threads of a team that have nothing to do go to sleep
/// within a tenth of a millisecond. By themselves they would spin for up to ten, taking the processor from
/// whoever could go on with the work: beside one other busy process two threads were two to five times slower
/// than one. The variables OMP_WAIT_POLICY and GOMP_SPINCOUNT of the environment come before this; programs
/// that it starts inherit the latter.
void ChooseInstructionSet();

}  // namespace Kernels
