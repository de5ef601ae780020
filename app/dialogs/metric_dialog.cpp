#include "app/dialogs/metric_dialog.h"

#include "app/dialogs/controls.h"
#include "app/rules/metric_choice.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/wide_text.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr QSize kUsualSize(520, 98);

}  // namespace

MetricDialog::MetricDialog(QWidget* parent, MeasurementJob& job)
    : QDialog(parent), job(job), line(new QLineEdit) {
    setWindowTitle(tr("Tolvane - Metric configuration"));
    line->setMaxLength(static_cast<int>(kMaxMetricSettings));
    line->setText(ToQString(SelectedSettings(job)));

    auto* label = new QLabel(tr("&Metric configuration line:"));
    label->setBuddy(line);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(label);
    whole->addWidget(line);
    whole->addStretch(1);
    whole->addSpacing(kGroupSpacing - kRowSpacing);
    whole->addWidget(MakeDialogButtons(*this));
    AddHelpKey(*this, kHelpMetrics);
    FocusFirst(*line);
    SetUsualSize(*this, kUsualSize);
}

void MetricDialog::accept() {
    StoreSelectedSettings(job, ToWide(line->text()));
    QDialog::accept();
}

void EditMetricConfiguration(QWidget* parent, MeasurementJob& job) {
    MetricDialog(parent, job).exec();
}
