#include "output/csv_writer.h"

#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

#include "output/output_path.h"
#include "platform/ansi_text.h"
#include "platform/file.h"
#include "platform/text.h"

namespace {

constexpr std::size_t kLongestName = 200;
constexpr int kDecimals = 5;
constexpr std::size_t kNarrowestNumber = 5;

/// As `%5.5f` writes it in the C locale, whatever the process's locale.
std::wstring FixedNumber(float value) {
    // Not a number has no sign that would say anything.
    const double shown = std::isnan(value) ? std::fabs(value) : value;
    char text[64];  // the greatest float has 39 digits before the point
    const auto end = std::to_chars(text, text + sizeof text, shown, std::chars_format::fixed, kDecimals);
    std::wstring number(text, end.ptr);
    if (number.size() < kNarrowestNumber)
        number.insert(0, kNarrowestNumber - number.size(), L' ');  // inf and nan
    return number;
}

std::wstring FileCell(const ResultRecord& record, std::size_t position) {
    return position < record.files.size() ? record.files[position].name : std::wstring();
}

}  // namespace

CsvWriter::CsvWriter(CsvSettings csvSettings, const Metric::CMetricList& metricList)
    : settings(std::move(csvSettings)), metrics(metricList) {}

bool CsvWriter::Save(const CResultsStore& store) {
    PrepareOutputDirectory(settings.outputDir);
    path = settings.outputDir + FileName(store);

    const std::wstring text = HeadLines(store) + ValueLines(store);
    return ReplaceFile(path, settings.unicode ? ToUtf16Le(text) : ToAnsi(text));
}

std::wstring CsvWriter::FileName(const CResultsStore& store) const {
    if (settings.nameGeneration == NameCustom) return settings.customName;

    const std::wstring video = VideoNamePart(store);
    const auto join = [&](const std::wstring& metricPart) {
        return (settings.nameGeneration == NamePrefix ? metricPart + L"_" + video
                                                      : video + L"_" + metricPart) +
               L".csv";
    };
    const std::wstring name = join(MetricNamePart(store, metrics));
    return name.size() > kLongestName ? join(L"custom_metrics") : name;
}

std::wstring CsvWriter::HeadLines(const CResultsStore& store) const {
    std::wstring titles, firstFiles, secondFiles, averages;
    const std::vector<int> ids = store.GetResultIds();
    for (const int id : ids) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        float average = 0;
        store.GetAverage(id, average);

        titles += metrics.GetName(record.metricIndex);
        if (!record.name.empty()) titles += L"_" + record.name;
        titles += L"_" + std::wstring(Metric::ComponentName(record.component));
        firstFiles += FileCell(record, 0);
        secondFiles += FileCell(record, 1);
        averages += L"AVG: " + Number(average);
        for (std::wstring* line : {&titles, &firstFiles, &secondFiles, &averages})
            EndCell(*line, id == ids.back());
    }
    return titles + firstFiles + secondFiles + averages;
}

std::wstring CsvWriter::ValueLines(const CResultsStore& store) const {
    std::wstring lines;
    int frameCount = 0;
    store.GetFrameCount(frameCount);
    const std::vector<int> ids = store.GetResultIds();
    for (int frame = 0; frame < frameCount; ++frame) {
        for (const int id : ids) {
            float value = 0;
            if (store.GetValue(id, frame, value)) lines += Number(value);
            EndCell(lines, id == ids.back());
        }
    }
    return lines;
}

std::wstring CsvWriter::Number(float value) const {
    std::wstring number = FixedNumber(value);
    const auto point = number.find(L'.');
    if (settings.decimalDelimiter == 1 && point != number.npos) number[point] = L',';
    return number;
}

void CsvWriter::EndCell(std::wstring& text, bool last) const {
    text += last ? L"\r\n" : settings.separator == 1 ? L"," : L";";
}
