#include "engine/run/frame_loop.h"

#include <boost/make_shared.hpp>

#include "tests/engine/run/fake_run.h"

namespace {

/// Luma frames of the given sides, one after the other; frame n is flat with the value n + 1.
class SizedSource : public rkIVideoSource {
public:
    explicit SizedSource(std::vector<int> frameSides) : sides(std::move(frameSides)) {}
    int ReadNextFrameImage(rkVideoImage& image) override {
        const int side = sides[static_cast<std::size_t>(position++)];
        const std::vector<std::uint8_t> packed(static_cast<std::size_t>(side * side),
                                               static_cast<std::uint8_t>(position));
        image.Create(side, side, Y, 0);
        image.LoadFrame(packed.data());
        return 0;
    }
    int ReadFrame(std::uint8_t*, int) override { return 1; }
    int ReadNextFrame(std::uint8_t*) override { return 1; }
    int ReadFrameImage(rkVideoImage&, int) override { return 1; }
    int Close() override { return 0; }
    void GetFullDescription(wchar_t*, int) override {}
    void GetDescription(wchar_t*, int) override {}
    void GetErrorText(int, wchar_t*, int) override {}
    bool IsBadFrameNumber(int) override { return false; }
    bool IsEndOfVideo() override { return false; }
    int GetWidth() override { return 8; }
    int GetHeight() override { return 8; }
    int GetColorSpace() override { return Y; }

private:
    std::vector<int> sides;
    int position = 0;
};

struct FrameLoopTest : RunTest {
    /// A file whose frames have these sides, 8 being the run's, converted for the component Y.
    static OpenedFile File(std::vector<int> sides) {
        OpenedFile file;
        file.source = boost::make_shared<SizedSource>(std::move(sides));
        file.frameImage = boost::make_shared<rkVideoImage>();
        file.components[0] = {false, boost::make_shared<rkVideoImage>(), boost::make_shared<rkVideoImage>(),
                              boost::make_shared<Metric::CMetricImage>(8, 8)};
        return file;
    }

    static ScheduledMetric Metric(int component) {
        FakeKind kind;
        return {boost::make_shared<FakeMetric>(kind, Metric::MetricParameters()), component, 0};
    }

    void Run(RunState& state) {
        FileRecord original, mask;
        original.name = L"a";
        mask.name = L"m";
        RunParameters run = Recorded({original});
        run.maskFile = mask;
        RunFrameLoop(state, run, store, outcome);
    }

    CResultsStore store;
    RunOutcome outcome;
};

TEST_F(FrameLoopTest, AFailedConversionIsTriedAgainInTheNextFrame) {
    RunState state;
    state.opened[0] = File({8, 6, 6, 8});
    state.oneFileSchedule = {{0, {Metric(0), Metric(5)}}};  // no file has component 5
    state.length = 4;
    Run(state);
    const std::wstring failed =
        L"Failed to convert image frame from sequence \"a\" into YYUV color, measurement skipped";
    EXPECT_EQ((Lines{failed, failed}), lines);
    EXPECT_EQ((RunOutcome{1, 2}), outcome);

    // The metric got the last good picture meanwhile.
    float value = 0;
    for (const auto& [frame, expected] : {std::pair(0, 1.f), {1, 1.f}, {2, 1.f}, {3, 4.f}}) {
        const std::vector<Metric::MetricValue> values = store.GetFrameValues(frame);
        ASSERT_EQ(1u, values.size());
        value = values[0].value;
        EXPECT_EQ(expected, value) << frame;
    }
}

TEST_F(FrameLoopTest, AMaskThatCouldntBeConvertedStaysOut) {
    RunState state;
    state.opened[0] = File({8, 8, 8});
    state.opened[kMaskFile] = File({6, 8, 8});
    state.length = 3;
    Run(state);
    EXPECT_EQ(
        (Lines{L"Failed to convert image frame from sequence \"m\" into YYUV color, measurement skipped"}),
        lines);
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_TRUE(state.opened[kMaskFile].components[0].failed);
}

TEST_F(FrameLoopTest, SetsOfFilesThatArentOpen) {
    RunState state;
    state.opened[0] = File({8});
    state.oneFileSchedule = {{1, {Metric(0)}}};
    state.twoFileSchedule = {{0, 2, {Metric(0)}}};
    state.length = 1;
    Run(state);
    EXPECT_EQ((Lines{L"Trying to calculate metric using incorrect file, developer error, skipping...",
                     L"Trying to calculate metric using incorrect files, developer error, skipping..."}),
              lines);
    int count = 0;
    EXPECT_FALSE(store.GetFrameCount(count));
}

}  // namespace
