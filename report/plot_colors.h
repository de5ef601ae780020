#pragma once

#include <QColor>

namespace Report {

/// Plots are white in every theme: what is copied from them goes into documents.
inline const QColor kPlotGround(255, 255, 255);
inline const QColor kBandColor(50, 0, 50);
inline const QColor kBadFrameMarkColor(200, 50, 50);
inline const QColor kStampColor(220, 220, 220);
inline const QColor kHaloColor(255, 255, 255);
inline const QColor kPlotTextColor(40, 40, 40);
inline const QColor kQuietPlotTextColor(105, 111, 118);
inline const QColor kAxisColor(120, 120, 120);
inline const QColor kGridColor(205, 208, 212);
inline const QColor kCursorColor(20, 20, 20);

inline QColor CurveColor(int file) {
    switch (file) {
        case 0:
            return QColor(0, 100, 0);
        case 1:
            return QColor(200, 0, 0);
        case 2:
            return QColor(0, 0, 200);
        default:
            return QColor(127, 127, 127);
    }
}

}  // namespace Report
