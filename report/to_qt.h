#pragma once

#include "platform/qt/wide_text.h"
#include "report/rules/picture_view.h"
#include "report/rules/report_text.h"

#include <QRect>
#include <QString>

namespace Report {

/// "First processed".
inline QString FileLabel(int file) {
    return ToQString(kFileNames.at(static_cast<std::size_t>(file)));
}

inline QRect ToQRect(const PixelRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

}  // namespace Report
