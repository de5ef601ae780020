// Paints all widgets of platform/qt in both palettes, to be looked at:  platform_qt_gallery DIRECTORY

#include "platform/qt/dialog_buttons.h"
#include "platform/qt/form_group.h"
#include "platform/qt/icon_button.h"
#include "platform/qt/label_column.h"
#include "platform/qt/layout_grid.h"
#include "platform/qt/message_box.h"
#include "platform/qt/path_field.h"
#include "platform/qt/status_line.h"
#include "platform/qt/theme.h"
#include "platform/qt/value_field.h"
#include "platform/qt/value_slider.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>

#include <cstdio>

namespace {

FormGroup* PathRows(LabelColumn& labels) {
    auto* group = new FormGroup(QStringLiteral("&Paths"), labels);
    const struct {
        const char* label;
        const wchar_t* path;
        bool enabled, target;
    } rows[] = {
        {"&Short, with focus:", L"/data/clips/yard.y4m", true, false},
        {"Long, without focus:", L"/data/clips/from the yard/second tape/yard_cif_x264_crf40_a<b>&c.mkv",
         true, false},
        {"Empty:", L"", true, false},
        {"Disabled:", L"/data/clips/yard.y4m", false, false},
        {"Target of a drag:", L"", true, true},
    };
    for (const auto& row : rows) {
        auto* field = new PathField(PathField::Drop::File);
        auto* browse = new QPushButton(QStringLiteral("Browse"));
        field->SetPath(row.path);
        field->setEnabled(row.enabled);
        field->SetDropHighlight(row.target);
        browse->setEnabled(row.enabled);
        group->AddRow(QString::fromLatin1(row.label), field, browse);
    }
    return group;
}

FormGroup* ValueRows(LabelColumn& labels) {
    auto* group = new FormGroup(QStringLiteral("&Values"), labels);
    auto* slider = new ValueSlider(QStringLiteral("Radius"), 0, 100,
                                   [](int position) { return QString::number(10 * position); });
    slider->SetPosition(30);
    group->AddRow(QStringLiteral("Count out &radius:"), slider);
    auto* list = new QComboBox;
    list->addItems({QStringLiteral("Type 1 (dot)"), QStringLiteral("Type 2 (comma)")});
    group->AddRow(QStringLiteral("Floating point delimiter:"), list);

    auto* numbers = new QHBoxLayout;
    auto* value = new ValueField(7);
    value->setText(QStringLiteral("33.6166"));
    numbers->addWidget(value);
    numbers->addWidget(new QSpinBox);
    numbers->addWidget(new PlainLabel(QStringLiteral("150 frames"), PlainLabel::Tone::Quiet));
    numbers->addStretch();
    group->AddRow(QStringLiteral("Numbers:"), numbers, value);
    return group;
}

FormGroup* ToggleRows(LabelColumn& labels) {
    auto* group = new FormGroup(QStringLiteral("&Boxes and icons"), labels);
    auto* row = new QHBoxLayout;
    row->setSpacing(kRadioSpacing);
    for (int i = 0; i < 6; ++i) {
        const bool isBox = i < 3;
        QAbstractButton* button = isBox ? static_cast<QAbstractButton*>(new QCheckBox) : new QRadioButton;
        button->setAutoExclusive(false);
        button->setText(isBox ? QStringLiteral("box") : QStringLiteral("Y-YUV"));
        button->setChecked(i % 3 > 0);
        button->setEnabled(i % 3 < 2);
        row->addWidget(button);
    }
    auto* partial = new QCheckBox(QStringLiteral("partly"));
    partial->setCheckState(Qt::PartiallyChecked);
    row->addWidget(partial);
    row->addStretch();
    group->AddField(row);

    auto* icons = new QGridLayout;
    for (int i = 0; i < kIconCount; ++i) {
        auto* button = new IconButton(IconName(i), QStringLiteral("?"), QStringLiteral("icon"));
        button->setEnabled(i != 4);
        icons->addWidget(button, i / 10, i % 10);
    }
    icons->setColumnStretch(10, 1);
    group->AddField(icons);
    return group;
}

QWidget* StatusRows() {
    auto* box = new QWidget;
    auto* rows = new QVBoxLayout(box);
    rows->setContentsMargins(0, 0, 0, 0);
    for (Status status : {Status::Neutral, Status::Good, Status::Warning, Status::Error}) {
        auto* line = new StatusLine;
        line->Show(status, QStringLiteral("Select video files and options"));
        rows->addWidget(line);
    }
    auto* log = new QListWidget;
    log->addItems({QStringLiteral("Original: yard_cif.y4m"), QStringLiteral("Measuring PSNR")});
    log->setCurrentRow(1);
    rows->addWidget(log);
    auto* bar = new QProgressBar;
    bar->setValue(40);
    bar->setTextVisible(false);
    rows->addWidget(bar);
    return box;
}

bool SaveMessage(const QString& file) {
    bool saved = false;
    QTimer::singleShot(0, [&] {
        QWidget* box = QApplication::activeModalWidget();
        saved = box->grab().save(file);
        box->close();
    });
    const std::wstring path = L"/data/" + std::wstring(150, L'x') + L"/a<b>&c.mkv";
    ShowMessage(nullptr, QMessageBox::Critical, L"Could not open file for preview",
                L"Could not open file \"" + path + L"\" for preview.");
    return saved;
}

bool Save(QPalette palette, const QString& file) {
    QApplication::setPalette(palette);
    QDialog window;
    window.setWindowTitle(QStringLiteral("Gallery"));
    LabelColumn labels;
    auto* rows = new QVBoxLayout(&window);
    rows->setSpacing(kGroupSpacing);
    for (FormGroup* group : {PathRows(labels), ValueRows(labels), ToggleRows(labels)}) rows->addWidget(group);
    rows->addWidget(StatusRows());
    rows->addStretch(1);

    auto* process = new QPushButton(TintedIcon(IconName::Play), QStringLiteral("&Process"));
    process->setMinimumWidth(kMainButtonWidth);
    auto* foot = new QHBoxLayout;
    foot->addWidget(new QPushButton(TintedIcon(IconName::Globe), QStringLiteral("&Website")));
    foot->addWidget(process);
    foot->addStretch(1);
    foot->addWidget(MakeDialogButtons(window, [] {}));
    rows->addLayout(foot);

    window.resize(620, window.sizeHint().height());
    window.show();
    QApplication::processEvents();
    return window.grab().save(file);
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: platform_qt_gallery DIRECTORY\n", stderr);
        return 64;
    }
    InstallTheme(application);
    const QString directory = QString::fromLocal8Bit(argv[1]);
    const bool saved = Save(SchemePalette(ColorScheme::Light), directory + QStringLiteral("/light.png")) &&
                       Save(SchemePalette(ColorScheme::Dark), directory + QStringLiteral("/dark.png")) &&
                       SaveMessage(directory + QStringLiteral("/message.png")) &&
                       ProgramIcon().pixmap(256).save(directory + QStringLiteral("/icon.png"));
    return saved ? 0 : 1;
}
