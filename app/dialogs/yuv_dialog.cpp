#include "app/dialogs/yuv_dialog.h"

#include "app/dialogs/controls.h"
#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_grid.h"
#include "platform/qt/help.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/message_box.h"
#include "platform/qt/plain_label.h"
#include "platform/qt/wide_text.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace {

constexpr QSize kUsualSize(420, 187);
constexpr int kMostDigits = 10;  // of an int
constexpr int kShownDigits = 6;

/// A field for a number of pixels; empty means 0, which is a size that isn't known.
QLineEdit* MakeNumberField(int number) {
    auto* field = new QLineEdit;
    field->setAlignment(Qt::AlignRight);
    field->setMaxLength(kMostDigits);
    static const QRegularExpression digits(QStringLiteral("[0-9]*"));
    field->setValidator(new QRegularExpressionValidator(digits, field));
    // Room for a line of small digits and the margins around it.
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QString(kShownDigits + 2, u'0')));
    field->setMaximumWidth(2 * field->minimumWidth());
    field->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    if (number > 0) field->setText(QString::number(number));
    return field;
}

int NumberIn(const QLineEdit& field) {
    const qlonglong most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(field.text().toLongLong(), most));
}

}  // namespace

YuvDialog::YuvDialog(QWidget* parent, FileRecord& record, const Capabilities& capabilities)
    : QDialog(parent), record(record), form(YuvFormFrom(record, capabilities)) {
    setWindowTitle(tr("Tolvane - YUV File settings"));
    BuildControls();
    ShowLayouts();
    SetAvailable(*scriptParser, form.whyScriptDisabled);
    (form.useScript ? scriptParser : internalParser)->setChecked(true);
    connect(scriptParser, &QRadioButton::toggled, this, &YuvDialog::TakeParser);
    AddHelpKey(*this, kHelpYuvFile);
    FocusFirst(*width);
    SetUsualSize(*this, kUsualSize);
}

void YuvDialog::BuildControls() {
    width = MakeNumberField(form.width);
    height = MakeNumberField(form.height);
    layouts = new QComboBox;
    internalParser = new QRadioButton(tr("Use &internal yuv parser"));
    scriptParser = new QRadioButton(tr("Use &AviSynth yuv parser (RawSource plugin)"));

    auto* name = new PlainLabel(ToQString(form.fileName), PlainLabel::Tone::Normal, PlainLabel::Fit::Elide);
    auto* heightLabel = new QLabel(tr("&Height:"));
    heightLabel->setBuddy(height);
    auto* size = new QHBoxLayout;
    size->addWidget(width);
    size->addSpacing(kColumnSpacing);
    size->addWidget(heightLabel);
    size->addWidget(height);
    size->addStretch(1);

    auto* rows = new FormGrid;
    rows->AddRow(tr("Filename:"), name);
    rows->AddRow(tr("&Width:"), size, width);
    rows->AddRow(tr("Video &color mode:"), layouts);
    rows->AddWide(internalParser);
    rows->AddWide(scriptParser);

    auto* whole = new QVBoxLayout(this);
    whole->addLayout(rows);
    whole->addStretch(1);
    whole->addSpacing(kGroupSpacing - kRowSpacing);
    whole->addWidget(MakeDialogButtons(*this));
}

void YuvDialog::ShowLayouts() {
    const QSignalBlocker blocker(layouts);
    layouts->clear();
    for (const rkLayoutItem& item : form.layouts) layouts->addItem(ToQString(item.text));
    layouts->setCurrentIndex(form.layout);
}

void YuvDialog::TakeParser(bool useScript) {
    form.layout = layouts->currentIndex();
    ChooseParser(form, useScript);
    ShowLayouts();
}

YuvForm YuvDialog::ReadControls() const {
    YuvForm read = form;
    read.width = NumberIn(*width);
    read.height = NumberIn(*height);
    read.layout = layouts->currentIndex();
    return read;
}

void YuvDialog::accept() {
    if (const auto message = StoreForm(ReadControls(), record)) {
        ShowMessage(this, QMessageBox::Warning, message->title, message->text);
        FocusFirst(NumberIn(*width) == 0 ? *width : *height);
        return;
    }
    QDialog::accept();
}

bool EditYuvSettings(QWidget* parent, FileRecord& record, const Capabilities& capabilities) {
    return YuvDialog(parent, record, capabilities).exec() == QDialog::Accepted;
}
