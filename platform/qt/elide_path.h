#pragma once

#include <QFontMetrics>
#include <QString>

/// `path`, shortened in the middle until it is at most `width` pixels wide. The start stays and, as long as
/// some of the start fits beside it, the whole file name.
QString ElidePath(const QString& path, const QFontMetrics& metrics, int width);
