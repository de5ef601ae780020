#include "tests/report/measured_run.h"

#include "platform/text.h"
#include "report/report_frame.h"
#include "tests/report/made_results.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <QSlider>

#include <cmath>
#include <cstdio>

namespace {

// Three flat clips: the distances to the original, and so the PSNR, are known for each frame.
TEST(MeasuredRun, IsShownAsItWasMeasured) {
    const TemporaryDirectory directory;
    constexpr int kFrames = 30;
    const auto distance = [](int file, int frame) {
        return file == 0 ? 0 : file + frame % 7 + (frame == 21 ? 20 : 0);
    };
    std::map<int, FileRecord> files;
    for (int file = 0; file < 3; ++file) {
        std::string bytes;
        for (int frame = 0; frame < kFrames; ++frame)
            bytes += std::string(32 * 32, static_cast<char>(60 + distance(file, frame))) +
                     std::string(32 * 32 / 2, '\x80');
        FileRecord& record = files[file];
        record.name = record.sourceName =
            FromUtf8(directory.Write("clip" + std::to_string(file) + ".yuv", bytes));
        record.width = record.height = 32;
        record.yuvType = IYUV;
    }
    const MeasuredRun run(files, directory.Root(), 2);
    const Viewer viewer(run.Parameters());
    auto* slider = viewer.Find<QSlider>("Video slide");
    EXPECT_EQ(0, slider->minimum());
    EXPECT_EQ(kFrames - 1, slider->maximum());
    for (int frame = 0; frame < kFrames; ++frame) {
        slider->setValue(frame);
        for (const int file : {1, 2}) {
            const double psnr = 20 * std::log10(255.0 / distance(file, frame));
            const QString text =
                viewer.Find<QLineEdit>(file == 1 ? "Value, first processed" : "Value, second processed")
                    ->text();
            EXPECT_NEAR(psnr, text.toDouble(), 1e-3) << frame;
            EXPECT_EQ(4, text.size() - text.indexOf(u'.') - 1);
        }
    }

    ASSERT_TRUE(run.Parameters().badFrames);
    EXPECT_EQ(2u, run.Parameters().badFrames->size());
    slider->setValue(kFrames - 1);
    for (const int bad : {run.Parameters().badFrames->at(1), run.Parameters().badFrames->at(0)}) {
        viewer.dialog->Controller().GoToPreviousBadFrame();
        EXPECT_EQ(bad, viewer.Range().Current());
    }
}

}  // namespace
