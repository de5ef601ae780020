#include "video/avi/avi_records.h"

#include "platform/byte_order.h"

namespace {

constexpr auto Load16 = LoadLe<std::uint16_t>;
constexpr auto Load32 = LoadLe<std::uint32_t>;

}  // namespace

AviMainHeader::AviMainHeader(const AviRecord<kMainHeaderBytes>& record)
    : totalFrames(Load32(&record[16])), streams(Load32(&record[24])) {}

AviStreamHeader::AviStreamHeader(const AviRecord<kStreamHeaderBytes>& record)
    : type(Load32(&record[0])),
      handler(Load32(&record[4])),
      flags(Load32(&record[8])),
      priority(Load16(&record[12])),
      language(Load16(&record[14])),
      initialFrames(Load32(&record[16])),
      scale(Load32(&record[20])),
      rate(Load32(&record[24])),
      start(Load32(&record[28])),
      length(Load32(&record[32])),
      suggestedBufferSize(Load32(&record[36])),
      quality(Load32(&record[40])),
      sampleSize(Load32(&record[44])),
      left(static_cast<std::int16_t>(Load16(&record[48]))),
      top(static_cast<std::int16_t>(Load16(&record[50]))),
      right(static_cast<std::int16_t>(Load16(&record[52]))),
      bottom(static_cast<std::int16_t>(Load16(&record[54]))) {}

AviIndexHead::AviIndexHead(const AviRecord<kIndexHeadBytes>& record)
    : wordsPerEntry(Load16(&record[0])),
      type(record[3]),
      entries(Load32(&record[4])),
      baseOffset(LoadLe<std::uint64_t>(&record[12])) {}
