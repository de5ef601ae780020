// What holds for every option dialog.

#include "app/dialogs/bad_frames_dialog.h"
#include "app/dialogs/compressor_dialog.h"
#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/more_options_dialog.h"
#include "app/dialogs/output_dialog.h"
#include "app/dialogs/script_dialog.h"
#include "app/dialogs/wrapped_check_box.h"
#include "app/dialogs/yuv_dialog.h"
#include "platform/qt/help.h"
#include "platform/qt/wide_text.h"
#include "tests/app/user.h"
#include "tests/platform/qt/opened_files.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QTest>

#include <algorithm>
#include <set>

namespace {

constexpr Capabilities kEverything = {true, true, true, true, true};

/// What the dialogs edit. By default their controls are on.
struct Records {
    MeasurementJob job;
    ShellState state;
    FileRecord file;
    COMPVARS compressor;

    Records() {
        job.csv.save = job.visualization.save = job.badFrames.save = true;
        job.csv.nameGeneration = NameCustom;
        state.playWav = true;
        file.name = L"/data/a<b>&c.yuv";
    }
};

struct Case {
    const char* title;
    std::unique_ptr<QDialog> (*make)(Records&);
    const char* mnemonics;  // sorted
    const char* firstFocus;
    const wchar_t* helpPage;
};

template <class Dialog, class... Arguments>
std::unique_ptr<QDialog> Make(Arguments&&... arguments) {
    return std::make_unique<Dialog>(nullptr, std::forward<Arguments>(arguments)...);
}

const Case kCases[] = {
    {"Tolvane - YUV File settings", [](Records& r) { return Make<YuvDialog>(r.file, kEverything); }, "ACHIW",
     "Width:", kHelpStart},
    {"Tolvane - AVISynth parameters", [](Records& r) { return Make<ScriptDialog>(r.file, kEverything); },
     "DEFHP", "Choose prefered AVISynth filter:", kHelpScripts},
    {"Tolvane - Advanced file settings", [](Records& r) { return Make<MatrixDialog>(r.job); }, "6HP",
     "REC.601", kHelpMatrix},
    {"Tolvane - Advanced CSV and visualization settings",
     [](Records& r) { return Make<OutputDialog>(r.job); }, "BCDFGMNOPRTUVW", "Output dir, CSV files",
     kHelpStart},
    {"Tolvane - \"Bad frames\" settings", [](Records& r) { return Make<BadFramesDialog>(r.job); }, "BDFNORST",
     "With maximum difference between original and processed", kHelpStart},
    {"Tolvane - More options", [](Records& r) { return Make<MoreOptionsDialog>(r.state); }, "BPW",
     "Play WAV file, when finished", kHelpStart},
    {"Tolvane - Metric configuration", [](Records& r) { return Make<MetricDialog>(r.job); }, "M",
     "Metric configuration line:", kHelpStart},
    {"Choose compressor:",
     [](Records& r) { return Make<CompressorDialog>(r.compressor, QStringLiteral("Choose compressor:")); },
     "Q", "Compressors", kHelpStart},
};

/// What a screen reader says of a control. Qt gives what is selected as the name of a list, whose own name
/// comes by its label.
std::string AccessibleName(QWidget& widget) {
    const QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(&widget);
    if (!qobject_cast<QComboBox*>(&widget)) return accessible.text(QAccessible::Name).toStdString();
    if (!widget.accessibleName().isEmpty()) return widget.accessibleName().toStdString();
    for (const auto& [other, relation] : accessible.relations(QAccessible::Label))
        if (qobject_cast<QLabel*>(other->object())) return other->text(QAccessible::Name).toStdString();
    return "";
}

/// What the Tab key goes through, in its order, also what is off at present.
std::vector<QWidget*> TabStops(QDialog& dialog) {
    std::vector<QWidget*> stops;
    for (QWidget* widget = dialog.nextInFocusChain(); widget != &dialog; widget = widget->nextInFocusChain())
        if ((widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() && widget->isVisible())
            stops.push_back(widget);
    return stops;
}

std::string Mnemonics(QDialog& dialog) {
    std::string letters;
    const QList<QWidget*> widgets = dialog.findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        QString text;
        const auto* label = qobject_cast<QLabel*>(widget);
        if (label && label->buddy()) text = label->text();
        if (const auto* button = qobject_cast<QAbstractButton*>(widget)) text = button->text();
        if (const auto* group = qobject_cast<QGroupBox*>(widget)) text = group->title();
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty()) letters += key.toString().back().toLatin1();
    }
    std::sort(letters.begin(), letters.end());
    return letters;
}

void Open(QDialog& dialog) {
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
}

TEST(OptionDialogs, TitlesMnemonicsAndFirstFocus) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.title);
        Records records;
        const auto dialog = c.make(records);
        Open(*dialog);
        EXPECT_EQ(c.title, dialog->windowTitle().toStdString());
        EXPECT_EQ(c.mnemonics, Mnemonics(*dialog));
        ASSERT_NE(nullptr, dialog->focusWidget());
        EXPECT_EQ(c.firstFocus, AccessibleName(*dialog->focusWidget()));
    }
}

// The pages are the real ones, which stand beside every program of the build.
TEST(OptionDialogs, F1AndTheButtonOpenThePage) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.title);
        OpenedFiles opened;
        Records records;
        const auto dialog = c.make(records);
        Open(*dialog);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_F1);
        const bool hasButton = c.helpPage != std::wstring(kHelpStart);
        if (hasButton) Click(*dialog, "Help");
        ASSERT_EQ(hasButton ? 2 : 1, opened.urls.size());
        EXPECT_EQ(ToQString(c.helpPage), opened.urls.front().fileName());
        EXPECT_EQ(opened.urls.front(), opened.urls.back());
        EXPECT_TRUE(dialog->isVisible());
    }
}

TEST(OptionDialogs, ControlsHaveNamesOfTheirOwnAndAreReachedInReadingOrder) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.title);
        Records records;
        const auto dialog = c.make(records);
        Open(*dialog);
        std::set<std::string> names;
        QPoint last(-1, -1);
        for (QWidget* stop : TabStops(*dialog)) {
            const std::string name = AccessibleName(*stop);
            EXPECT_NE("", name) << stop->metaObject()->className();
            EXPECT_TRUE(names.insert(name).second) << name;
            const QPoint centre = stop->mapTo(dialog.get(), stop->rect().center());
            const bool isInRow = std::abs(centre.y() - last.y()) < stop->height() / 2;
            EXPECT_TRUE(isInRow ? centre.x() > last.x() : centre.y() > last.y()) << name;
            last = centre;
        }
    }
}

TEST(OptionDialogs, WhatIsOffSaysWhy) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.title);
        Records records;
        records.job.csv.save = records.job.visualization.save = records.job.badFrames.save = false;
        records.state.playWav = false;
        const auto dialog = c.make(records);
        Open(*dialog);
        for (QWidget* stop : TabStops(*dialog))
            EXPECT_EQ(stop->isEnabled(), stop->toolTip().isEmpty()) << AccessibleName(*stop);
    }
}

// Nothing is cut: every control has the room that it asks for, and every window fits a small screen.
TEST(OptionDialogs, LargeTextFits) {
    const QFont usual = QApplication::font();
    for (int points : {9, 13}) {
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        for (const Case& c : kCases) {
            SCOPED_TRACE(std::string(c.title) + ' ' + std::to_string(points));
            Records records;
            const auto dialog = c.make(records);
            Open(*dialog);
            EXPECT_LE(dialog->width(), 1024);
            EXPECT_LE(dialog->height(), 768 - 40);
            const QList<QWidget*> widgets = dialog->findChildren<QWidget*>();
            for (QWidget* widget : widgets) {
                const bool showsText = qobject_cast<QLabel*>(widget) ||
                                       qobject_cast<QAbstractButton*>(widget) ||
                                       qobject_cast<QComboBox*>(widget);
                if (!showsText || !widget->isVisible()) continue;
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << AccessibleName(*widget);
                const int height = widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                               : widget->minimumSizeHint().height();
                EXPECT_GE(widget->height(), height) << AccessibleName(*widget);
            }
        }
    }
    QApplication::setFont(usual);
}

TEST(OptionDialogs, EscapeIsCancelAndEnterIsOk) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.title);
        for (const auto& [key, result] :
             {std::pair(Qt::Key_Escape, QDialog::Rejected), {Qt::Key_Return, QDialog::Accepted}}) {
            Records records;
            records.file.width = records.file.height = 16;
            const auto dialog = c.make(records);
            Open(*dialog);
            QTest::keyClick(dialog->focusWidget(), key);
            EXPECT_FALSE(dialog->isVisible());
            EXPECT_EQ(result, dialog->result());
        }
    }
}

TEST(OptionDialogs, MnemonicOfALabelLeadsToItsField) {
    Records records;
    OutputDialog dialog(nullptr, records.job);
    Open(dialog);
    QTest::keyClick(&dialog, Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ("Output dir, visualization files", AccessibleName(*dialog.focusWidget()));
}

TEST(WrappedCheckBox, TextTakesMoreLinesAndAllOfItCanBeClicked) {
    WrappedCheckBox box(QStringLiteral("&Do not try to open the file using different filters"));
    const int oneLine = box.heightForWidth(2000);
    EXPECT_GE(box.heightForWidth(220), 2 * box.fontMetrics().height());
    EXPECT_LT(oneLine, 2 * box.fontMetrics().height());

    box.resize(220, box.heightForWidth(220));
    box.show();
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(100, box.height() - 4));
    EXPECT_TRUE(box.isChecked());
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_FALSE(box.isChecked());

    // The second line is painted, and the sign changes.
    const QImage off = box.grab().toImage();
    box.setChecked(true);
    const QImage on = box.grab().toImage();
    EXPECT_NE(on.copy(0, 0, 20, oneLine), off.copy(0, 0, 20, oneLine));
    const QImage below = on.copy(0, oneLine, box.width(), box.height() - oneLine);
    QImage empty(below.size(), below.format());
    empty.fill(below.pixel(0, below.height() - 1));
    EXPECT_NE(empty, below);
}

}  // namespace
