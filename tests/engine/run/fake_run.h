#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/model/measurement_job.h"
#include "platform/text.h"
#include "tests/engine/fake_metric.h"
#include "video/color_space.h"

using Lines = std::vector<std::wstring>;

class RecordingLog : public ILog {
public:
    explicit RecordingLog(Lines& logLines) : lines(logLines) {}
    bool Log(const std::wstring& message) override {
        lines.push_back(message);
        return true;
    }

private:
    Lines& lines;
};

/// Writes its calls down, the positions apart.
class RecordingProgress : public IProgress {
public:
    RecordingProgress(Lines& progressCalls, std::vector<int>& progressPositions)
        : calls(progressCalls), positions(progressPositions) {}
    void Start(const MetricSelection&, const std::vector<std::wstring>& names) override {
        std::wstring call = L"start";
        for (const std::wstring& name : names) call += L" " + name;
        calls.push_back(call);
    }
    void SetMinimum(int value) override { calls.push_back(L"minimum " + std::to_wstring(value)); }
    void SetMaximum(int value) override { calls.push_back(L"maximum " + std::to_wstring(value)); }
    void SetPosition(int position) override { positions.push_back(position); }
    void Finish() override { calls.push_back(L"finish"); }

private:
    Lines& calls;
    std::vector<int>& positions;
};

/// A directory of tiny raw clips, and what a run said.
class RunTest : public testing::Test {
protected:
    static constexpr int kSide = 16;

    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        directory = testing::TempDir() + "tolvane_run_" + std::to_string(getpid()) + test->name() + "/";
        std::filesystem::create_directories(directory);
    }
    void TearDown() override { std::filesystem::remove_all(directory); }

    std::string PathOf(const std::wstring& name) const { return directory + ToUtf8(name); }

    /// A clip of luma only, `side` by `side`, whose frame n is flat with the value `first` + n. Its name in
    /// the log is `name` alone.
    FileRecord Clip(const std::wstring& name, int frames, int first, int side = kSide) const {
        std::ofstream file(PathOf(name), std::ios::binary);
        for (int n = 0; n < frames; ++n)
            file << std::string(static_cast<std::size_t>(side * side), static_cast<char>(first + n));
        return RawRecord(name, side, side);
    }

    FileRecord RawRecord(const std::wstring& name, int width, int height) const {
        FileRecord record;
        record.name = name;
        record.sourceName = FromUtf8(PathOf(name));
        record.width = width;
        record.height = height;
        record.yuvType = Y;
        return record;
    }

    /// The parameters of a run on `files` that is recorded here.
    RunParameters Recorded(std::vector<FileRecord> files) {
        RunParameters run;
        run.log = std::make_unique<RecordingLog>(lines);
        run.progress = std::make_unique<RecordingProgress>(progressCalls, positions);
        run.interruption = std::make_unique<InterruptionToken>();
        run.inputFiles = std::move(files);
        return run;
    }

    std::string directory;
    Lines lines;
    Lines progressCalls;
    std::vector<int> positions;
};
