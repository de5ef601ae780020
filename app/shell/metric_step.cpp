#include "app/shell/metric_step.h"

#include "platform/qt/icon.h"
#include "platform/qt/label_column.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/wide_text.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

namespace {

constexpr const char* kComponentTexts[Metric::kComponentCount] = {"Y-YUV", "U-YUV", "V-YUV", "L-LUV",
                                                                  "R-RGB", "G-RGB", "B-RGB"};
constexpr int kLeastSpacing = 14;   // between components, on a narrow screen
constexpr int kFamilySpacing = 10;  // more than between the components of one family
constexpr int kComponentLineHeight = 23;

/// The components behind which another family begins.
bool EndsFamily(int component) {
    return component == Metric::ComponentV || component == Metric::ComponentL;
}

}  // namespace

MetricStep::MetricStep(LabelColumn& labels, ControlTable& controls, const Metric::CMetricList& metrics,
                       QWidget* parent)
    : StepGroup(tr("Step &2: Metric Selection"), parent),
      metric(new QComboBox),
      componentLabel(new QLabel(tr("Color compo&nent"))) {
    metric->setAccessibleName(tr("Metric"));
    SetFirst(metric);
    for (int i = 0; i < metrics.GetCount(); ++i) metric->addItem(ToQString(metrics.GetName(i)), i);
    labels.Add(metric);
    labels.Add(componentLabel);

    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->addWidget(metric, 0, 0);
    grid->addLayout(MakeButtons(controls), 0, 1);
    grid->addWidget(componentLabel, 1, 0);
    grid->addLayout(MakeComponents(controls), 1, 1);
    grid->setRowMinimumHeight(1, kComponentLineHeight);

    controls.Set(Control::MetricList, metric);
    connect(metric, &QComboBox::activated, this,
            [this](int item) { emit MetricChosen(metric->itemData(item).toInt()); });
}

QHBoxLayout* MetricStep::MakeButtons(ControlTable& controls) {
    auto* settingsButton = new QPushButton(tr("Se&ttings"));
    auto* info = new QPushButton(TintedIcon(IconName::Globe), tr("Online metric &info"));
    settingsLabel = new PlainLabel(tr("Metric settings"), PlainLabel::Tone::Quiet);
    settings = new PlainLabel({}, PlainLabel::Tone::Normal, PlainLabel::Fit::Elide);
    settings->setAccessibleName(settingsLabel->text());

    auto* row = new QHBoxLayout;
    row->setSpacing(kColumnSpacing);
    row->addWidget(settingsButton);
    row->addWidget(info);
    row->addSpacing(kColumnSpacing);
    row->addWidget(settingsLabel);
    row->addWidget(settings, 1);
    // The text comes and goes in a place of its own.
    for (QWidget* text : {settingsLabel, settings}) {
        QSizePolicy policy = text->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        text->setSizePolicy(policy);
    }

    controls.Set(Control::MetricSettings, settingsButton);
    controls.Set(Control::MetricInfo, info);
    connect(settingsButton, &QPushButton::clicked, this, &MetricStep::SettingsClicked);
    connect(info, &QPushButton::clicked, this, &MetricStep::InfoClicked);
    return row;
}

QHBoxLayout* MetricStep::MakeComponents(ControlTable& controls) {
    auto* group = new QButtonGroup(this);
    auto* row = new QHBoxLayout;
    row->setSpacing(kLeastSpacing);
    for (int component = 0; component < Metric::kComponentCount; ++component) {
        auto* radio = new QRadioButton(QString::fromLatin1(kComponentTexts[component]));
        components[static_cast<std::size_t>(component)] = radio;
        group->addButton(radio, component);
        row->addWidget(radio);
        const int more = kRadioSpacing - kLeastSpacing + (EndsFamily(component) ? kFamilySpacing : 0);
        row->addItem(new QSpacerItem(more, 0, QSizePolicy::Maximum, QSizePolicy::Minimum));
        controls.Set(ComponentControl(component), radio);
    }
    row->addStretch(1);
    connect(group, &QButtonGroup::idClicked, this, &MetricStep::ComponentChosen);
    return row;
}

void MetricStep::Show(const MainForm& form) {
    metric->setCurrentIndex(metric->findData(form.metric));
    QButtonGroup* const group = components[0]->group();
    group->setExclusive(false);  // none may be checked
    for (int i = 0; i < Metric::kComponentCount; ++i)
        components[static_cast<std::size_t>(i)]->setChecked(i == form.component);
    group->setExclusive(true);
    componentLabel->setBuddy(components[static_cast<std::size_t>(form.component < 0 ? 0 : form.component)]);

    settingsLabel->setVisible(form.metricSettingsVisible);
    settings->setVisible(form.metricSettingsVisible);
    settings->setText(ToQString(form.metricSettings));
}
