#include "app/rules/compressor_form.h"

#include <algorithm>

namespace {

constexpr int kQualityStep = 100;   // of `COMPVARS::lQ`
constexpr int kUsualQuality = 75;   // of the encoders, see `ICSetRate`
constexpr int kQualityUnsaid = -1;  // in `COMPVARS::lQ`

const CompressorEntry& Selected(const CompressorForm& form) {
    return form.codecs[static_cast<std::size_t>(form.codec)];
}

}  // namespace

std::wstring CompressorForm::WhyQualityDisabled() const {
    return Selected(*this).lossless ? L"Needs a lossy compressor; this one keeps every value" : L"";
}

CompressorForm CompressorFormFrom(const COMPVARS& choice) {
    CompressorForm form;
    form.codecs = ListCompressors();
    const auto chosen =
        std::find_if(form.codecs.begin(), form.codecs.end(),
                     [&](const CompressorEntry& entry) { return entry.handler == choice.fccHandler; });
    if (chosen != form.codecs.end()) form.codec = static_cast<int>(chosen - form.codecs.begin());
    form.quality = choice.lQ < 0 ? kUsualQuality : std::min(choice.lQ / kQualityStep, kBestQuality);
    return form;
}

void StoreForm(const CompressorForm& form, COMPVARS& choice) {
    const std::uint32_t handler = Selected(form).handler;
    const bool isSame = handler == choice.fccHandler;
    if (isSame && form.quality == CompressorFormFrom(choice).quality) return;

    HIC codec = isSame ? choice.hic : ICOpen(kFccVideoCodec, handler, IcMode::Compress);
    const bool goesByQuality = form.WhyQualityDisabled().empty();
    choice = {.fccType = handler == 0 ? 0 : kFccVideoCodec,
              .fccHandler = handler,
              .lQ = goesByQuality ? form.quality * kQualityStep : kQualityUnsaid,
              .hic = std::move(codec)};
}

std::wstring FourLetters(std::uint32_t code) {
    std::wstring letters;
    for (; code != 0; code >>= 8) {
        const auto letter = static_cast<wchar_t>(code & 0xFF);
        letters += letter > L' ' && letter < 0x7F ? letter : L'.';
    }
    return letters;
}
