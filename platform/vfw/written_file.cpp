#include "platform/vfw/written_file.h"

#include <utility>

namespace {

class WrittenStream : public AviStream {
public:
    WrittenStream(std::shared_ptr<AviFile> file, AviWriter& writer, const AVISTREAMINFOW& info)
        : file(std::move(file)), writer(writer), info(info) {}

    const AVISTREAMINFOW& Info() const override { return info; }
    bool SetFormat(FormatView format) override {
        return writer.Start(info, {format.data, static_cast<std::size_t>(format.size)});
    }
    bool WriteSample(int position, std::span<const std::uint8_t> sample, bool isKey) override {
        const std::int64_t next = std::int64_t{info.dwStart} + writer.Samples();
        return position == next && writer.Write(sample, isKey);
    }

private:
    std::shared_ptr<AviFile> file;  // the writer is its
    AviWriter& writer;
    AVISTREAMINFOW info;
};

}  // namespace

std::shared_ptr<WrittenFile> WrittenFile::Open(const std::wstring& path) {
    auto file = std::make_shared<WrittenFile>();
    return file->writer.Open(path) ? file : nullptr;
}

std::shared_ptr<AviStream> WrittenFile::CreateStream(const std::shared_ptr<AviFile>& self,
                                                     const AVISTREAMINFOW& info) {
    if (hasStream || info.fccType != kFccVideo) return nullptr;
    if (info.dwScale == 0 || info.dwRate == 0) return nullptr;
    hasStream = true;
    return std::make_shared<WrittenStream>(self, writer, info);
}
