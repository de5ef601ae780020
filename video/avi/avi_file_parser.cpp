#include "video/avi/avi_file_parser.h"

#include <memory>
#include <new>

#include "platform/vfw/avi_file.h"
#include "video/avi/avi_file_raw_stream.h"

rkAviFileParser::rkAviFileParser(const std::wstring& fileName) {
    try {
        failed = !OpenStreams(fileName);
    } catch (const std::bad_alloc&) {
        failed = true;
        streams.clear();
    }
}

bool rkAviFileParser::OpenStreams(const std::wstring& fileName) {
    constexpr unsigned kReading = 0;
    std::shared_ptr<AviFile> file;
    AVIFILEINFOW info = {};
    if (AVIFileOpenW(file, fileName, kReading) != 0 || ScriptClipError(*file, nullptr) != 0 ||
        AVIFileInfoW(*file, info) != 0)
        return false;

    for (std::uint32_t i = 0; i < info.dwStreams; ++i) {
        std::shared_ptr<AviStream> stream;
        const bool found = AVIFileGetStream(file, stream, static_cast<int>(i)) == 0;
        streams.push_back(found ? std::make_unique<rkAviFileRawStream>(stream) : nullptr);
    }
    return true;
}
