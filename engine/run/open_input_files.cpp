#include "engine/run/open_input_files.h"

#include "engine/run/run_log.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

namespace {

void ReportFailure(RunOutcome* outcome) {
    if (outcome != nullptr) *outcome = {CompletionPartial, CompletionPartial};
}

std::wstring Size(int width, int height) {
    return std::to_wstring(width) + L"x" + std::to_wstring(height);
}

bool HasSize(rkIVideoSource& source, int width, int height) {
    return source.GetWidth() == width && source.GetHeight() == height;
}

/// The line for a source of another size than the run's, up to what follows from it.
std::wstring DifferentSize(const FileRecord& record, rkIVideoSource& source) {
    return L"Resolution of " + Quoted(record.name) + L" (" + Size(source.GetWidth(), source.GetHeight()) +
           L") is different from default, ";
}

void KeepFile(OpenedFiles& opened, int file, const RunParameters& run,
              std::unique_ptr<rkIVideoSource> source) {
    LogLine(run, L"Opened file " + Quoted(RecordOf(run, file).name) + L", " + DescriptionOf(*source));

    OpenedFile& entry = opened[file];
    entry.source = std::move(source);
    entry.frameImage = boost::make_shared<rkVideoImage>();
    entry.isMask = file == kMaskFile;
}

void OpenMask(OpenedFiles& opened, const RunParameters& run, RunOutcome* outcome, int width, int height,
              int length) {
    const FileRecord& record = run.maskFile;
    std::unique_ptr<rkIVideoSource> source = record.OpenSource(true);
    LogLine(run, L"Opening file with a mask" + Quoted(record.name));
    if (source == nullptr) {
        LogLine(run, L"Failed to open file with a mask" + Quoted(record.name));
        ReportFailure(outcome);
        return;
    }
    if (!HasSize(*source, width, height)) {
        LogLine(run, DifferentSize(record, *source) + L"not using the mask.");
        return;
    }
    if (source->GetFrameCount() < length) {
        LogLine(run, L"Default length is " + std::to_wstring(length) + L", mask file length is " +
                         std::to_wstring(source->GetFrameCount()) + L". Not using the mask.");
        return;
    }
    KeepFile(opened, kMaskFile, run, std::move(source));
}

/// The first source gives the run its size and length; a later one may shorten it. False for a source of
/// another size, which is left out.
bool FitIntoRun(rkIVideoSource& source, const FileRecord& record, const RunParameters& run, bool isFirst,
                int& width, int& height, int& length) {
    if (isFirst) {
        width = source.GetWidth();
        height = source.GetHeight();
        length = source.GetFrameCount();
        LogLine(run, L"Files default resolution is set to " + Size(width, height) +
                         L", default length is set to " + std::to_wstring(length));
        return true;
    }
    if (!HasSize(source, width, height)) {
        LogLine(run, DifferentSize(record, source) + L"skipping file.");
        return false;
    }
    length = std::min(length, source.GetFrameCount());
    LogLine(run, L"Default length is set to " + std::to_wstring(length));
    return true;
}

}  // namespace

std::wstring DescriptionOf(rkIVideoSource& source) {
    std::array<wchar_t, 260> description = {};
    source.GetDescription(description.data(), static_cast<int>(description.size()));
    return description.data();
}

void OpenInputFiles(OpenedFiles& opened, const RunParameters& run, RunOutcome* outcome, int& width,
                    int& height, int& length, bool& originalOpened) {
    for (int file = 0; file < static_cast<int>(run.inputFiles.size()); ++file) {
        const FileRecord& record = RecordOf(run, file);
        std::unique_ptr<rkIVideoSource> source = record.OpenSource(true);
        LogLine(run, L"Opening " + Quoted(record.name));
        if (source == nullptr) {
            LogLine(run, L"Failed to open file " + Quoted(record.name));
            if (file == 0) originalOpened = false;
            ReportFailure(outcome);
            continue;
        }
        if (FitIntoRun(*source, record, run, opened.empty(), width, height, length))
            KeepFile(opened, file, run, std::move(source));
    }

    if (run.useMask && !opened.empty()) OpenMask(opened, run, outcome, width, height, length);
}
