#include "video/sources/create_source.h"

#include "video/file_kind.h"
#include "video/sources/y4m_source.h"
#include "video/sources/yuv_source.h"

std::unique_ptr<rkIVideoSource> rkCreateYuvSource(const std::wstring& fileName, int width, int height,
                                                  int colorSpace) {
    auto source = std::make_unique<rkYuvSource>();
    if (source->Open(fileName, colorSpace, width, height) != rkYuvSource::NoError) return nullptr;
    return source;
}

std::unique_ptr<rkIVideoSource> rkCreateVideoSource(const std::wstring& fileName, bool /*preferPlanar*/) {
    if (!rkIsY4mName(fileName)) return nullptr;
    auto source = std::make_unique<rkY4mSource>();
    if (source->Open(fileName) != rkY4mSource::NoError) return nullptr;
    return source;
}
