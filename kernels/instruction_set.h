#pragma once

namespace Kernels {

/// Binds the kernels to the machine's best instruction set. They do so themselves at the first call of the first
/// of them, but that call then asks the processor anew for every row: up to 20 ms in a virtual machine.
/// Any thread.
void ChooseInstructionSet();

}  // namespace Kernels
