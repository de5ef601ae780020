#pragma once

#include "report/rules/report_parameters.h"

class QWidget;

/// Shows the results of a run in a modal dialog over `parent`, which may be null; returns when the user has
/// closed it. One at a time. GUI thread only.
void ShowResults(QWidget* parent, const ReportParameters& parameters);
