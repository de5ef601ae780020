#pragma once

#include <QImage>

class rkVideoImage;

namespace Report {

/// A bottom-up `RGB24` picture as windows paint it fastest. Null without pixels. Any thread.
QImage ImageOf(const rkVideoImage& picture);

}  // namespace Report
