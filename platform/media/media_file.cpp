#include "platform/media/media_file.h"

#include <cstring>
#include <new>

namespace {

constexpr int kIoBufferBytes = 1 << 17;
constexpr int kMaxRetries = 1000;  // of a read that only asks to be repeated

bool IsVideo(const AVStream& stream) {
    constexpr int kStill = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && (stream.disposition & kStill) == 0;
}

int RefuseOtherFile(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EACCES);
}

}  // namespace

/// Hands the file's bytes to the container library.
struct MediaFile::ByteReader {
    explicit ByteReader(const ReadOnlyFile& source) : file(source) {
        auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferBytes));
        context = buffer == nullptr
                      ? nullptr
                      : avio_alloc_context(buffer, kIoBufferBytes, 0, this, Read, nullptr, SeekTo);
        if (context != nullptr) return;
        av_free(buffer);
        throw std::bad_alloc();
    }
    ~ByteReader() {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
    ByteReader(const ByteReader&) = delete;
    ByteReader& operator=(const ByteReader&) = delete;

    static int Read(void* self, std::uint8_t* buffer, int size) {
        auto& reader = *static_cast<ByteReader*>(self);
        const std::size_t count = reader.file.ReadAt(reader.position, buffer, static_cast<std::size_t>(size));
        reader.position += count;
        if (count > 0) return static_cast<int>(count);
        if (reader.position >= reader.file.Size()) return AVERROR_EOF;
        reader.hasFailed = true;
        return AVERROR(EIO);
    }

    static std::int64_t SeekTo(void* self, std::int64_t offset, int origin) {
        auto& reader = *static_cast<ByteReader*>(self);
        const auto size = static_cast<std::int64_t>(reader.file.Size());
        if ((origin & AVSEEK_SIZE) != 0) return size;
        const int from = origin & ~AVSEEK_FORCE;
        std::int64_t base = 0;
        if (from == SEEK_CUR) base = static_cast<std::int64_t>(reader.position);
        if (from == SEEK_END) base = size;
        if (offset < -base || offset > INT64_MAX - base) return AVERROR(EINVAL);
        reader.position = static_cast<std::uint64_t>(base + offset);
        return base + offset;
    }

    const ReadOnlyFile& file;
    std::uint64_t position = 0;
    bool hasFailed = false;  ///< the file has kept back bytes that it holds
    AVIOContext* context = nullptr;
};

void MediaFile::BitstreamFilterDeleter::operator()(AVBSFContext* filter) const {
    av_bsf_free(&filter);
}

MediaFile::MediaFile() = default;
MediaFile::~MediaFile() = default;

std::string MediaFile::Open(const std::wstring& path, Container container) {
    wanted = container;
    if (!file.Open(path)) return "the file can't be read";
    return OpenInput();
}

std::string MediaFile::OpenInput() {
    unpacking.reset();
    input.reset();
    bytes = std::make_unique<ByteReader>(file);

    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr) throw std::bad_alloc();
    context->pb = bytes->context;
    context->io_open = RefuseOtherFile;
    complaints.ListenTo(*context);
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "none", 0);
    const AVInputFormat* format = wanted == Container::Avi ? av_find_input_format("avi") : nullptr;
    // Frees the context if it fails.
    const int error = avformat_open_input(&context, nullptr, format, &options);
    av_dict_free(&options);
    if (error < 0) {
        return wanted == Container::Avi ? "the file is no AVI file"
                                        : "the file is no video file of a known kind";
    }
    input.reset(context);
    isAvi = std::strcmp(input->iformat->name, "avi") == 0;
    if (avformat_find_stream_info(input.get(), nullptr) < 0) return "the file's streams can't be read";
    complaints.Take();  // what headers lack is no damage
    return ChooseStream();
}

std::string MediaFile::ChooseStream() {
    bool hasStill = false;
    streamNumber = input->nb_streams;
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        AVStream& stream = *input->streams[i];
        hasStill = hasStill || (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !IsVideo(stream));
        const bool chosen = streamNumber == input->nb_streams && IsVideo(stream);
        if (chosen) streamNumber = i;
        stream.discard = chosen ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    if (streamNumber == input->nb_streams)
        return hasStill ? "the file has no video stream, only a cover picture"
                        : "the file has no video stream";
    // The decoder takes these for 15-bit pictures, whatever their depth and masks.
    constexpr std::uint32_t kBitFields = 3;
    const AVCodecParameters& codec = *Stream().codecpar;
    if (codec.codec_id == AV_CODEC_ID_RAWVIDEO && codec.codec_tag == kBitFields)
        return "the file's raw pictures lie under bit masks";
    if (codec.codec_id == AV_CODEC_ID_MPEG4) AddUnpacking();
    return {};
}

void MediaFile::AddUnpacking() {
    const AVBitStreamFilter* filter = av_bsf_get_by_name("mpeg4_unpack_bframes");
    AVBSFContext* context = nullptr;
    if (filter == nullptr || av_bsf_alloc(filter, &context) < 0) return;
    unpacking.reset(context);
    context->time_base_in = Stream().time_base;
    if (avcodec_parameters_copy(context->par_in, Stream().codecpar) < 0 || av_bsf_init(context) < 0)
        unpacking.reset();
}

const AVCodecParameters& MediaFile::CodecParameters() const {
    return unpacking != nullptr ? *unpacking->par_out : *Stream().codecpar;
}

bool MediaFile::ReadPacket(AVPacket& packet) {
    if (input == nullptr) return false;
    if (unpacking == nullptr) return ReadStreamPacket(packet);
    for (;;) {
        av_packet_unref(&packet);
        const int result = av_bsf_receive_packet(unpacking.get(), &packet);
        if (result != AVERROR(EAGAIN)) return result == 0;
        const bool more = ReadStreamPacket(packet);
        if (av_bsf_send_packet(unpacking.get(), more ? &packet : nullptr) < 0) return false;
    }
}

bool MediaFile::ReadStreamPacket(AVPacket& packet) {
    for (int retries = 0; retries < kMaxRetries;) {
        av_packet_unref(&packet);
        const int error = av_read_frame(input.get(), &packet);
        if (error == AVERROR(EAGAIN)) {
            ++retries;
        } else if (error == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        } else if (error < 0) {
            endsEarly = complaints.Take() || error != AVERROR_EOF;
            return false;
        } else if (packet.stream_index == static_cast<int>(streamNumber) && packet.size > 0) {
            // A packet without bytes would mean the end to a decoder.
            if (complaints.Take()) packet.flags |= AV_PKT_FLAG_CORRUPT;
            return true;
        }
    }
    return false;
}

bool MediaFile::HasReadError() const {
    return bytes != nullptr && bytes->hasFailed;
}

bool MediaFile::Seek(std::int64_t time) {
    if (input == nullptr) return false;
    if (unpacking != nullptr) av_bsf_flush(unpacking.get());
    return av_seek_frame(input.get(), static_cast<int>(streamNumber), time, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool MediaFile::Rewind() {
    // Opening anew is the one way that all containers have, with exactly the same packets.
    const bool isOpen = OpenInput().empty();
    if (!isOpen) input.reset();
    return isOpen;
}
