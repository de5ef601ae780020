#include "tests/report/measured_run.h"

#include "platform/text.h"
#include "tests/report/made_results.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <QSlider>

namespace {

// Three flat clips, whose distance to the original is another one in each frame.
TEST(MeasuredRun, IsShownAsItWasMeasured) {
    const TemporaryDirectory directory;
    constexpr int kFrames = 30;
    std::map<int, FileRecord> files;
    for (int file = 0; file < 3; ++file) {
        std::string bytes;
        for (int frame = 0; frame < kFrames; ++frame) {
            const int distance = file == 0 ? 0 : file + frame % 7 + (frame == 21 ? 20 : 0);
            bytes +=
                std::string(32 * 32, static_cast<char>(60 + distance)) + std::string(32 * 32 / 2, '\x80');
        }
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
    slider->setValue(0);
    for (int frame = 0; frame < kFrames; ++frame) {
        for (const int id : run.Results().GetResultIds()) {
            ResultRecord record;
            float value = 0;
            ASSERT_TRUE(run.Results().GetResultRecord(id, record));
            ASSERT_TRUE(run.Results().GetValue(id, frame, value));
            const bool isFirst = record.files.back() == files[1];
            EXPECT_EQ(QString::number(value, 'f', 4),
                      viewer.Find<QLineEdit>(isFirst ? "Value, first processed" : "Value, second processed")
                          ->text())
                << frame;
        }
        viewer.Click("Next frame");
    }

    ASSERT_TRUE(run.Parameters().badFrames);
    const std::vector<int> bad = *run.Parameters().badFrames;
    ASSERT_EQ(2u, bad.size());
    viewer.Press(Qt::CTRL | Qt::Key_Left);
    EXPECT_EQ(bad[1], viewer.Range().Current());
    viewer.Click("Previous bad frame");
    EXPECT_EQ(bad[0], viewer.Range().Current());
}

}  // namespace
