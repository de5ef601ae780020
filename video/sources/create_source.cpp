#include "video/sources/create_source.h"

#include "video/file_kind.h"
#include "video/sources/avi_source.h"
#include "video/sources/bmp_source.h"
#include "video/sources/y4m_source.h"
#include "video/sources/yuv_source.h"

namespace {

template <class Source, class... Arguments>
std::unique_ptr<rkIVideoSource> OpenSource(const Arguments&... arguments) {
    auto source = std::make_unique<Source>();
    if (source->Open(arguments...) != Source::NoError) return nullptr;
    return source;
}

}  // namespace

std::unique_ptr<rkIVideoSource> rkCreateYuvSource(const std::wstring& fileName, int width, int height,
                                                  int colorSpace) {
    return OpenSource<rkYuvSource>(fileName, colorSpace, width, height);
}

std::unique_ptr<rkIVideoSource> rkCreateVideoSource(const std::wstring& fileName, bool preferPlanar) {
    const bool isScript = rkIsAvsName(fileName);
    if (isScript || rkIsAviName(fileName)) return OpenSource<rkAviSource>(fileName, preferPlanar, isScript);
    if (rkIsBmpName(fileName)) return OpenSource<rkBmpSource>(fileName);
    if (rkIsY4mName(fileName)) return OpenSource<rkY4mSource>(fileName);
    return nullptr;
}
