#include "platform/qt/elide_path.h"

#include "platform/qt/wide_text.h"
#include "platform/text.h"

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr int kLeastStart = 3;  // letters of the start that are worth showing

}  // namespace

QString ElidePath(const QString& path, const QFontMetrics& metrics, int width) {
    if (metrics.horizontalAdvance(path) <= width) return path;

    const auto nameLength = static_cast<qsizetype>(ToQString(FileNamePart(ToWide(path))).size());
    const qsizetype nameStart = path.size() - nameLength;
    if (nameStart == 0) return metrics.elidedText(path, Qt::ElideMiddle, width);

    const QString end = kEllipsis + path.sliced(nameStart - 1);  // with the separator before the name
    const int room = width - metrics.horizontalAdvance(end);
    if (room < metrics.horizontalAdvance(path.first(qMin<qsizetype>(kLeastStart, nameStart)))) {
        return metrics.elidedText(path, Qt::ElideMiddle, width);
    }
    qsizetype startLength = nameStart - 1;
    while (startLength > 0 && metrics.horizontalAdvance(path.first(startLength) + end) > width) --startLength;
    return path.first(startLength) + end;
}
