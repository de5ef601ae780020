#include "app/dialogs/compressor_dialog.h"

#include "app/dialogs/output_dialog.h"
#include "platform/vfw/bitmap_format.h"
#include "tests/platform/qt/user.h"

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

TEST(CompressorForm, StoresTheChoice) {
    using Numbers = std::tuple<std::uint32_t, std::uint32_t, int, int>;  // type, handler, quality, data rate
    constexpr Numbers kNone = {0, 0, -1, 0};
    constexpr Numbers kUsual = {kFccVideoCodec, kMotionJpeg, -1, 0};
    constexpr Numbers kBetween = {kFccVideoCodec, kMotionJpeg, 4055, 7};  // no position of the slider
    const std::tuple<const char*, Numbers, std::uint32_t, int, Numbers> kCases[] = {
        {"another one", kNone, kMotionJpeg, 40, {kFccVideoCodec, kMotionJpeg, 4000, 0}},
        {"lossless: there is no quality", kNone, kHuffyuv, 40, {kFccVideoCodec, kHuffyuv, -1, 0}},
        {"back to uncompressed", kBetween, 0, 40, kNone},
        {"unchanged", kBetween, kMotionJpeg, 40, kBetween},
        {"unchanged, with the compressor's own quality", kUsual, kMotionJpeg, 75, kUsual},
        {"another quality", kBetween, kMotionJpeg, 41, {kFccVideoCodec, kMotionJpeg, 4100, 0}},
        {"one that nobody has", {kFccVideoCodec, 1, 20000, 7}, 0, 100, kNone},
    };
    for (const auto& [what, before, selected, sliderQuality, after] : kCases) {
        SCOPED_TRACE(what);
        const auto [type, handler, quality, dataRate] = before;
        const HIC hic = ICOpen(type, handler, IcMode::Compress);
        COMPVARS choice = {type, handler, quality, dataRate, 0, hic};
        CompressorForm form = CompressorFormFrom(choice);
        form.codec = 0;
        while (form.codecs.at(static_cast<std::size_t>(form.codec)).handler != selected) ++form.codec;
        form.quality = sliderQuality;
        StoreForm(form, choice);
        EXPECT_EQ(after, Numbers(choice.fccType, choice.fccHandler, choice.lQ, choice.lDataRate));
        EXPECT_EQ(selected != 0, choice.hic != nullptr);
        EXPECT_TRUE(handler != selected || hic == choice.hic) << "its state is lost";
    }
}

TEST(CompressorDialog, SliderIsForLossyOnesAndADoubleClickChooses) {
    COMPVARS choice;
    choice.lQ = -1;
    CompressorDialog dialog(nullptr, choice, QString::fromLatin1(kTitle));
    dialog.show();
    auto& slider = *dialog.findChild<QSlider*>();
    auto& list = *dialog.findChild<QTreeWidget*>();
    EXPECT_EQ(static_cast<int>(ListCompressors().size()), list.topLevelItemCount());
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

    dialog.show();
    const QPoint second = list.visualItemRect(list.topLevelItem(1)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(ListCompressors()[1].handler, choice.fccHandler);
}

// The whole way from the dialog of output settings: the choice outlives its cancellation and is shown again.
TEST(CompressorDialog, ChoiceTakesEffectAtOnce) {
    InstallCompressorChooser();
    MeasurementJob job;
    job.visualization.save = true;
    rkCompressorSettings& chosen = job.visualization.compressor;
    const auto choose = [&job](const std::string& current, auto act, const std::string& after) {
        OutputDialog dialog(nullptr, job);
        dialog.show();
        Find<QLabel>(dialog, "Current: " + current);
        User user;
        user.In(kTitle, act);
        Click(dialog, "Choose compression");
        Find<QLabel>(dialog, "Current: " + after);
        dialog.reject();
    };
    const std::string motion = "Motion JPEG, RGB converted to 4:2:0";
    const auto take = [](QWidget& window) {
        Select(window, "MJPG");
        window.findChild<QSlider*>()->setValue(60);
        Click(window, "OK");
    };
    choose("Uncompressed RGB", take, motion);
    EXPECT_EQ(kMotionJpeg, chosen.fccHandler);
    EXPECT_EQ(6000, chosen.quality);
    const rkCompressorSettings before = chosen;
    const auto look = [](QWidget& window) {
        EXPECT_EQ("MJPG", window.findChild<QTreeWidget*>()->currentItem()->text(1).toStdString());
        EXPECT_EQ(60, window.findChild<QSlider*>()->value());
        Select(window, "HFYU");
        window.close();
    };
    choose(motion, look, motion);
    EXPECT_EQ(before, chosen);
    SetCompressorChooser(nullptr);
}

}  // namespace
