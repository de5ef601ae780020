#include "output/caption.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/text.h"

namespace {

constexpr Metric::Bgr kRed = {0, 0, 255};
constexpr Metric::Bgr kLightGrey = {0xDC, 0xDC, 0xDC};
constexpr Metric::Bgr kDarkGrey = {0x28, 0x28, 0x28};

constexpr int kMargin = 15;
constexpr int kColumnWidth = 150;  // of a caption on the right
constexpr int kProgramX = 40;      // of the program's name, from its maker's
constexpr int kFilesY = 20;        // of a value's lines, from the line before them
constexpr int kValueY = 35;
constexpr int kGap = 3;  // between two texts of a line
constexpr int kDigits = 6;

enum Position : int { TopLeft = 0, BottomLeft = 1, TopRight = 2, BottomRight = 3 };

struct Point {
    int x, y;
};

Point StartOf(int width, int height, const CaptionSettings& settings, int values) {
    const int bottom = height - 30 - (settings.drawFrameNumber ? TextRaster::kLineHeight : 0) -
                       (settings.drawMetricValue ? kValueY * values : 0);
    switch (settings.position) {
        case TopLeft:
            return {kMargin, kMargin};
        case BottomLeft:
            return {kMargin, std::max(bottom, 0)};
        case TopRight:
            return {std::max(width - kColumnWidth, 0), kMargin};
        case BottomRight:
            return {std::max(width - kColumnWidth, 0), std::max(height - 80, 0)};
        default:
            return {0, 0};
    }
}

/// As text streams write a float unless told otherwise.
std::wstring ValueText(float value) {
    if (std::isnan(value)) return L"nan";
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<double>(value),
                                   std::chars_format::general, kDigits);
    return std::wstring(text, end.ptr);
}

std::wstring HeadOf(const ResultRecord& record, const Metric::CMetricList& metrics) {
    return metrics.GetName(record.metricIndex) + L" " + Metric::ComponentName(record.component) + L": ";
}

std::wstring FilesOf(const ResultRecord& record) {
    std::wstring names;
    for (const FileRecord& file : record.files) {
        if (&file != &record.files.front()) names += L", ";
        names += FileNamePart(file.name);
    }
    return L"Files: " + names;
}

}  // namespace

std::vector<CaptionText> CaptionTexts(int width, int height, const CaptionSettings& settings,
                                      const CaptionSubject& subject) {
    const auto [x, y] = StartOf(width, height, settings, static_cast<int>(subject.values.size()));
    std::vector<CaptionText> texts = {{x, y, L"Lumetry", true}, {x + kProgramX, y, L"Tolvane 3.0"}};
    int line = y;
    if (settings.drawFrameNumber) {
        line += TextRaster::kLineHeight;
        texts.push_back({x, line, L"Frame: " + std::to_wstring(subject.frame)});
    }
    if (!settings.drawMetricValue) return texts;

    for (const Metric::MetricValue& value : subject.values) {
        ResultRecord record;
        subject.store.GetResultRecord(value.resultId, record);
        const std::wstring head = HeadOf(record, subject.metrics);
        if (subject.isOriginal) {
            texts.push_back({x, line + TextRaster::kLineHeight, head + L"Original"});
            break;
        }
        texts.push_back({x, line + kFilesY, FilesOf(record)});
        texts.push_back({x, line + kValueY, head + ValueText(value.value)});
        line += kValueY;
    }
    return texts;
}

void DrawCaption(TextRaster& raster, const Bitmap24& bitmap, const CaptionSettings& settings,
                 const CaptionSubject& subject) {
    const std::vector<CaptionText> texts = CaptionTexts(bitmap.width, bitmap.height, settings, subject);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto& [x, y, text, isMaker] = texts[i];
        // What follows in the line stands at its place, however wide the font is.
        const bool isFollowed = i + 1 < texts.size() && texts[i + 1].y == y;
        const int room = isFollowed ? texts[i + 1].x - x - kGap : TextRaster::kAnyWidth;
        if (!isMaker) raster.Draw(bitmap, x + 1, y + 1, text, kDarkGrey, room);
        raster.Draw(bitmap, x, y, text, isMaker ? kRed : kLightGrey, room);
    }
}
