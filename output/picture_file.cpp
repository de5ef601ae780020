#include "output/picture_file.h"

#include <filesystem>
#include <system_error>

#include "platform/text.h"
#include "video/avi/video_file.h"
#include "video/video_image.h"

bool ReplacePicture(const std::wstring& path, rkVideoImage& picture) {
    const std::wstring part = path + L".part.bmp";
    rkVideoFile video;
    const bool written = video.OpenWriter(part, picture.VisibleWidth(), picture.VisibleHeight()) &&
                         video.WriteImage(picture) && video.CloseWriter();
    std::error_code error;
    if (written) std::filesystem::rename(ToUtf8(part), ToUtf8(path), error);
    if (written && !error) return true;
    std::filesystem::remove(ToUtf8(part), error);
    return false;
}
