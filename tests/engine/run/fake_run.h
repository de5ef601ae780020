#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "engine/model/measurement_job.h"
#include "engine/model/results_store.h"
#include "engine/model/run_outcome.h"
#include "platform/text.h"
#include "tests/engine/fake_metric.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

using Lines = std::vector<std::wstring>;
using Series = std::vector<std::vector<float>>;

struct RecordingLog : ILog {
    explicit RecordingLog(Lines& logLines) : lines(logLines) {}
    bool Log(const std::wstring& message) override { return lines.push_back(message), true; }
    Lines& lines;
};

struct RecordingProgress : IProgress {
    explicit RecordingProgress(Lines& progressCalls) : calls(progressCalls) {}
    void Start(const MetricSelection&, const std::vector<std::wstring>& names) override {
        calls.push_back(L"start");
        calls.insert(calls.end(), names.begin(), names.end());
    }
    void SetMinimum(int value) override { calls.push_back(L"from " + std::to_wstring(value)); }
    void SetMaximum(int value) override { calls.push_back(L"to " + std::to_wstring(value)); }
    void SetPosition(int value) override { calls.push_back(L"at " + std::to_wstring(value)); }
    void Finish() override { calls.push_back(L"finish"); }
    Lines& calls;
};

/// A directory of tiny raw clips, and what a run said and left behind.
class RunTest : public testing::Test {
protected:
    static constexpr int kSide = 16, kPixels = kSide * kSide;
    static constexpr int kNoiseWidth = 150;  // rows of bitmaps and AVI files have bytes of padding
    static constexpr int kNoiseHeight = 64;

    std::string PathOf(const std::wstring& name) const { return temporary.Path(ToUtf8(name)); }

    /// A clip that isn't there.
    FileRecord Raw(const std::wstring& name, int width = kSide, int height = kSide, int layout = Y) const {
        FileRecord record;
        record.name = name;
        record.sourceName = FromUtf8(PathOf(name));
        record.width = width;
        record.height = height;
        record.yuvType = layout;
        return record;
    }
    /// A clip of luma whose frame n is flat with the value `first` + n.
    FileRecord Clip(const std::wstring& name, int frames, int first) const {
        std::ofstream file(PathOf(name), std::ios::binary);
        for (int n = 0; n < frames; ++n) file << std::string(kPixels, static_cast<char>(first + n));
        return Raw(name);
    }
    /// A clip of 4:2:0: noise around a slow motion, other noise for another seed.
    FileRecord Noise(const std::wstring& name, unsigned seed, int frames) const {
        std::mt19937 random(seed);
        std::filesystem::create_directories(std::filesystem::path(PathOf(name)).parent_path());
        std::ofstream file(PathOf(name), std::ios::binary);
        for (int frame = 0; frame < frames; ++frame)
            for (int i = 0; i < kNoiseWidth * kNoiseHeight * 3 / 2; ++i)
                file.put(
                    static_cast<char>((i % kNoiseWidth * 2 + frame + static_cast<int>(random() % 40)) % 256));
        return Raw(name, kNoiseWidth, kNoiseHeight, IYUV);
    }

    /// The parameters of a run that is recorded here, from scratch.
    RunParameters Recorded(std::vector<FileRecord> files) {
        lines.clear();
        calls.clear();
        store = {};
        RunParameters parameters;
        parameters.log = std::make_unique<RecordingLog>(lines);
        parameters.progress = std::make_unique<RecordingProgress>(calls);
        parameters.interruption = std::make_unique<InterruptionToken>();
        parameters.inputFiles = std::move(files);
        return parameters;
    }

    /// The values of each result in ascending order of ids, which is the order of the schedule.
    Series Values() const {
        Series all;
        for (const int id : store.GetResultIds()) {
            all.emplace_back();
            for (const FrameValue& entry : store.GetSeries(id)) {
                EXPECT_EQ(static_cast<int>(all.back().size()), entry.frame);
                all.back().push_back(entry.value);
            }
        }
        return all;
    }

    TemporaryDirectory temporary;
    const std::wstring directory = FromUtf8(temporary.Path(""));
    RunParameters run;
    Lines lines;  // of the log
    Lines calls;  // of the progress
    CResultsStore store;
    RunOutcome outcome;
};
