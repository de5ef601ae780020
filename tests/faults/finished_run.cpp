#include "tests/faults/finished_run.h"

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"
#include "video/video_source.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace {

const std::string kCsvName = "values.csv", kJsonName = "results.json", kLogName = "log.txt";

/// Lines without the time in front of them.
std::set<std::string> LinesOf(const std::string& text) {
    constexpr std::string_view kBehindTime = " : ";  // "08:15:30 : Done!"
    constexpr std::size_t kTimeLength = 8;
    std::set<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const bool hasTime = line.find(kBehindTime) == kTimeLength;
        lines.insert(hasTime ? line.substr(kTimeLength + kBehindTime.size()) : line);
    }
    return lines;
}

std::ptrdiff_t LineCount(const std::string& log) {
    return std::count(log.begin(), log.end(), '\n');
}

bool Contains(const std::set<std::string>& all, const std::set<std::string>& some) {
    return std::includes(all.begin(), all.end(), some.begin(), some.end());
}

/// As far as they can be read.
std::vector<std::string> FramesOf(const std::string& bytes) {
    const TemporaryDirectory directory;
    std::vector<std::string> frames;
    const auto source = rkCreateVideoSource(FromUtf8(directory.Write("a.avi", bytes)), false);
    rkVideoImage image;
    for (int frame = 0; source != nullptr && frame < source->GetFrameCount(); ++frame) {
        if (source->ReadFrameImage(image, frame) != 0) break;
        frames.emplace_back(image.PackedFrameBytes(), '\0');
        image.CopyVisibleTo(reinterpret_cast<std::uint8_t*>(frames.back().data()));
    }
    return frames;
}

/// Whether both are videos of the same frames. They may lie there in another form: what a codec can't do is
/// saved uncompressed.
bool HasFramesOf(const std::string& first, const std::string& second) {
    const std::vector<std::string> frames = FramesOf(first);
    return !frames.empty() && frames == FramesOf(second);
}

std::string FileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// A report without what is only said: the log, and the words for the inputs, whose codec may not be named
/// without memory.
nlohmann::json Figures(nlohmann::json report) {
    report.erase("log");
    for (auto& input : report["inputs"]) input.erase("description");
    return report;
}

/// The names of the pictures and videos that the run says are complete.
std::set<std::string> ToldPictures(const FinishedRun& run) {
    std::set<std::string> names;
    if (run.report.is_null()) return names;
    for (const char* kind : {"visualization", "bad_frames"})
        for (const auto& path : run.report["outputs"][kind]) names.insert(FileName(path));
    return names;
}

/// "PSNR YYUV a.yuv b.yuv none dB".
bool HasNoValue(const std::string& line) {
    return line.ends_with(" none") || line.ends_with(" none dB");
}

/// Whether it says so. The runtime of the teams does it for itself, and ends the process.
bool LacksMemory(const FinishedRun& run) {
    const std::string& errors = run.run.errors;
    return errors.find("ot enough memory") != errors.npos ||
           errors.find("libgomp: Out of memory") != errors.npos;
}

/// "08:15:30 : Failed to write visualization file "out/psnr.avi"".
bool TellsOfFailure(const FinishedRun& run, const std::string& name) {
    return LacksMemory(run) ||
           std::any_of(run.errors.begin(), run.errors.end(), [&](const std::string& line) {
               return line.starts_with("Failed to ") && line.ends_with("/" + name + "\"");
           });
}

bool HasValues(const FinishedRun& run) {
    const auto isFilled = [](const auto& entry) { return !entry.second.values.empty(); };
    return std::any_of(run.csvColumns.begin(), run.csvColumns.end(), isFilled) ||
           std::any_of(run.jsonColumns.begin(), run.jsonColumns.end(), isFilled);
}

}  // namespace

FinishedRun::FinishedRun(FaultyRun finished, std::map<std::string, std::string> left)
    : run(std::move(finished)),
      files(std::move(left)),
      output(LinesOf(run.output)),
      errors(LinesOf(run.errors)) {
    if (files[kCsvName] != kOldContent) csv = files[kCsvName];
    if (files[kJsonName] != kOldContent) json = files[kJsonName];
    try {
        if (files[kCsvName] != kOldContent) csvColumns = ColumnsOfCsv(csv);
        if (files[kJsonName] != kOldContent) {
            report = nlohmann::json::parse(json);
            jsonColumns = ColumnsOfJson(report);
        }
    } catch (const std::exception& error) {
        unreadable = error.what();
    }
}

std::string KnownRuns::Complaints(const FinishedRun& disturbed) const {
    std::string complaints;
    if (disturbed.run.hung) complaints += "it hung\n";
    if (!disturbed.unreadable.empty()) complaints += "an output isn't whole: " + disturbed.unreadable + "\n";
    CheckStatus(disturbed, complaints);
    if (!disturbed.unreadable.empty()) return complaints;
    CheckValues(disturbed, complaints);
    CheckPictures(disturbed, complaints);
    return complaints;
}

void KnownRuns::CheckStatus(const FinishedRun& disturbed, std::string& complaints) const {
    constexpr int kComplete = 0, kPartial = 1, kNothing = 2, kUsage = 64;
    const int status = disturbed.run.status;
    const bool hasOutputs = !disturbed.csv.empty() || !disturbed.json.empty();
    switch (status) {
        case kComplete:
            if (disturbed.run.output != Whole().run.output)
                complaints += "0, but standard output isn't complete\n";
            for (const auto& [name, bytes] : Whole().files) {
                const auto found = disturbed.files.find(name);
                const bool isEqual =
                    found != disturbed.files.end() &&
                    (name == kLogName    ? LineCount(found->second) == LineCount(bytes)
                     : name == kJsonName ? Figures(disturbed.report) == Figures(Whole().report)
                                         : found->second == bytes || HasFramesOf(found->second, bytes));
                if (!isEqual) complaints += "0, but " + name + " isn't complete\n";
            }
            return;
        case kPartial:
            // They may also be there and not be told.
            if (!HasValues(disturbed) && disturbed.run.output.empty() && !LacksMemory(disturbed))
                complaints += "1, but there are no results\n";
            break;
        case kNothing:
            if (HasValues(disturbed)) complaints += "2, but there are results\n";
            break;
        case kUsage:
            if (hasOutputs || disturbed.errors.size() != 1) complaints += "64, but that isn't all\n";
            break;
        default:
            complaints += "no status of this program\n";
            return;
    }
    if (Contains(Whole().errors, disturbed.errors)) complaints += "it doesn't say why\n";
}

void KnownRuns::CheckValues(const FinishedRun& disturbed, std::string& complaints) const {
    for (const auto columns : {&FinishedRun::csvColumns, &FinishedRun::jsonColumns})
        for (const auto& [key, column] : disturbed.*columns)
            if (!IsKnown(columns, key, column, LacksMemory(disturbed)))
                complaints += "wrong numbers: " + key + "\n";
    for (const std::string& line : disturbed.output) {
        const bool isKnown = HasNoValue(line) ||
                             std::any_of(runs.begin(), runs.end(),
                                         [&](const FinishedRun& run) { return run.output.contains(line); });
        if (!isKnown) complaints += "wrong line: " + line + "\n";
    }
    if (disturbed.report.is_null()) return;
    const auto& frames = disturbed.report["bad_frames"];
    const bool areKnown =
        frames.is_null() || std::any_of(runs.begin(), runs.end(), [&](const FinishedRun& run) {
            return run.report["bad_frames"] == frames;
        });
    if (!areKnown) complaints += "wrong bad frames\n";
}

/// A missing average shows as 0 in a CSV file, and without a frame it says nothing. If the memory ends in a
/// frame, a metric may have measured it, and has it in its average, but its value is in no series.
bool KnownRuns::IsKnown(Columns FinishedRun::*columns, const std::string& key, const Column& column,
                        bool mayLackValue) const {
    return std::any_of(runs.begin(), runs.end(), [&](const FinishedRun& run) {
        const auto found = (run.*columns).find(key);
        if (found == (run.*columns).end()) return false;
        const Column& known = found->second;
        if (column.values.empty()) return true;
        const bool isAverageMissing = column.average == "null" || column.average == "AVG: 0.00000";
        if (known.average != column.average && !isAverageMissing) return false;
        const std::size_t more = known.values.size() - column.values.size();
        return (more == 0 || (more == 1 && mayLackValue)) &&
               std::equal(column.values.begin(), column.values.end(), known.values.begin());
    });
}

void KnownRuns::CheckPictures(const FinishedRun& disturbed, std::string& complaints) const {
    const std::set<std::string> told = ToldPictures(disturbed);
    for (const std::string& name : told)
        if (!disturbed.files.contains(name)) complaints += name + " isn't there\n";
    for (const auto& [name, bytes] : disturbed.files) {
        if (name == kCsvName || name == kJsonName || name == kLogName) continue;
        if (IsKnownFile(name, bytes)) continue;
        if (!name.ends_with(".avi")) {
            complaints += name + " isn't what it should be\n";
            continue;
        }
        if (HasFramesOf(bytes, Whole().files.at(name))) continue;
        const std::vector<std::string> frames = FramesOf(bytes);
        if (!IsStartOfKnownVideo(name, frames))
            complaints += name + " has wrong pictures\n";
        else if (HasValues(disturbed) && !TellsOfFailure(disturbed, name))
            complaints += name + " isn't complete, and nothing says so\n";
    }
}

bool KnownRuns::IsKnownFile(const std::string& name, const std::string& bytes) const {
    return std::any_of(runs.begin(), runs.end(), [&](const FinishedRun& run) {
        const auto found = run.files.find(name);
        return found != run.files.end() && found->second == bytes;
    });
}

bool KnownRuns::IsStartOfKnownVideo(const std::string& name, const std::vector<std::string>& frames) const {
    return std::any_of(runs.begin(), runs.end(), [&](const FinishedRun& run) {
        const auto found = run.files.find(name);
        if (found == run.files.end()) return frames.empty();
        const std::vector<std::string> whole = FramesOf(found->second);
        return frames.size() <= whole.size() && std::equal(frames.begin(), frames.end(), whole.begin());
    });
}
