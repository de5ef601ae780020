#include "report/rules/report_data.h"

namespace Report {

ReportData GatherData(const ReportParameters& parameters, const Metric::CMetricList& metrics) {
    ReportData data;
    int first = 0;
    int last = 0;
    // Results that share no frame are shown by the first one that there could be.
    if (parameters.results.GetCommonFirstFrame(first) && parameters.results.GetCommonLastFrame(last)) {
        data.firstFrame = first;
        data.lastFrame = last < first ? first : last;
    }
    data.series = SeriesOfFiles(parameters.results, parameters.files);
    data.values = RangeOfValues(parameters.results, data.firstFrame, data.lastFrame);
    data.valueTitle = ValueTitle(parameters.results, metrics);
    data.badFrames = parameters.badFrames;
    for (const auto& [index, file] : parameters.files) data.paths[index] = file.name;
    return data;
}

}  // namespace Report
