#include "report/show_results.h"

#include "report/results_dialog.h"

void ShowResults(QWidget* parent, const ReportParameters& parameters) {
    Report::ResultsDialog dialog(parameters, parent);
    dialog.exec();
}
