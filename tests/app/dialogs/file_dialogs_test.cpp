#include "app/dialogs/script_dialog.h"
#include "app/dialogs/yuv_dialog.h"
#include "tests/app/user.h"
#include "video/avisynth/script_filter.h"
#include "video/color_space.h"

#include <gtest/gtest.h>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

namespace {

constexpr Capabilities kEverything = {true, true, true, true, true};
constexpr const char* kInternal = "Use internal yuv parser";
constexpr const char* kScript = "Use AviSynth yuv parser (RawSource plugin)";

FileRecord RawFile() {
    FileRecord record;
    record.name = record.sourceName = L"/data/a<b>&c.yuv";
    record.width = 352;
    record.height = 288;
    record.yuvType = P016;
    return record;
}

/// The fields, in reading order.
QLineEdit& Field(QDialog& dialog, int position) {
    return *dialog.findChildren<QLineEdit*>().at(position);
}

QComboBox& List(QDialog& dialog) {
    return *dialog.findChild<QComboBox*>();
}

void Type(QLineEdit& field, const char* text) {
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, QString::fromLatin1(text));
}

TEST(YuvDialog, ShowsTheRecordAndStoresOnOkOnly) {
    FileRecord record = RawFile();
    const FileRecord before = record;
    YuvDialog dialog(nullptr, record, kEverything);
    QStringList texts;
    const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
    for (const QLabel* label : labels) texts.append(label->text());
    EXPECT_TRUE(texts.contains(QStringLiteral("a<b>&c.yuv"))) << texts.join(u'|').toStdString();
    EXPECT_EQ("16 bit 4:2:0 yuv", List(dialog).currentText().toStdString());
    EXPECT_TRUE(Find<QRadioButton>(dialog, kInternal).isChecked());
    EXPECT_EQ("352", Field(dialog, 0).text().toStdString());
    EXPECT_TRUE(Field(dialog, 0).alignment() & Qt::AlignRight);

    Type(Field(dialog, 0), "1x9-2.0");  // digits only
    EXPECT_EQ("1920", Field(dialog, 0).text().toStdString());
    Type(Field(dialog, 1), "1080");
    Click(dialog, kScript);
    EXPECT_EQ(0, List(dialog).currentIndex());  // no script reads what was selected
    EXPECT_EQ(static_cast<int>(rkScriptReaderLayouts().size()), List(dialog).count());
    EXPECT_EQ(before, record);
    dialog.reject();
    EXPECT_EQ(before, record);

    Click(dialog, "OK");
    EXPECT_EQ(QDialog::Accepted, dialog.result());
    EXPECT_EQ(1920, record.width);
    EXPECT_EQ(1080, record.height);
    EXPECT_TRUE(record.useAvs);
    EXPECT_EQ(rkScriptReaderLayouts()[0].colorSpace, record.yuvType);
    EXPECT_TRUE(record.parameters.starts_with(L"1920, 1080")) << "those of the script follow the size";
}

TEST(YuvDialog, RefusesASizeOfNothingAndStays) {
    for (const char* width : {"", "0", "000"}) {
        SCOPED_TRACE(width);
        FileRecord record = RawFile();
        record.useAvs = true;
        YuvDialog dialog(nullptr, record, kEverything);
        dialog.show();
        Type(Field(dialog, 0), width);
        Click(dialog, kInternal);
        QString text;
        User user;
        user.In("Tolvane: Error", [&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(QMessageBox::Warning, box.icon());
            text = box.text();
            box.close();
            return true;
        });
        Click(dialog, "OK");
        EXPECT_EQ("Specify nonzero width and height for YUV file!", text.toStdString());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(&Field(dialog, 0), dialog.focusWidget());
        EXPECT_TRUE(record.useAvs);  // the parser is stored with a sound size only
    }
}

TEST(YuvDialog, NumbersBeyondAllSizesAreKeptInRange) {
    FileRecord record = RawFile();
    record.width = -3;  // from damaged settings
    record.height = 2147483647;
    YuvDialog dialog(nullptr, record, kEverything);
    EXPECT_EQ("", Field(dialog, 0).text().toStdString());
    EXPECT_EQ("2147483647", Field(dialog, 1).text().toStdString());
    EXPECT_EQ(-3, record.width);
    Type(Field(dialog, 0), "99999999999");
    Click(dialog, "OK");
    EXPECT_EQ(2147483647, record.width);
    EXPECT_EQ(2147483647, record.height);
}

TEST(YuvDialog, ScriptParserNeedsItsPlugin) {
    FileRecord record = RawFile();
    record.useAvs = true;
    YuvDialog dialog(nullptr, record, {true, true, true, true, false});
    EXPECT_TRUE(Find(dialog, kScript)->toolTip().contains(QStringLiteral("rawsource.dll")));
    EXPECT_TRUE(!Find(dialog, kScript)->isEnabled() && Find<QRadioButton>(dialog, kInternal).isChecked());
}

TEST(YuvDialog, FunctionTellsWhetherItWasOk) {
    FileRecord record = RawFile();
    for (const auto& [button, isOk] : {std::pair("OK", true), {"Cancel", false}}) {
        User user;
        user.Press("Tolvane - YUV File settings", button);
        EXPECT_EQ(isOk, EditYuvSettings(nullptr, record, kEverything));
    }
}

TEST(ScriptDialog, ParametersFollowTheFilterUntilTheyAreEdited) {
    FileRecord record;
    record.name = L"/data/a.avi";
    record.parameters = L"from settings";
    const FileRecord before = record;
    ScriptDialog dialog(nullptr, record, {true, false, true, false, false});
    QComboBox& filters = List(dialog);
    QLineEdit& parameters = Field(dialog, 0);
    EXPECT_EQ(5, filters.count());
    EXPECT_EQ("DirectShowSource (can cause crash)", filters.itemText(3).toStdString());
    EXPECT_EQ("from settings", parameters.text().toStdString());
    EXPECT_FALSE(parameters.isEnabled());
    EXPECT_EQ("Needs \"Edit parameters string manually\"", parameters.toolTip().toStdString());

    filters.setCurrentIndex(4);
    const QString ofFilter = parameters.text();
    EXPECT_NE("from settings", ofFilter.toStdString());
    Click(dialog, "Edit parameters string manually");
    EXPECT_TRUE(parameters.isEnabled());
    Type(parameters, "my own");
    filters.setCurrentIndex(0);
    EXPECT_EQ("my own", parameters.text().toStdString());
    filters.setCurrentIndex(4);
    Click(dialog, "Edit parameters string manually");
    EXPECT_EQ(ofFilter, parameters.text());
    EXPECT_EQ(before, record);
}

TEST(ScriptDialog, StoresOnOkOnly) {
    constexpr const char* kOnly =
        "Do not try to open the file using different filters, use only provided settings for AviSynth";
    FileRecord record;
    record.name = L"/data/a.mkv";
    const FileRecord before = record;
    for (const char* button : {"Cancel", "OK"}) {
        ScriptDialog dialog(nullptr, record, kEverything);
        List(dialog).setCurrentText(QStringLiteral("FFMpegSource (recommended)"));
        Click(dialog, "Edit parameters string manually");
        Field(dialog, 0).setText(QString(2000, u'x'));
        Click(dialog, kOnly);
        EXPECT_EQ(before, record);
        Click(dialog, button);
    }
    EXPECT_EQ(rkFFMpegSourceFilter, record.filter);
    EXPECT_EQ(std::wstring(1024, L'x'), record.parameters);
    EXPECT_TRUE(record.customParameters && record.onlyPreferred);
}

}  // namespace
