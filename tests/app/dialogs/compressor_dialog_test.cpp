#include "app/dialogs/compressor_dialog.h"

#include "app/dialogs/output_dialog.h"
#include "platform/vfw/bitmap_format.h"
#include "tests/app/user.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QTreeWidget>

namespace {

constexpr std::uint32_t kMotionJpeg = FourCC('M', 'J', 'P', 'G');
constexpr std::uint32_t kHuffyuv = FourCC('H', 'F', 'Y', 'U');
constexpr const char* kTitle = "Choose compressor:";

/// Selects by the four letters.
void Select(QWidget& dialog, const char* letters) {
    auto& list = *dialog.findChild<QTreeWidget*>();
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        if (list.topLevelItem(i)->text(1) == QLatin1String(letters))
            list.setCurrentItem(list.topLevelItem(i));
    ASSERT_EQ(letters, list.currentItem()->text(1).toStdString());
}

TEST(FourLetters, OfACode) {
    EXPECT_EQ(L"MJPG", FourLetters(kMotionJpeg));
    EXPECT_EQ(L"", FourLetters(0));
    EXPECT_EQ(L"DIB.", FourLetters(FourCC('D', 'I', 'B', ' ')));
    EXPECT_EQ(L"a..\x7E", FourLetters(FourCC('a', '\x01', '\xE9', '~')));
}

TEST(CompressorForm, StoresTheChoice) {
    struct Numbers {
        std::uint32_t type, handler;
        int quality, dataRate;
    };
    const struct {
        const char* what;
        Numbers before;
        std::uint32_t handler;  // selected
        int quality;
        Numbers after;
    } cases[] = {
        {"another one", {0, 0, -1, 0}, kMotionJpeg, 40, {kFccVideoCodec, kMotionJpeg, 4000, 0}},
        {"lossless: there is no quality", {0, 0, -1, 0}, kHuffyuv, 40, {kFccVideoCodec, kHuffyuv, -1, 0}},
        {"back to uncompressed", {kFccVideoCodec, kMotionJpeg, 4000, 7}, 0, 40, {0, 0, -1, 0}},
        {"unchanged, with a quality between the slider's",
         {kFccVideoCodec, kMotionJpeg, 4055, 7},
         kMotionJpeg,
         40,
         {kFccVideoCodec, kMotionJpeg, 4055, 7}},
        {"unchanged, with the compressor's own quality",
         {kFccVideoCodec, kMotionJpeg, -1, 0},
         kMotionJpeg,
         75,
         {kFccVideoCodec, kMotionJpeg, -1, 0}},
        {"another quality",
         {kFccVideoCodec, kMotionJpeg, 4055, 7},
         kMotionJpeg,
         41,
         {kFccVideoCodec, kMotionJpeg, 4100, 0}},
        {"one that nobody has", {kFccVideoCodec, 1, 20000, 7}, 0, 100, {0, 0, -1, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const HIC before = ICOpen(c.before.type, c.before.handler, IcMode::Compress);
        COMPVARS choice = {c.before.type, c.before.handler, c.before.quality, c.before.dataRate, 0, before};
        CompressorForm form = CompressorFormFrom(choice);
        form.codec = 0;
        while (form.codecs.at(static_cast<std::size_t>(form.codec)).handler != c.handler) ++form.codec;
        form.quality = c.quality;
        StoreForm(form, choice);
        EXPECT_EQ(c.after.type, choice.fccType);
        EXPECT_EQ(c.after.handler, choice.fccHandler);
        EXPECT_EQ(c.after.quality, choice.lQ);
        EXPECT_EQ(c.after.dataRate, choice.lDataRate);
        EXPECT_EQ(c.handler != 0, choice.hic != nullptr);
        if (c.before.handler == c.handler) {
            EXPECT_EQ(before, choice.hic) << "its state is lost";
        }
    }
}

TEST(CompressorDialog, SliderIsForLossyOnes) {
    COMPVARS choice;
    choice.lQ = -1;
    CompressorDialog dialog(nullptr, choice, QString::fromLatin1(kTitle));
    auto& slider = *dialog.findChild<QSlider*>();
    EXPECT_EQ(static_cast<int>(ListCompressors().size()),
              dialog.findChild<QTreeWidget*>()->topLevelItemCount());
    EXPECT_EQ(75, slider.value());
    for (const auto& [letters, isLossy] : {std::pair("", false), {"HFYU", false}, {"MJPG", true}}) {
        Select(dialog, letters);
        EXPECT_EQ(isLossy, slider.isEnabled()) << letters;
        EXPECT_EQ(isLossy, slider.toolTip().isEmpty()) << letters;
    }
    slider.setValue(30);
    EXPECT_EQ(0u, choice.fccHandler);
    dialog.accept();
    EXPECT_EQ(kMotionJpeg, choice.fccHandler);
    EXPECT_EQ(3000, choice.lQ);
}

TEST(CompressorDialog, DoubleClickChooses) {
    COMPVARS choice;
    CompressorDialog dialog(nullptr, choice, QString::fromLatin1(kTitle));
    dialog.show();
    auto& list = *dialog.findChild<QTreeWidget*>();
    const QPoint second = list.visualItemRect(list.topLevelItem(1)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(QDialog::Accepted, dialog.result());
    EXPECT_EQ(ListCompressors()[1].handler, choice.fccHandler);
}

// The whole way from the dialog of output settings: the choice stays when that is cancelled, and is shown
// again.
TEST(CompressorDialog, ChoiceTakesEffectAtOnce) {
    InstallCompressorChooser();
    MeasurementJob job;
    job.visualization.save = true;
    {
        OutputDialog dialog(nullptr, job);
        dialog.show();
        const auto current = [&] {
            const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
            for (const QLabel* label : labels)
                if (label->text().startsWith(QStringLiteral("Current:"))) return label->text().toStdString();
            return std::string();
        };
        EXPECT_EQ("Current: Uncompressed RGB", current());
        User user;
        user.In(kTitle, [](QWidget& window) {
            Select(window, "MJPG");
            window.findChild<QSlider*>()->setValue(60);
            return true;
        });
        user.Press(kTitle, "OK");
        Click(dialog, "Choose compression");
        EXPECT_EQ("Current: Motion JPEG, RGB converted to 4:2:0", current());
        dialog.reject();
    }
    EXPECT_EQ(kMotionJpeg, job.visualization.compressor.fccHandler);
    EXPECT_EQ(6000, job.visualization.compressor.quality);

    const rkCompressorSettings before = job.visualization.compressor;
    OutputDialog dialog(nullptr, job);
    dialog.show();
    User user;
    user.In(kTitle, [](QWidget& window) {
        EXPECT_EQ("MJPG", window.findChild<QTreeWidget*>()->currentItem()->text(1).toStdString());
        EXPECT_EQ(60, window.findChild<QSlider*>()->value());
        Select(window, "HFYU");
        return window.close();
    });
    Click(dialog, "Choose compression");
    EXPECT_EQ(before, job.visualization.compressor);
    SetCompressorChooser(nullptr);
}

}  // namespace
