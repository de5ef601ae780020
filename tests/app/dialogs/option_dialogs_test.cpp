#include "app/dialogs/wrapped_check_box.h"
#include "platform/qt/path_field.h"
#include "platform/qt/wide_text.h"
#include "tests/app/dialogs/each_dialog.h"
#include "tests/platform/qt/opened_files.h"
#include "tests/platform/qt/user.h"
#include "video/avisynth/script_filter.h"
#include "video/color_space.h"

#include <set>
#include <sstream>

namespace {

/// What a screen reader says of a control. Qt names a list by what is selected; its own name is its label's.
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

/// Opens each dialog, to be looked at.
void InEach(const std::function<void(QDialog&, const EachDialog&)>& look, bool areOn = true) {
    for (const EachDialog& c : kDialogs) {
        SCOPED_TRACE(c.title);
        Records records(areOn);
        const auto dialog = c.make(records);
        Activate(*dialog);
        look(*dialog, c);
    }
}

TEST(OptionDialogs, NamesMnemonicsAndOrderOfFocus) {
    InEach([](QDialog& dialog, const EachDialog& c) {
        EXPECT_EQ(c.title, dialog.windowTitle().toStdString());
        EXPECT_EQ(c.mnemonics, Mnemonics(dialog));
        ASSERT_NE(nullptr, dialog.focusWidget());
        EXPECT_EQ(c.firstFocus, AccessibleName(*dialog.focusWidget()));
        std::set<std::string> names;
        QPoint last(-1, -1);
        for (QWidget* stop : TabStops(dialog)) {  // in reading order
            const std::string name = AccessibleName(*stop);
            EXPECT_NE("", name) << stop->metaObject()->className();
            EXPECT_TRUE(names.insert(name).second) << name;
            const QPoint centre = stop->mapTo(&dialog, stop->rect().center());
            const bool isInRow = std::abs(centre.y() - last.y()) < stop->height() / 2;
            EXPECT_TRUE(isInRow ? centre.x() > last.x() : centre.y() > last.y()) << name;
            last = centre;
        }
    });
}

// The pages are the real ones, which stand beside every program of the build.
TEST(OptionDialogs, F1AndTheButtonOpenThePage) {
    InEach([](QDialog& dialog, const EachDialog& c) {
        OpenedFiles opened;
        QTest::keyClick(dialog.focusWidget(), Qt::Key_F1);
        const bool hasButton = c.make == kScript || c.make == kMatrix;
        if (hasButton) Click(dialog, "Help");
        ASSERT_EQ(hasButton ? 2 : 1, opened.urls.size());
        EXPECT_EQ(ToQString(c.helpPage), opened.urls.front().fileName());
        EXPECT_EQ(opened.urls.front(), opened.urls.back());
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST(OptionDialogs, WhatIsOffSaysWhy) {
    int count = 0;
    InEach(
        [&count](QDialog& dialog, const EachDialog&) {
            for (QWidget* stop : TabStops(dialog)) {
                EXPECT_EQ(stop->isEnabled(), stop->toolTip().isEmpty()) << AccessibleName(*stop);
                count += !stop->isEnabled();
            }
        },
        false);
    EXPECT_EQ(26, count);
}

// Nothing is cut: every control has the room that it asks for, and every window fits a small screen.
TEST(OptionDialogs, LargeTextFits) {
    const QFont usual = QApplication::font();
    for (int points : {9, 13}) {
        SCOPED_TRACE(points);
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        InEach([](QDialog& dialog, const EachDialog&) {
            EXPECT_LE(dialog.width(), 1024);
            EXPECT_LE(dialog.height(), 768 - 40);
            for (QWidget* widget : dialog.findChildren<QWidget*>()) {
                const bool showsText = qobject_cast<QLabel*>(widget) ||
                                       qobject_cast<QAbstractButton*>(widget) ||
                                       qobject_cast<QComboBox*>(widget);
                if (!showsText || !widget->isVisible()) continue;
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << AccessibleName(*widget);
                const int height = widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                               : widget->minimumSizeHint().height();
                EXPECT_GE(widget->height(), height) << AccessibleName(*widget);
            }
        });
    }
    QApplication::setFont(usual);
}

TEST(OptionDialogs, EscapeIsCancelAndEnterIsOk) {
    for (const auto& [key, result] :
         {std::pair(Qt::Key_Escape, QDialog::Rejected), {Qt::Key_Return, QDialog::Accepted}}) {
        InEach([key = key, result = result](QDialog& dialog, const EachDialog&) {
            QTest::keyClick(dialog.focusWidget(), key);
            EXPECT_FALSE(dialog.isVisible());
            EXPECT_EQ(result, dialog.result());
        });
    }
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

    // The sign changes, and the second line is painted.
    const QImage off = box.grab().toImage();
    box.setChecked(true);
    const QImage on = box.grab().toImage();
    EXPECT_NE(on.copy(0, 0, 20, oneLine), off.copy(0, 0, 20, oneLine));
    const QImage below = on.copy(0, oneLine, box.width(), box.height() - oneLine);
    QImage empty(below.size(), below.format());
    empty.fill(below.pixel(0, below.height() - 1));
    EXPECT_NE(empty, below);
}

constexpr const char* kInternalParser = "Use internal yuv parser";
constexpr const char* kScriptParser = "Use AviSynth yuv parser (RawSource plugin)";
constexpr const char* kNumber = "Number of \"bad frames\" saved";

/// In reading order.
QLineEdit& Field(QDialog& dialog, int position) {
    return *dialog.findChildren<QLineEdit*>().at(position);
}
QComboBox& List(QDialog& dialog, int position = 0) {
    return *dialog.findChildren<QComboBox*>().at(position);
}

void Type(QLineEdit& field, const char* text) {
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, QString::fromLatin1(text));
}

/// The text behind a slider.
std::string ValueOf(QDialog& dialog, const char* slider) {
    return Find(dialog, slider)->parentWidget()->findChild<QLabel*>()->text().toStdString();
}

void EditYuv(QDialog& dialog) {
    EXPECT_EQ("a<b>&c.yuv", Find<QLabel>(dialog, "a<b>c.yuv").text().toStdString());
    EXPECT_EQ("16 bit 4:2:0 yuv", List(dialog).currentText().toStdString());
    EXPECT_TRUE(Find<QRadioButton>(dialog, kInternalParser).isChecked());
    EXPECT_TRUE(Field(dialog, 0).alignment() & Qt::AlignRight);
    Type(Field(dialog, 0), "1x9-2.0");  // digits only
    Type(Field(dialog, 1), "1080");
    Click(dialog, kScriptParser);
    EXPECT_EQ(0, List(dialog).currentIndex()) << "no script reads what was selected";
    EXPECT_EQ(static_cast<int>(rkScriptReaderLayouts().size()), List(dialog).count());
    List(dialog).setCurrentIndex(4);
    Click(dialog, kInternalParser);
    EXPECT_EQ("UYVY", List(dialog).currentText().toStdString()) << "what both have stays";
    Click(dialog, kScriptParser);
    List(dialog).setCurrentIndex(0);
}

void EditScript(QDialog& dialog) {
    QLineEdit& parameters = Field(dialog, 0);
    EXPECT_EQ(8, List(dialog).count());
    EXPECT_EQ("DirectShowSource (can cause crash)", List(dialog).itemText(3).toStdString());
    EXPECT_EQ("", parameters.text().toStdString());
    List(dialog).setCurrentIndex(7);  // "RawSource"
    const QString ofFilter = parameters.text();
    EXPECT_EQ("352, 288", ofFilter.left(8).toStdString());
    for (const bool isManual : {true, false, true}) {
        Click(dialog, "Edit parameters string manually");
        EXPECT_EQ(isManual, parameters.isEnabled());
        EXPECT_EQ(ofFilter, parameters.text()) << "the box off brings the filter's back";
        Type(parameters, isManual ? "my own" : "");
    }
    List(dialog).setCurrentText(QStringLiteral("FFMpegSource (not recommended)"));
    EXPECT_EQ("my own", parameters.text().toStdString());
    parameters.setText(QString(2000, u'x'));
    Click(dialog,
          "Do not try to open the file using different filters, use only provided settings for AviSynth");
}

void EditOutput(QDialog& dialog) {
    for (const bool isCustom : {false, true}) {
        Find<QComboBox>(dialog, "Name generation, CSV files").setCurrentIndex(isCustom ? 2 : 0);
        EXPECT_EQ(isCustom, Field(dialog, 1).isEnabled());
    }
    User user;
    user.In("Select folder", [](QWidget& window) {
        dynamic_cast<QFileDialog&>(window).selectFile(QStringLiteral("/tmp"));
        return QMetaObject::invokeMethod(&window, "accept");
    });
    Click(dialog, "Browse, CSV files");
    Find<PathField>(dialog, "Output dir, visualization files").SetPath(L"/pictures");
    Field(dialog, 1).setText(QString(61, u'n'));
    EXPECT_EQ("Type 1 (comma-separated)", List(dialog, 1).currentText().toStdString());
    for (const int list : {1, 2, 3, 4}) List(dialog, list).setCurrentIndex(1);
    Click(dialog, "Create CSV in unicode");
    Click(dialog, "Print metric value");
}

void EditBadFrames(QDialog& dialog) {
    EXPECT_EQ("10", ValueOf(dialog, kNumber));  // the record has none
    EXPECT_EQ("305", ValueOf(dialog, "Count out radius"));
    QTest::keyClick(Find(dialog, kNumber), Qt::Key_End);
    EXPECT_EQ("50", ValueOf(dialog, kNumber));
    QTest::keyClick(Find(dialog, "Count out radius"), Qt::Key_Right);
    EXPECT_EQ("310", ValueOf(dialog, "Count out radius"));
    dialog.findChild<PathField*>()->SetPath(L"/out");
    Click(dialog, "With maximum difference, where metric for second is better than for first");
}

void EditMoreOptions(QDialog& dialog) {
    auto& path = *dialog.findChild<PathField*>();
    EXPECT_FALSE(path.isEnabled() || Find(dialog, "Browse, WAV file")->isEnabled());
    Click(dialog, "Play WAV file, when finished");
    EXPECT_TRUE(path.isEnabled() && Find(dialog, "Browse, WAV file")->isEnabled());
    emit path.FileDropped(L"/new.wav");
}

template <class... Values>
std::wstring Joined(const Values&... values) {
    std::wostringstream text;
    ((text << values << L'|'), ...);
    return text.str();
}

std::wstring OutputValues(const Records& r) {
    const CsvSettings& csv = r.job.csv;
    const VisualizationSettings& pictures = r.job.visualization;
    return Joined(csv.outputDir, csv.nameGeneration, csv.customName, csv.separator, csv.decimalDelimiter,
                  csv.unicode, pictures.outputDir, pictures.nameGeneration, pictures.caption.position,
                  pictures.caption.drawMetricValue, r.job.caption.drawFrameNumber);
}

TEST(OptionDialogs, StoreOnOkOnly) {
    const std::wstring line(260, L'x');  // no more is kept of 300
    const struct {
        std::function<std::unique_ptr<QDialog>(Records&)> make;
        std::function<void(QDialog&)> edit;
        std::function<std::wstring(const Records&)> values;
        std::wstring before, after;
    } kCases[] = {
        {kMatrix, [](QDialog& d) { Click(d, "PC.601"); },
         [](const Records& r) { return Joined(r.job.run.yuvTable); }, L"0|", L"1|"},
        {kYuv, EditYuv,
         [](const Records& r) {
             return Joined(r.file.width, r.file.height, r.file.useAvs, r.file.yuvType, r.file.parameters);
         },
         Joined(352, 288, 0, P016, L""),
         Joined(1920, 1080, 1, rkScriptReaderLayouts()[0].colorSpace, L"1920, 1080, \"I420\"")},
        {kScript, EditScript,
         [](const Records& r) {
             return Joined(r.file.filter, r.file.customParameters, r.file.onlyPreferred, r.file.parameters);
         },
         L"0|0|0||", Joined(rkFFMpegSourceFilter, 1, 1, std::wstring(1024, L'x'))},
        {kOutput, EditOutput, OutputValues, L"|2||1|0|0||0|0|1|1|",
         Joined(L"/tmp", 2, std::wstring(60, L'n'), 0, 1, 1, L"/pictures", 1, 1, 0, 1)},
        {kBadFrames, EditBadFrames,
         [](const Records& r) {
             const BadFramesSettings& bad = r.job.badFrames;
             return Joined(bad.count, bad.radius, bad.frameType, bad.outputDir);
         },
         L"0|305|0||", L"50|310|3|/out|"},
        {kMoreOptions, EditMoreOptions,
         [](const Records& r) { return Joined(r.state.playWav, r.state.wavPath); }, L"0||", L"1|/new.wav|"},
        {kMetric, [](QDialog& d) { Field(d, 0).setText(QString(300, u'x')); },
         [](const Records& r) {
             return Joined(r.job.metricSettings[0], r.job.metricSettings[1], SelectedSettings(r.job));
         },
         L"first|second|second|", Joined(L"first", line, line)},
    };
    for (const auto& [make, edit, values, before, after] : kCases) {
        Records records;
        records.state.playWav = false;
        records.file.yuvType = P016;
        records.job.comparativeAnalysis = true;
        records.job.badFrames.count = 0;
        records.job.badFrames.radius = 305;
        for (const char* button : {"Cancel", "OK"}) {
            const auto dialog = make(records);
            SCOPED_TRACE(dialog->windowTitle().toStdString());
            edit(*dialog);
            EXPECT_EQ(before, values(records));
            Click(*dialog, button);
        }
        EXPECT_EQ(after, values(records));
    }
}

TEST(YuvDialog, RefusesASizeOfNothingAndStays) {
    for (const char* width : {"", "0", "000"}) {
        SCOPED_TRACE(width);
        Records records;
        records.file.useAvs = true;
        YuvDialog dialog(nullptr, records.file, kEverything);
        dialog.show();
        Type(Field(dialog, 0), width);
        Click(dialog, kInternalParser);
        User user;
        user.In("Tolvane: Error", [](QWidget& window) {
            const auto& box = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(QMessageBox::Warning, box.icon());
            EXPECT_EQ("Specify nonzero width and height for YUV file!", box.text().toStdString());
            window.close();
        });
        Click(dialog, "OK");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(&Field(dialog, 0), dialog.focusWidget());
        EXPECT_TRUE(records.file.useAvs) << "the parser is stored with a sound size only";
    }
}

TEST(OptionDialogs, DamagedSettingsAreTakenIntoRange) {
    Records records;
    records.file.width = -3;
    records.file.height = 2147483647;
    records.file.useAvs = true;
    YuvDialog yuv(nullptr, records.file, {true, true, true, true, false});  // without RawSource
    EXPECT_EQ("", Field(yuv, 0).text().toStdString());
    EXPECT_EQ("2147483647", Field(yuv, 1).text().toStdString());
    EXPECT_TRUE(Find(yuv, kScriptParser)->toolTip().contains(QStringLiteral("rawsource.dll")));
    EXPECT_FALSE(Find(yuv, kScriptParser)->isEnabled());
    EXPECT_TRUE(Find<QRadioButton>(yuv, kInternalParser).isChecked());
    EXPECT_EQ(-3, records.file.width);
    Type(Field(yuv, 0), "99999999999");
    Click(yuv, "OK");
    EXPECT_EQ(2147483647, records.file.width);
    records.job.run.yuvTable = 7;
    MatrixDialog(nullptr, records.job).accept();
    EXPECT_EQ(0, records.job.run.yuvTable) << "what it showed";
}

}  // namespace
