#include "platform/text.h"
#include "tests/fuzz/fuzz_input.h"
#include "update/update_list.h"
#include "update/version.h"

#include <cstdint>
#include <filesystem>
#include <set>

/// Takes the bytes for the list of an update, and for a version. Every name of a list that is taken must stay
/// in the directory, and the sizes must be what they say.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ParseVersion(text);
    const auto list = ParseUpdateList(text);
    if (!list) return 0;

    const std::filesystem::path root = "/program";
    std::set<std::filesystem::path> targets;
    std::uint64_t sum = 0;
    for (const UpdateEntry& entry : list->entries) {
        const std::string name = ToUtf8(entry.name);
        Require(!name.empty() && name.find_first_of(std::string_view("\0\\:\r\n", 5)) == std::string::npos);
        const std::filesystem::path target = (root / name).lexically_normal();
        Require(target.native() == root.native() + "/" + name);
        Require(targets.insert(target).second);
        Require(entry.serverName.size() == entry.name.size());
        sum += entry.size;
    }
    Require(!targets.empty() && sum == list->totalSize);
    for (const auto& target : targets) Require(!targets.contains(target.parent_path()));
    return 0;
}
