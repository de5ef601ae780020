#include "video/avi/riff_file.h"

#include "platform/byte_order.h"
#include "platform/vfw/avi_format.h"

RiffFile::RiffFile(const std::wstring& name) {
    Require(file.Open(name));
    size = file.Size();
}

bool RiffFile::FindChunk(std::uint64_t offset, RiffChunk& chunk) const {
    std::array<std::uint8_t, kChunkHeaderBytes> header;
    if (file.ReadAt(offset, header.data(), header.size()) != header.size()) return false;
    chunk = {LoadLe<std::uint32_t>(&header[0]), LoadLe<std::uint32_t>(&header[4]), offset + header.size()};
    return true;
}

void RiffFile::Read(std::uint64_t offset, void* buffer, std::size_t bytes) const {
    Require(file.ReadAt(offset, buffer, bytes) == bytes);
}

std::uint32_t RiffFile::ReadWord(std::uint64_t offset) const {
    std::array<std::uint8_t, sizeof(std::uint32_t)> word;
    Read(offset, word.data(), word.size());
    return LoadLe<std::uint32_t>(word.data());
}
