#pragma once

#include "report/rules/report_data.h"

class QGroupBox;

namespace Report {

constexpr int kSampleSpacing = 10;  // between a sample and what it stands for

/// What the colours and signs of the plots mean. Files that aren't there are disabled.
QGroupBox* MakeLegend(const ReportData& data);

}  // namespace Report
