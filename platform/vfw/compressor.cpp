#include "platform/vfw/compressor.h"

#include <algorithm>
#include <new>

#include "platform/vfw/encoder_table.h"
#include "platform/vfw/video_decoder.h"
#include "platform/vfw/video_encoder.h"

namespace {

/// The result of `call`, or `failure` when memory runs out.
template <typename Result, typename Call>
Result Guarded(Result failure, const Call& call) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return failure;
    }
}

/// Calls `call` with the decoder or encoder behind a handle; `failure` if it is none.
template <typename Kind, typename Result, typename Call>
Result With(const HIC& codec, Result failure, const Call& call) {
    auto* kind = dynamic_cast<Kind*>(codec.get());
    if (kind == nullptr) return failure;
    return Guarded(failure, [&] { return call(*kind); });
}

}  // namespace

HIC ICLocate(std::uint32_t fccType, std::uint32_t handler, FormatView input, FormatView output, IcMode mode,
             const DecompressInput& firstSample) {
    if (fccType != kFccVideoCodec || mode != IcMode::Decompress) return nullptr;
    return Guarded(HIC(), [&]() -> HIC { return VideoDecoder::Locate(handler, input, output, firstSample); });
}

int ICGetInfo(const HIC& codec, ICINFO& info) {
    return With<Codec>(codec, ICERR_ERROR, [&](Codec& any) {
        info = any.GetInfo();
        return ICERR_OK;
    });
}

int ICDecompressBegin(const HIC& codec, FormatView input, FormatView output) {
    return With<VideoDecoder>(codec, ICERR_ERROR,
                              [&](VideoDecoder& decoder) { return decoder.Begin(input, output); });
}

int ICDecompressEnd(const HIC& codec) {
    return With<VideoDecoder>(codec, ICERR_ERROR, [](VideoDecoder& decoder) {
        decoder.End();
        return ICERR_OK;
    });
}

int ICDecompress(const HIC& codec, std::uint32_t flags, const DecompressInput& input, std::uint8_t* output,
                 int& sampleOfPicture) {
    return With<VideoDecoder>(codec, ICERR_ERROR, [&](VideoDecoder& decoder) {
        return decoder.Decompress(flags, input, output, sampleOfPicture);
    });
}

HIC ICOpen(std::uint32_t fccType, std::uint32_t handler, IcMode mode) {
    if (fccType != kFccVideoCodec || mode != IcMode::Compress) return nullptr;
    const EncoderEntry* entry = FindEncoder(handler);
    if (entry == nullptr) return nullptr;
    return Guarded(HIC(), [&]() -> HIC { return std::make_shared<VideoEncoder>(*entry); });
}

int ICCompressGetFormatSize(const HIC& codec, FormatView input) {
    return With<VideoEncoder>(
        codec, 0, [&](VideoEncoder& encoder) { return static_cast<int>(encoder.Format(input).size()); });
}

int ICCompressGetFormat(const HIC& codec, FormatView input, void* output) {
    return With<VideoEncoder>(codec, ICERR_ERROR, [&](VideoEncoder& encoder) {
        const std::vector<std::uint8_t> format = encoder.Format(input);
        if (format.empty() || output == nullptr) return ICERR_ERROR;
        std::copy(format.begin(), format.end(), static_cast<std::uint8_t*>(output));
        return ICERR_OK;
    });
}

int ICCompressGetSize(const HIC& codec, FormatView input) {
    return With<VideoEncoder>(codec, 0, [&](VideoEncoder& encoder) { return encoder.FrameBytes(input); });
}

int ICCompressBegin(const HIC& codec, FormatView input) {
    return With<VideoEncoder>(codec, ICERR_ERROR,
                              [&](VideoEncoder& encoder) { return encoder.Begin(input); });
}

int ICCompressEnd(const HIC& codec) {
    return With<VideoEncoder>(codec, ICERR_ERROR, [](VideoEncoder& encoder) {
        encoder.End();
        return ICERR_OK;
    });
}

std::vector<std::uint8_t> ICGetState(const HIC& codec) {
    return With<VideoEncoder>(codec, std::vector<std::uint8_t>(),
                              [](VideoEncoder& encoder) { return encoder.State(); });
}

int ICSetState(const HIC& codec, const std::vector<std::uint8_t>& state) {
    return With<VideoEncoder>(codec, ICERR_ERROR,
                              [&](VideoEncoder& encoder) { return encoder.SetState(state); });
}

int ICSetRate(const HIC& codec, const CompressRate& rate) {
    return With<VideoEncoder>(codec, ICERR_ERROR,
                              [&](VideoEncoder& encoder) { return encoder.SetRate(rate); });
}

int ICCompress(const HIC& codec, std::uint32_t wanted, const std::uint8_t* frame, int /*frameNumber*/,
               std::uint8_t* compressed, int& bytes, std::uint32_t& flags) {
    return With<VideoEncoder>(codec, ICERR_ERROR, [&](VideoEncoder& encoder) {
        return encoder.Compress(wanted, frame, compressed, bytes, flags);
    });
}
