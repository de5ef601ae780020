#include "video/avi/compressor_settings.h"

#include <algorithm>
#include <limits>

#include "platform/byte_order.h"
#include "platform/text.h"

namespace {

// Offsets in the record.
constexpr std::size_t kSizeAt = 0;
constexpr std::size_t kTypeAt = 4;
constexpr std::size_t kHandlerAt = 8;
constexpr std::size_t kQualityAt = 12;
constexpr std::size_t kDataRateAt = 16;
constexpr std::size_t kStateSizeAt = 20;
constexpr std::size_t kStateAt = 24;

constexpr std::size_t kSizeFieldBytes = 4;  // which the size doesn't count

std::int32_t LoadInt(std::span<const std::uint8_t> record, std::size_t at) {
    return static_cast<std::int32_t>(LoadLe<std::uint32_t>(&record[at]));
}

}  // namespace

std::vector<std::uint8_t> rkCompressorSettings::ToRecord() const {
    std::vector<std::uint8_t> record(kStateAt + state.size());
    StoreLe(static_cast<std::uint32_t>(record.size() - kSizeFieldBytes), &record[kSizeAt]);
    StoreLe(fccType, &record[kTypeAt]);
    StoreLe(fccHandler, &record[kHandlerAt]);
    StoreLe(static_cast<std::uint32_t>(quality), &record[kQualityAt]);
    StoreLe(static_cast<std::uint32_t>(dataRate), &record[kDataRateAt]);
    StoreLe(static_cast<std::uint32_t>(state.size()), &record[kStateSizeAt]);
    std::copy(state.begin(), state.end(), record.begin() + kStateAt);
    return record;
}

bool rkCompressorSettings::FromRecord(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kStateAt) return false;
    const std::size_t recordBytes = std::size_t{LoadLe<std::uint32_t>(&bytes[kSizeAt])} + kSizeFieldBytes;
    if (recordBytes < kStateAt || recordBytes > bytes.size()) return false;

    const auto stateBytes = static_cast<std::size_t>(std::max(LoadInt(bytes, kStateSizeAt), 0));
    if (stateBytes > recordBytes - kStateAt) return false;

    const auto stored = bytes.subspan(kStateAt, stateBytes);
    state.assign(stored.begin(), stored.end());
    fccType = LoadLe<std::uint32_t>(&bytes[kTypeAt]);
    fccHandler = LoadLe<std::uint32_t>(&bytes[kHandlerAt]);
    quality = LoadInt(bytes, kQualityAt);
    dataRate = LoadInt(bytes, kDataRateAt);
    return true;
}

bool rkCompressorSettings::Choose(const BITMAPINFOHEADER& format) {
    COMPVARS choice = {fccType,  fccHandler, quality,
                       dataRate, 0,          OpenCompressor()};  // what is shown at first
    const bool chosen = ICCompressorChoose(choice, format, L"Choose compressor:");
    if (chosen) {
        fccType = choice.fccType;
        fccHandler = choice.fccHandler;
        quality = choice.lQ;
        dataRate = choice.lDataRate;
        state = choice.hic ? ICGetState(choice.hic) : std::vector<std::uint8_t>();
    }
    ICCompressorFree(choice);
    return chosen;
}

HIC rkCompressorSettings::OpenCompressor() const {
    HIC compressor = ICOpen(fccType, fccHandler, IcMode::Compress);
    // A compressor that refuses the state of another version works with its defaults.
    if (compressor && !state.empty()) ICSetState(compressor, state);
    return compressor;
}

std::wstring rkCompressorSettings::Description() const {
    const HIC compressor = OpenCompressor();
    ICINFO info;
    if (!compressor || ICGetInfo(compressor, info) != ICERR_OK) return L"Uncompressed RGB";
    return info.szDescription;
}

void rkCompressorSettings::Describe(wchar_t* buffer, int size) const {
    CopyText(Description(), buffer, size);
}
