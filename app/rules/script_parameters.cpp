#include "app/rules/script_parameters.h"

#include "video/color_space.h"
#include "video/file_kind.h"

namespace {

const wchar_t* RawSourceFormat(int colorSpace) {
    switch (colorSpace) {
        case YV12:
            return L"YV12";
        case IYUV:
            return L"I420";
        case Y:
            return L"Y8";
        case UYVY:
            return L"UYVY";
        case YUY2:
            return L"YUYV";
        case VYUY:
            return L"VYUY";
        case YVYU:
            return L"YVYU";
        default:
            return L"unknown format";
    }
}

int FilterByName(const std::wstring& name) {
    if (rkIsRawName(name)) return FilterRawSource;
    if (rkIsAviName(name)) return FilterAviSource;
    if (rkIsMovName(name)) return FilterQtSource;
    return FilterDirectShowSource2;
}

}  // namespace

std::wstring DefaultParameters(const FileRecord& record, int filter) {
    switch (filter) {
        case FilterAviSource:
        case FilterOpenDmlSource:
        case FilterAviFileSource:
        case FilterDirectShowSource:
            return L"audio = false, pixel_type = \"RGB24\"";
        case FilterQtSource:
            return L"color = 2, quality = 100, audio = false, mode = 0";
        case FilterRawSource:
            return std::to_wstring(record.width) + L", " + std::to_wstring(record.height) + L", \"" +
                   RawSourceFormat(record.yuvType) + L"\"";
        default:
            return {};
    }
}

void TakeRawParameters(FileRecord& record) {
    if (!record.customParameters) record.parameters = DefaultParameters(record, FilterRawSource);
}

void TakeFilterByName(FileRecord& record) {
    if (!rkIsRawName(record.name)) record.width = record.height = record.yuvType = 0;
    record.filter = FilterByName(record.name);
    record.parameters = DefaultParameters(record, record.filter);
}
