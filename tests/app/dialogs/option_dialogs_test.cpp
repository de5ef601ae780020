#include "app/dialogs/bad_frames_dialog.h"
#include "app/dialogs/matrix_dialog.h"
#include "app/dialogs/metric_dialog.h"
#include "app/dialogs/more_options_dialog.h"
#include "app/dialogs/output_dialog.h"
#include "app/rules/metric_choice.h"
#include "platform/qt/path_field.h"
#include "tests/app/user.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QTest>

namespace {

QSlider& SliderOf(QDialog& dialog, const char* name) {
    return Find<QSlider>(dialog, name);
}

/// The text behind a slider.
std::string ValueOf(QDialog& dialog, const char* name) {
    return SliderOf(dialog, name).parentWidget()->findChild<QLabel*>()->text().toStdString();
}

TEST(MatrixDialog, StoresOnOkOnly) {
    MeasurementJob job;
    for (const auto& [button, table] : {std::pair("Cancel", 0), {"OK", 1}}) {
        MatrixDialog dialog(nullptr, job);
        EXPECT_TRUE(Find<QRadioButton>(dialog, "REC.601").isChecked());
        Click(dialog, "PC.601");
        Click(dialog, button);
        EXPECT_EQ(table, job.run.yuvTable);
    }
    job.run.yuvTable = 7;  // from damaged settings
    MatrixDialog dialog(nullptr, job);
    EXPECT_TRUE(Find<QRadioButton>(dialog, "REC.601").isChecked());
    dialog.reject();
    EXPECT_EQ(7, job.run.yuvTable);
    dialog.accept();
    EXPECT_EQ(0, job.run.yuvTable);
}

TEST(OutputDialog, StoresAllValues) {
    MeasurementJob job;
    job.csv.save = job.visualization.save = true;
    job.csv.nameGeneration = 9;  // not in the list: the first one shows
    for (const char* button : {"Cancel", "OK"}) {
        OutputDialog dialog(nullptr, job);
        EXPECT_EQ(0, Find<QComboBox>(dialog, "Name generation, CSV files").currentIndex());
        QComboBox* const csvType = dialog.findChildren<QComboBox*>().at(1);
        QComboBox* const delimiter = dialog.findChildren<QComboBox*>().at(2);
        EXPECT_EQ("Type 1 (comma-separated)", csvType->currentText().toStdString());
        EXPECT_FALSE(dialog.findChildren<QLineEdit*>().at(1)->isEnabled());

        Find<PathField>(dialog, "Output dir, CSV files").SetPath(L"/out/csv");
        Find<QComboBox>(dialog, "Name generation, CSV files").setCurrentIndex(2);
        EXPECT_TRUE(dialog.findChildren<QLineEdit*>().at(1)->isEnabled());
        dialog.findChildren<QLineEdit*>().at(1)->setText(QString(70, u'n'));
        csvType->setCurrentIndex(1);
        delimiter->setCurrentIndex(1);
        Click(dialog, "Create CSV in unicode");
        Find<QComboBox>(dialog, "Name generation, visualization files").setCurrentIndex(1);
        Find<PathField>(dialog, "Output dir, visualization files").SetPath(L"/out/pictures");
        dialog.findChildren<QComboBox*>().at(4)->setCurrentIndex(1);
        Click(dialog, "Print metric value");
        EXPECT_EQ(9, job.csv.nameGeneration);
        Click(dialog, button);
    }
    EXPECT_EQ(L"/out/csv", job.csv.outputDir);
    EXPECT_EQ(NameCustom, job.csv.nameGeneration);
    EXPECT_EQ(std::wstring(60, L'n'), job.csv.customName);
    EXPECT_EQ(0, job.csv.separator);
    EXPECT_EQ(1, job.csv.decimalDelimiter);
    EXPECT_TRUE(job.csv.unicode);
    EXPECT_EQ(NamePostfix, job.visualization.nameGeneration);
    EXPECT_EQ(L"/out/pictures", job.visualization.outputDir);
    EXPECT_EQ(1, job.visualization.caption.position);
    EXPECT_TRUE(job.caption.drawFrameNumber);
    EXPECT_FALSE(job.visualization.caption.drawMetricValue);
}

TEST(OutputDialog, WhatIsOffIsNotStored) {
    MeasurementJob job;
    job.visualization.save = true;
    OutputDialog dialog(nullptr, job);
    EXPECT_FALSE(Find(dialog, "CSV Settings")->isEnabled());
    EXPECT_EQ("Needs \"Save CSV file\"", Find(dialog, "Browse, CSV files")->toolTip().toStdString());
    Find<QComboBox>(dialog, "Name generation, CSV files").setCurrentIndex(2);
    EXPECT_FALSE(dialog.findChildren<QLineEdit*>().at(1)->isEnabled());
    Find<PathField>(dialog, "Output dir, CSV files").SetPath(L"/out/csv");
    Find<PathField>(dialog, "Output dir, visualization files").SetPath(L"/out/pictures");
    dialog.accept();
    EXPECT_EQ(L"", job.csv.outputDir);
    EXPECT_EQ(NamePrefix, job.csv.nameGeneration);
    EXPECT_EQ(L"/out/pictures", job.visualization.outputDir);
}

TEST(OutputDialog, BrowseTakesADirectory) {
    const TemporaryDirectory directory;
    MeasurementJob job;
    job.csv.save = true;
    job.csv.outputDir = L"/tmp";
    OutputDialog dialog(nullptr, job);
    dialog.show();
    const QString chosen = QString::fromStdString(directory.Root().string());
    User user;
    user.In("Select folder", [&](QWidget& window) {
        auto& chooser = dynamic_cast<QFileDialog&>(window);
        chooser.selectFile(chosen);
        QMetaObject::invokeMethod(&chooser, "accept");
        return true;
    });
    Click(dialog, "Browse, CSV files");
    EXPECT_EQ(chosen, Find<PathField>(dialog, "Output dir, CSV files").text());
    user.In("Select folder", [](QWidget& window) { return window.close(); });
    Click(dialog, "Browse, CSV files");
    EXPECT_EQ(chosen, Find<PathField>(dialog, "Output dir, CSV files").text());
    EXPECT_EQ(L"/tmp", job.csv.outputDir);
}

TEST(BadFramesDialog, TypesFollowTheComparison) {
    for (const bool comparing : {false, true}) {
        SCOPED_TRACE(comparing);
        MeasurementJob job;
        job.comparativeAnalysis = comparing;
        job.badFrames.save = true;
        job.badFrames.frameType = BadSecondBetter;
        BadFramesDialog dialog(nullptr, job);
        for (int type = 0; type < kBadFramesTypes; ++type) {
            const auto& radio = *dialog.findChildren<QRadioButton*>().at(type);
            EXPECT_EQ((type > 0) == comparing, radio.isEnabled()) << type;
            EXPECT_EQ(type == (comparing ? BadSecondBetter : BadOriginalProcessed), radio.isChecked())
                << type;
        }
        Click(dialog, "OK");
        EXPECT_EQ(comparing ? BadSecondBetter : BadOriginalProcessed, job.badFrames.frameType);
    }
}

TEST(BadFramesDialog, SlidersShowTheirValuesAndStoreOnOkOnly) {
    MeasurementJob job;
    job.badFrames.save = true;
    job.badFrames.count = 0;
    job.badFrames.radius = 305;
    for (const char* button : {"Cancel", "OK"}) {
        BadFramesDialog dialog(nullptr, job);
        EXPECT_EQ("10", ValueOf(dialog, "Number of \"bad frames\" saved"));
        EXPECT_EQ("305", ValueOf(dialog, "Count out radius"));
        QTest::keyClick(&SliderOf(dialog, "Number of \"bad frames\" saved"), Qt::Key_End);
        EXPECT_EQ("50", ValueOf(dialog, "Number of \"bad frames\" saved"));
        EXPECT_EQ(0, job.badFrames.count);
        dialog.findChild<PathField*>()->SetPath(L"/out");
        Click(dialog, button);
    }
    EXPECT_EQ(50, job.badFrames.count);
    EXPECT_EQ(300, job.badFrames.radius);  // the slider's
    EXPECT_EQ(L"/out", job.badFrames.outputDir);

    BadFramesDialog dialog(nullptr, job);
    QTest::keyClick(&SliderOf(dialog, "Count out radius"), Qt::Key_Right);
    EXPECT_EQ("310", ValueOf(dialog, "Count out radius"));
    dialog.accept();
    EXPECT_EQ(310, job.badFrames.radius);
}

TEST(BadFramesDialog, NothingCanBeSetWithoutSaving) {
    MeasurementJob job;
    job.badFrames.radius = 305;
    BadFramesDialog dialog(nullptr, job);
    for (const char* name :
         {"Number of \"bad frames\" saved", "Count out radius", "Browse, output directory"}) {
        EXPECT_FALSE(Find(dialog, name)->isEnabled()) << name;
        EXPECT_EQ("Needs \"Save \"bad frames\"\"", Find(dialog, name)->toolTip().toStdString());
    }
    dialog.accept();
    EXPECT_EQ(305, job.badFrames.radius);
}

TEST(MoreOptionsDialog, BoxTurnsThePathOn) {
    ShellState state;
    state.wavPath = L"/sounds/old.wav";
    for (const char* button : {"Cancel", "OK"}) {
        MoreOptionsDialog dialog(nullptr, state);
        auto& path = *dialog.findChild<PathField*>();
        EXPECT_FALSE(path.isEnabled() || Find(dialog, "Browse, WAV file")->isEnabled());
        Click(dialog, "Play WAV file, when finished");
        EXPECT_TRUE(path.isEnabled() && Find(dialog, "Browse, WAV file")->isEnabled());
        emit path.FileDropped(L"/sounds/new.wav");
        EXPECT_FALSE(state.playWav);
        Click(dialog, button);
    }
    EXPECT_TRUE(state.playWav);
    EXPECT_EQ(L"/sounds/new.wav", state.wavPath);
}

TEST(MetricDialog, StoresTheLineOfTheSelectedMetric) {
    MeasurementJob job;
    job.metricSettings = {L"first", L"second"};
    job.selection = {{1, 0, L"second"}};
    for (const char* button : {"Cancel", "OK"}) {
        MetricDialog dialog(nullptr, job);
        auto& line = *dialog.findChild<QLineEdit*>();
        EXPECT_EQ("second", line.text().toStdString());
        line.setText(QString(300, u'x'));
        Click(dialog, button);
    }
    EXPECT_EQ(std::wstring(260, L'x'), job.metricSettings[1]);
    EXPECT_EQ(L"first", job.metricSettings[0]);
    EXPECT_EQ(std::wstring(260, L'x'), SelectedSettings(job));
}

}  // namespace
