#include "platform/vfw/compressor.h"
#include "platform/vfw/encoder_table.h"

namespace {

CompressorChooser installedChooser = nullptr;

}  // namespace

std::vector<CompressorEntry> ListCompressors() {
    std::vector<CompressorEntry> list = {{0, L"Uncompressed RGB", true}};
    for (const EncoderEntry& entry : EncoderTable()) {
        if (FindEncoder(entry.handler) == nullptr) continue;
        list.push_back({entry.handler, entry.description, entry.lossless});
    }
    return list;
}

bool ICCompressorChoose(COMPVARS& choice, const BITMAPINFOHEADER& format, const wchar_t* title) {
    return installedChooser != nullptr && installedChooser(choice, format, title);
}

void ICCompressorFree(COMPVARS& choice) {
    choice.hic = nullptr;
}

void SetCompressorChooser(CompressorChooser chooser) {
    installedChooser = chooser;
}
