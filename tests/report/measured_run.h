#pragma once

#include "engine/run/measurement_worker.h"
#include "platform/text.h"
#include "report/rules/report_parameters.h"

#include <map>
#include <memory>
#include <string>

/// A real comparative run, with its bad frames, as the programs make it.
class MeasuredRun : private IRunVoices, private IRunObserver {
public:
    /// Measures luma PSNR. `given` are the files by their index, `badFrames` how many bad frames are saved to
    /// `directory`, 0 for none.
    MeasuredRun(const std::map<int, FileRecord>& given, const std::string& directory, int badFrames)
        : files(given) {
        MeasurementJob job;
        SelectedMetric metric;
        Metric::GetMetricList().FindById(L"psnr", metric.metricIndex);
        job.selection = {metric};
        job.metricSettings.resize(static_cast<std::size_t>(Metric::GetMetricList().GetCount()));
        for (const auto& [index, file] : given) {
            job.fileSlots.at(static_cast<std::size_t>(index)) = file;
            job.run.inputFiles.push_back(file);
        }
        job.comparativeAnalysis = given.size() == 3;
        job.badFrames.save = badFrames > 0;
        job.badFrames.count = badFrames;
        job.badFrames.radius = 3;
        job.badFrames.outputDir = FromUtf8(directory);
        MeasurementWorker(job, *this, *this);
    }

    ReportParameters Parameters() const {
        return {*finish->results, finish->badFrames.get(), files, finish->yuvTable};
    }

    const CResultsStore& Results() const { return *finish->results; }

private:
    std::unique_ptr<IProgress> CreateProgress() override { return nullptr; }
    std::unique_ptr<ILog> CreateLog(const std::wstring&) override { return nullptr; }
    void SetRunActive(bool) override {}
    void WithdrawStop() override {}
    void RunFinished(std::unique_ptr<FinishRecord> record) override { finish = std::move(record); }

    std::map<int, FileRecord> files;
    std::unique_ptr<FinishRecord> finish;
};
