#pragma once

#include <string>

#include "catalogue/metric_list.h"
#include "engine/model/output_settings.h"
#include "engine/model/results_store.h"

/// Writes one CSV file with all results of a run: a column for each result; lines 1 to 3 the column heads,
/// line 4 the averages, from line 5 on a line for each frame from 0. Nothing is quoted. The frame number
/// isn't written.
///
/// Made for one save.
class CsvWriter {
public:
    explicit CsvWriter(CsvSettings settings, const Metric::CMetricList& metrics = Metric::GetMetricList());

    /// Makes the path and writes the file, over one of that name. False if it couldn't be written whole; then
    /// what was there is untouched.
    bool Save(const CResultsStore& store);

    /// The full path that `Save` made; empty before.
    const std::wstring& GetPath() const { return path; }

private:
    std::wstring FileName(const CResultsStore& store) const;
    std::wstring HeadLines(const CResultsStore& store) const;
    std::wstring ValueLines(const CResultsStore& store) const;
    std::wstring Number(float value) const;
    void EndCell(std::wstring& text, bool last) const;

    CsvSettings settings;
    const Metric::CMetricList& metrics;
    std::wstring path;
};
