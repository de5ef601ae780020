#include "output/picture_file.h"

#include "platform/file.h"
#include "video/sources/bmp_writer.h"
#include "video/video_image.h"

bool ReplacePicture(const std::wstring& path, rkVideoImage& picture) {
    return picture.HasPixels() && ReplaceFile(path, rkBmpFileBytes(picture));
}
