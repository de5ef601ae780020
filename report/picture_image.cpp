#include "report/picture_image.h"

#include "video/video_image.h"

namespace Report {

QImage ImageOf(const rkVideoImage& picture) {
    const int height = picture.VisibleHeight();
    QImage image(picture.VisibleWidth(), height, QImage::Format_RGB32);
    if (image.isNull()) return image;
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* bgr = picture.Row(0, height - 1 - y);
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x, bgr += 3) pixels[x] = qRgb(bgr[2], bgr[1], bgr[0]);
    }
    return image;
}

}  // namespace Report
