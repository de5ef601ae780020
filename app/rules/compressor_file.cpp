#include "app/rules/compressor_file.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "output/output_path.h"
#include "platform/file.h"

namespace {

constexpr const wchar_t* kFileName = L"codec_config";

/// Compressors keep some hundred bytes; a file that somebody put there may have any size.
constexpr std::uint64_t kMaxBytes = 1 << 20;

}  // namespace

bool LoadCompressorFile(const std::wstring& directory, rkCompressorSettings& settings) {
    ReadOnlyFile file;
    if (!file.Open(directory + kFileName)) return false;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(file.Size(), kMaxBytes)));
    bytes.resize(file.ReadAt(0, bytes.data(), bytes.size()));
    return settings.FromRecord(bytes);
}

bool SaveCompressorFile(const std::wstring& directory, const rkCompressorSettings& settings) {
    std::wstring place = directory;
    PrepareOutputDirectory(place);
    const std::vector<std::uint8_t> record = settings.ToRecord();
    return ReplaceFile(place + kFileName,
                       std::string_view(reinterpret_cast<const char*>(record.data()), record.size()));
}
