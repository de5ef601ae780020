#pragma once

#include <string>

#include "app/rules/choice_list.h"
#include "engine/model/measurement_job.h"

constexpr Choice kCsvNamings[] = {
    {L"Prefix: <metric>_<video_name>", NamePrefix},
    {L"Postfix: <video_name>_<metric>", NamePostfix},
    {L"Custom (type below)", NameCustom},
};
constexpr Choice kVisualizationNamings[] = {kCsvNamings[0], kCsvNamings[1]};
constexpr Choice kCsvTypes[] = {{L"Type 1 (comma-separated)", 1}, {L"Type 2 (semicolon-separated)", 0}};
constexpr Choice kDecimalDelimiters[] = {{L"Type 1 (dot)", 0}, {L"Type 2 (comma)", 1}};
constexpr Choice kCaptionPositions[] = {{L"Top-Left Corner", 0}, {L"Bottom-Left Corner", 1}};

constexpr std::size_t kMaxCustomName = 60;

/// What the dialog of CSV and visualization settings shows. The lists are positions in those above; the
/// choice of a compressor isn't part of it, since that takes effect at once.
struct OutputForm {
    std::wstring csvDir;
    int csvNaming = 0;
    std::wstring customName;
    int csvType = 0;
    int decimalDelimiter = 0;
    bool unicode = false;

    int visualizationNaming = 0;
    std::wstring visualizationDir;

    int captionPosition = 0;
    bool printFrameNumber = false;
    bool printMetricValue = false;

    // Why a part can't be used, for the tooltips; empty: it can.
    std::wstring whyCsvDisabled;
    std::wstring whyVisualizationDisabled;  ///< visualization and caption
    /// Of the edit "Custom name:", which depends on the list above it.
    std::wstring WhyCustomNameDisabled() const;
};

OutputForm OutputFormFrom(const MeasurementJob& job);

/// "OK". What can't be used isn't stored.
void StoreForm(const OutputForm& form, MeasurementJob& job);
