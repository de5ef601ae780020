#include <cstdint>
#include <vector>

#include "platform/elf_file.h"
#include "platform/file.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

bool IsWhole(const std::uint8_t* data, std::size_t size) {
    const MemoryFile input(data, size);
    ReadOnlyFile file;
    Require(file.Open(input.Path()));
    return IsWholeSharedLibrary(file);
}

}  // namespace

/// Takes the bytes for a shared library. One that is whole stays so with more behind its end, and isn't
/// without its segments.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!IsWhole(data, size)) return 0;
    constexpr std::size_t kHeader = 64;
    std::vector<std::uint8_t> longer(data, data + size);
    longer.push_back(0);
    Require(IsWhole(longer.data(), longer.size()) && !IsWhole(data, kHeader));
    return 0;
}
