#include "app/rules/output_form.h"

#include "app/rules/reasons.h"

namespace {

void StoreCsv(const OutputForm& form, CsvSettings& csv) {
    csv.outputDir = form.csvDir;
    csv.nameGeneration = ChoiceValue(kCsvNamings, form.csvNaming);
    csv.customName = form.customName.substr(0, kMaxCustomName);
    csv.separator = ChoiceValue(kCsvTypes, form.csvType);
    csv.decimalDelimiter = ChoiceValue(kDecimalDelimiters, form.decimalDelimiter);
    csv.unicode = form.unicode;
}

void StoreVisualization(const OutputForm& form, MeasurementJob& job) {
    job.visualization.nameGeneration = ChoiceValue(kVisualizationNamings, form.visualizationNaming);
    job.visualization.outputDir = form.visualizationDir;
    job.caption.position = ChoiceValue(kCaptionPositions, form.captionPosition);
    job.caption.drawFrameNumber = form.printFrameNumber;
    job.caption.drawMetricValue = form.printMetricValue;
    job.visualization.caption = job.caption;
}

}  // namespace

std::wstring OutputForm::WhyCustomNameDisabled() const {
    if (!whyCsvDisabled.empty()) return whyCsvDisabled;
    return ChoiceValue(kCsvNamings, csvNaming) == NameCustom ? L"" : Needs(kCsvNamings[NameCustom].text);
}

OutputForm OutputFormFrom(const MeasurementJob& job) {
    OutputForm form;
    form.csvDir = job.csv.outputDir;
    form.csvNaming = ChoicePosition(kCsvNamings, job.csv.nameGeneration);
    form.customName = job.csv.customName;
    form.csvType = ChoicePosition(kCsvTypes, job.csv.separator);
    form.decimalDelimiter = ChoicePosition(kDecimalDelimiters, job.csv.decimalDelimiter);
    form.unicode = job.csv.unicode;

    form.visualizationNaming = ChoicePosition(kVisualizationNamings, job.visualization.nameGeneration);
    form.visualizationDir = job.visualization.outputDir;
    form.captionPosition = ChoicePosition(kCaptionPositions, job.caption.position);
    form.printFrameNumber = job.caption.drawFrameNumber;
    form.printMetricValue = job.caption.drawMetricValue;

    if (!job.csv.save) form.whyCsvDisabled = Needs(L"Save CSV file");
    if (!job.visualization.save)
        form.whyVisualizationDisabled = Needs(L"Save metric visualization video / image");
    return form;
}

void StoreForm(const OutputForm& form, MeasurementJob& job) {
    if (form.whyCsvDisabled.empty()) StoreCsv(form, job.csv);
    if (form.whyVisualizationDisabled.empty()) StoreVisualization(form, job);
}
