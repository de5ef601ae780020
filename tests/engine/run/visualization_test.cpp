#include <algorithm>

#include "engine/run/run_measurement.h"
#include "metric/convert_frame.h"
#include "output/text_raster.h"
#include "tests/engine/run/fake_run.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

/// Pictures of a clip, each packed with its rows bottom-up and without the caption's head line.
using Pictures = std::vector<std::vector<std::uint8_t>>;

std::vector<std::uint8_t> Packed(const rkVideoImage& image, bool blanks = true) {
    std::vector<std::uint8_t> bytes(image.PackedFrameBytes());
    image.CopyVisibleTo(bytes.data());
    const int width = image.VisibleWidth(), rowBytes = (3 * width + 3) / 4 * 4;
    for (int y = 15; blanks && y <= 15 + TextRaster::kLineHeight; ++y)
        std::fill_n(bytes.begin() + (image.VisibleHeight() - 1 - y) * rowBytes + 3 * 15, 3 * (width - 15), 0);
    return bytes;
}

struct VisualizationTest : RunTest {
    bool Measure(std::vector<FileRecord> files, const MetricSelection& selection,
                 const Metric::CMetricList& metrics) {
        run = Recorded(std::move(files));
        run.visualization.save = true;
        run.visualization.outputDir = directory;
        run.visualization.caption = {0, false, false};
        return RunMeasurement(run, store, selection, &outcome, metrics);
    }

    /// What the metric paints of each frame, asked directly.
    static Pictures Painted(int index, int component, const std::vector<FileRecord>& files) {
        const Metric::CMetricList& metrics = Metric::GetMetricList();
        std::vector<std::unique_ptr<rkIVideoSource>> sources;
        for (const FileRecord& file : files) sources.push_back(file.OpenSource(true));
        Metric::MetricParameters parameters;
        parameters.component = component;
        parameters.width = kNoiseWidth;
        parameters.height = kNoiseHeight;
        const auto metric = metrics.CreateInstance(index, parameters);
        EXPECT_TRUE(!metric->IsConfigurable() || metric->Configure(metrics.GetDefaultSettings(index)));
        Metric::CMetricImage planes[2] = {{kNoiseWidth, kNoiseHeight}, {kNoiseWidth, kNoiseHeight}};
        rkVideoImage read[2], first[2], second[2];

        Pictures pictures;
        for (int frame = sources[0]->GetFrameCount(); frame > 0; --frame) {
            std::vector<Metric::CMetricImage*> images;
            for (std::size_t i = 0; i < sources.size(); ++i) {
                EXPECT_EQ(0, sources[i]->ReadNextFrameImage(read[i]));
                EXPECT_TRUE(Metric::ConvertFrame(read[i], first[i], second[i], planes[i], 0, component));
                images.push_back(&planes[i]);
            }
            rkVideoImage target;
            target.Create(kNoiseWidth, kNoiseHeight, RGB24, 0);
            metric->MeasureAndVisualize(images, target);
            target.FlipVertical();
            pictures.push_back(Packed(target));
        }
        return pictures;
    }

    static Pictures ReadBack(const std::wstring& path) {
        const auto source = rkCreateVideoSource(path, false);
        EXPECT_NE(nullptr, source) << ToUtf8(path);
        if (source == nullptr) return {};
        EXPECT_EQ(25, source->GetRate());
        EXPECT_EQ(1, source->GetScale());
        Pictures pictures;
        rkVideoImage image;
        for (int frame = 0; frame < source->GetFrameCount(); ++frame) {
            EXPECT_EQ(0, source->ReadNextFrameImage(image));
            EXPECT_EQ(RGB24, image.ColorSpace());
            pictures.push_back(Packed(image));
            EXPECT_NE(pictures.back(), Packed(image, false)) << "there is a caption";
        }
        return pictures;
    }
};

TEST_F(VisualizationTest, EveryMetricsPicturesComeThroughWhole) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    constexpr int kFrames = 36;  // stSSIM has a picture from the 33rd on
    const std::vector<FileRecord> files = {Noise(L"o", 1, kFrames), Noise(L"p", 2, kFrames)};
    MetricSelection selection;
    for (int i = 0; i < metrics.GetCount(); ++i)
        selection.insert({i, metrics.GetComponents(i).front(), metrics.GetDefaultSettings(i)});
    ASSERT_TRUE(Measure(files, selection, metrics));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);

    std::size_t compared = 0;
    for (const SelectedMetric& selected : selection) {
        const std::wstring& id = metrics.GetId(selected.metricIndex);
        std::vector<std::vector<FileRecord>> sets = {files};
        if (metrics.GetInputCount(selected.metricIndex, true) == 1) sets = {{files[0]}, {files[1]}};
        for (const auto& inputs : sets) {
            std::wstring videos;
            for (const FileRecord& input : inputs) videos += L"_" + input.name;
            if (id == L"roi_psnr")
                videos += videos;  // the sample plug-in has two results, each on both files
            const std::wstring path = directory + id + L"_yyuv" + videos + L".avi";
            SCOPED_TRACE(ToUtf8(path));
            EXPECT_EQ(1, std::count(run.visualizationPaths.begin(), run.visualizationPaths.end(), path));
            Pictures expected = Painted(selected.metricIndex, selected.component, inputs);
            if (id == L"stssim") expected.erase(expected.begin(), expected.begin() + 32);
            EXPECT_TRUE(expected == ReadBack(path));
            ++compared;
        }
    }
    EXPECT_EQ(run.visualizationPaths.size(), compared);
    EXPECT_GE(compared, 17u);
}

TEST_F(VisualizationTest, EqualNamesGetFilesOfTheirOwn) {
    FakeKind kind;
    kind.inputs = {1, 1};
    kind.results = {{0}};
    ASSERT_TRUE(Measure({Noise(L"a/clip", 1, 2), Noise(L"b/clip", 2, 2)}, {{0, 0, {}}}, FakeList({kind})));
    const std::wstring path = directory + L"fake_yyuv_clip";
    EXPECT_EQ((Lines{path + L".avi", path + L"_2.avi"}), run.visualizationPaths);
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(),
                            L"The name of the visualization file is taken, it gets a number"));
}

}  // namespace
