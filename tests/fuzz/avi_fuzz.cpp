#include <algorithm>
#include <vector>

#include "tests/fuzz/fuzz_input.h"
#include "video/avi/avi_opendml_parser.h"

namespace {

constexpr int kSamples = 20;
constexpr int kStreams = 100;  // more have no number in a chunk's type
constexpr std::size_t kEntryBytes = 8;

void ReadSample(rkIRawDataStream& stream, int number, std::size_t fileSize) {
    int asked = -1, read = -1;
    Require(!stream.ReadSample(number, nullptr, 0, &asked) || asked == 0);
    Require(asked >= 0 && static_cast<std::size_t>(asked) <= fileSize);
    std::vector<std::uint8_t> sample(static_cast<std::size_t>(asked));
    stream.ReadSample(number, sample.data(), asked, &read);
    Require(read == asked);
    if (asked > 0) Require(!stream.ReadSample(number, sample.data(), asked - 1, &read) && read == asked);
}

/// The stream's number of samples.
std::size_t ReadStream(rkIRawDataStream& stream, std::size_t fileSize) {
    const int length = stream.GetLength(), start = stream.GetStart();
    Require(length >= 0 && start >= 0 && stream.GetEnd() == start + length - 1);
    for (int i = 0; i < std::min(length, kSamples); ++i) {
        ReadSample(stream, start + i, fileSize);
        ReadSample(stream, stream.GetEnd() - i, fileSize);
        stream.IsKeyFrame(i);
    }
    std::vector<std::uint8_t> format(static_cast<std::size_t>(stream.GetFormatSize()));
    Require(stream.GetFormat(format.data(), stream.GetFormatSize()) == !format.empty());
    return static_cast<std::size_t>(length);
}

}  // namespace

/// Opens the bytes as an AVI file. The streams must have no more than the file can hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    const rkAviOpenDMLParser parser(file.Path());
    std::size_t samples = 0;
    for (const auto kind : {rkStreamContainer::Video, rkStreamContainer::Audio}) {
        for (int i = 0; rkIRawDataStream* stream = parser.GetStream(i, kind); ++i) {
            Require(!parser.Failed() && i < kStreams);
            samples += ReadStream(*stream, size);
        }
    }
    Require(samples <= size / kEntryBytes);
    return 0;
}
