#include "tests/fuzz/fuzz_input.h"
#include "video/avi/compressor_settings.h"

/// Takes the bytes for a stored choice of a compressor. What is read must be stored as it was read, and the
/// compressor must cope with its state.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    rkCompressorSettings settings;
    if (!settings.FromRecord({data, size})) {
        Require(settings == rkCompressorSettings());
        return 0;
    }
    const std::vector<std::uint8_t> record = settings.ToRecord();
    Require(record.size() <= size);
    rkCompressorSettings again;
    Require(again.FromRecord(record) && again == settings);

    const HIC compressor = settings.OpenCompressor();
    if (compressor) Require(!ICGetState(compressor).empty());
    Require(!settings.Description().empty());
    return 0;
}
