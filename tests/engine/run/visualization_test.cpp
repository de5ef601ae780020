#include <algorithm>

#include "engine/run/run_measurement.h"
#include "metric/convert_frame.h"
#include "output/text_raster.h"
#include "tests/engine/run/fake_run.h"
#include "tests/file_size_limit.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"

namespace {

/// Pictures of a clip, each packed with its rows bottom-up.
using Pictures = std::vector<std::vector<std::uint8_t>>;

std::vector<std::uint8_t> Packed(const rkVideoImage& image) {
    std::vector<std::uint8_t> bytes(image.PackedFrameBytes());
    image.CopyVisibleTo(bytes.data());
    return bytes;
}

struct VisualizationTest : RunTest {
    static constexpr int kFrames = 36;

    RunParameters Visualized(std::vector<FileRecord> files) {
        RunParameters run = Recorded(std::move(files));
        run.visualization.save = true;
        run.visualization.outputDir = FromUtf8(directory);
        run.visualization.caption = {0, false, false};
        return run;
    }

    /// What the metric paints of each frame, asked directly.
    static Pictures Painted(int index, int component, const std::vector<FileRecord>& files) {
        const Metric::CMetricList& metrics = Metric::GetMetricList();
        std::vector<std::unique_ptr<rkIVideoSource>> sources;
        for (const FileRecord& file : files) sources.push_back(file.OpenSource(true));
        const int width = sources[0]->GetWidth();
        const int height = sources[0]->GetHeight();
        Metric::MetricParameters parameters;
        parameters.component = component;
        parameters.width = width;
        parameters.height = height;
        const auto metric = metrics.CreateInstance(index, parameters);
        EXPECT_TRUE(!metric->IsConfigurable() || metric->Configure(metrics.GetDefaultSettings(index)));
        Metric::CMetricImage planes[2] = {{width, height}, {width, height}};
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
            target.Create(width, height, RGB24, 0);
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
        }
        return pictures;
    }

    /// Takes the caption's head line out of a picture.
    static void Blank(std::vector<std::uint8_t>& picture, int width, int height) {
        const int rowBytes = (3 * width + 3) / 4 * 4;
        for (int y = 15; y <= 15 + TextRaster::kLineHeight; ++y)
            std::fill_n(picture.begin() + (height - 1 - y) * rowBytes + 3 * 15, 3 * (width - 15),
                        std::uint8_t{0});
    }

    /// Every metric on `files`: each file has the pictures that the metric painted.
    void ExpectPaintedPictures(const std::vector<FileRecord>& files, int width, int height) {
        const Metric::CMetricList& metrics = Metric::GetMetricList();
        RunParameters run = Visualized(files);
        MetricSelection selection;
        for (int i = 0; i < metrics.GetCount(); ++i)
            selection.insert({i, metrics.GetComponents(i).front(), metrics.GetDefaultSettings(i)});
        ASSERT_TRUE(RunMeasurement(run, store, selection, &outcome));
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
                const std::wstring path = FromUtf8(directory) + id + L"_yyuv" + videos + L".avi";
                SCOPED_TRACE(ToUtf8(path));
                EXPECT_EQ(1, std::count(run.visualizationPaths.begin(), run.visualizationPaths.end(), path));
                Pictures expected = Painted(selected.metricIndex, selected.component, inputs);
                if (id == L"stssim") expected.erase(expected.begin(), expected.begin() + 32);
                Pictures written = ReadBack(path);
                ASSERT_EQ(expected.size(), written.size());
                for (std::size_t frame = 0; frame < written.size(); ++frame) {
                    EXPECT_NE(expected[frame], written[frame]) << "there is a caption";
                    Blank(expected[frame], width, height);
                    Blank(written[frame], width, height);
                    ASSERT_EQ(expected[frame], written[frame]) << frame;
                }
                ++compared;
            }
        }
        EXPECT_EQ(run.visualizationPaths.size(), compared);
        EXPECT_GE(compared, 17u);
    }
};

}  // namespace

TEST_F(VisualizationTest, EveryMetricsPicturesComeThroughWhole) {
    ExpectPaintedPictures({Noise(L"o", 1, kFrames), Noise(L"p", 2, kFrames)}, kNoiseWidth, kNoiseHeight);
}

#ifdef CLIPS_DIR
TEST_F(VisualizationTest, EveryMetricsPicturesOfACameraClip) {
    std::vector<FileRecord> files(2);
    files[0].name = L"yard_cif";
    files[1].name = L"yard_cif_x264";
    for (FileRecord& file : files) file.sourceName = FromUtf8(CLIPS_DIR "/") + file.name + L".y4m";
    ExpectPaintedPictures(files, 352, 288);
}
#endif

TEST_F(VisualizationTest, AFileThatCantBeOpenedCostsNoValue) {
    int blurring = 0;
    ASSERT_TRUE(Metric::GetMetricList().FindById(L"blurring_metric", blurring));
    const auto measure = [&](const std::wstring& outputDir) {
        RunParameters run = Visualized({Noise(L"o", 1, 3), Noise(L"p", 2, 3)});
        run.visualization.outputDir = outputDir;
        EXPECT_TRUE(RunMeasurement(run, store, {{blurring, 0, {}}}, &outcome));
        return Values();
    };
    const Series expected = measure(FromUtf8(directory));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    const std::wstring noDirectory = FromUtf8(directory) + L"o/";
    EXPECT_EQ(expected, measure(noDirectory));
    EXPECT_EQ((RunOutcome{2, 1}), outcome);
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(),
                            L"Failed to open visualization file \"" + noDirectory +
                                L"blurring_metric_yyuv_o_p.avi\""));
}

TEST_F(VisualizationTest, EqualNamesGetFilesOfTheirOwn) {
    FakeKind kind;
    kind.inputs = {1, 1};
    kind.results = {{0}};
    RunParameters run = Visualized({Noise(L"a/clip", 1, 2), Noise(L"b/clip", 2, 2)});
    ASSERT_TRUE(RunMeasurement(run, store, {{0, 0, {}}}, &outcome, FakeList({kind})));
    const std::wstring path = FromUtf8(directory) + L"fake_yyuv_clip";
    EXPECT_EQ((Lines{path + L".avi", path + L"_2.avi"}), run.visualizationPaths);
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(),
                            L"The name of the visualization file is taken, it gets a number"));
}

TEST_F(VisualizationTest, AFullDiskKeepsWhatIsWrittenAndTheMeasurementGoesOn) {
    RunParameters run = Visualized({Noise(L"o", 1, kFrames), Noise(L"p", 2, kFrames)});
    {
        const FileSizeLimit limit(30 * kNoiseWidth * kNoiseHeight * 3);
        EXPECT_TRUE(RunMeasurement(run, store, {{0, 0, {}}}, &outcome));
    }
    EXPECT_EQ((RunOutcome{2, 1}), outcome);
    EXPECT_EQ(static_cast<std::size_t>(kFrames), Values().at(0).size());
    EXPECT_TRUE(run.visualizationPaths.empty());
    const std::wstring path = FromUtf8(directory) + L"psnr_yyuv_o_p.avi";
    EXPECT_EQ(
        1, std::count(lines.begin(), lines.end(), L"Failed to write visualization file \"" + path + L"\""));

    Pictures expected = Painted(0, 0, run.inputFiles);
    Pictures written = ReadBack(path);
    EXPECT_GE(written.size(), 16u);
    EXPECT_LT(written.size(), 30u);
    for (std::size_t frame = 0; frame < written.size(); ++frame) {
        Blank(expected[frame], kNoiseWidth, kNoiseHeight);
        Blank(written[frame], kNoiseWidth, kNoiseHeight);
        EXPECT_EQ(expected[frame], written[frame]) << frame;
    }
}
