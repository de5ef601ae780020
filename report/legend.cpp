#include "report/legend.h"

#include "platform/qt/layout_grid.h"
#include "platform/qt/plain_label.h"
#include "report/sample_chip.h"
#include "report/to_qt.h"

#include <QGridLayout>
#include <QGroupBox>

namespace Report {

QGroupBox* MakeLegend(const ReportData& data) {
    auto* group = new QGroupBox(QStringLiteral("Legend"));
    auto* rows = new QGridLayout(group);
    rows->setHorizontalSpacing(kSampleSpacing);
    rows->setVerticalSpacing(kRowSpacing - 1);
    rows->setColumnStretch(1, 1);
    int row = 0;
    const auto addRow = [rows, &row](int file, const QString& text, bool isPresent, const QString& toolTip) {
        auto* label = new PlainLabel(text);
        label->setEnabled(isPresent);
        label->setToolTip(toolTip);
        rows->addWidget(new SampleChip(file), row, 0);
        rows->addWidget(label, row++, 1);
    };
    for (int file = 0; file < kFileCount; ++file) {
        const auto path = data.paths.find(file);
        const bool isPresent = path != data.paths.end();
        addRow(file, FileLabel(file), isPresent,
               isPresent ? PlainToolTip(ToQString(path->second)) : ToQString(NeedsFileText(file)));
    }
    const bool hasBadFrames = data.badFrames != nullptr;
    addRow(SampleChip::kBadFrame, QStringLiteral("Bad frames"), hasBadFrames,
           hasBadFrames ? QString() : ToQString(kNeedsBadFrames));
    return group;
}

}  // namespace Report
