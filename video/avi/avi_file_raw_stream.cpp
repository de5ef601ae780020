#include "video/avi/avi_file_raw_stream.h"

#include <utility>

rkAviFileRawStream::rkAviFileRawStream(std::shared_ptr<AviStream> aviStream) : stream(std::move(aviStream)) {
    if (AVIStreamInfoW(*stream, info) != 0) info = {};
    kind = rkStreamContainer::KindOf(info.fccType);
}

bool rkAviFileRawStream::ReadSample(int sample, std::uint8_t* buffer, int bufferSize, int* actualBytes) {
    *actualBytes = 0;
    // The interface answers a question for the size with success.
    return AVIStreamRead(*stream, sample, buffer, bufferSize, *actualBytes) == 0 &&
           *actualBytes <= bufferSize;
}

bool rkAviFileRawStream::GetStreamInfo(AVISTREAMINFOW* streamInfo) {
    *streamInfo = info;
    return true;
}

bool rkAviFileRawStream::IsKeyFrame(int sample) {
    return AVIStreamFindSample(*stream, sample, FIND_KEY | FIND_PREV) == sample;
}

int rkAviFileRawStream::GetFormatSize() {
    int size = 0;
    return AVIStreamReadFormat(*stream, 0, nullptr, size) == 0 ? size : 0;
}

bool rkAviFileRawStream::GetFormat(std::uint8_t* buffer, int size) {
    return AVIStreamReadFormat(*stream, 0, buffer, size) == 0;
}
