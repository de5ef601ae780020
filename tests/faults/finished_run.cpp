#include "tests/faults/finished_run.h"

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/sources/create_source.h"
#include "video/video_image.h"
#include "video/video_source.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace {

const std::string kCsvName = "values.csv", kJsonName = "results.json", kLogName = "log.txt";

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find(separator, start)) != text.npos;
         start = end + separator.size())
        parts.push_back(text.substr(start, end - start));
    parts.push_back(text.substr(start));
    return parts;
}

/// Lines without the time in front of them: "08:15:30 : Done!".
std::set<std::string> LinesOf(const std::string& text) {
    std::set<std::string> lines;
    for (const std::string& line : Split(text, "\n"))
        lines.insert(line.find(" : ") == 8 ? line.substr(11) : line);
    return lines;
}

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

/// Of a file with points and commas. Throws std::runtime_error if it isn't whole.
Columns ColumnsOfCsv(const std::string& text) {
    constexpr std::size_t kHead = 3;  // title, first and second file; then averages and values
    std::vector<std::vector<std::string>> lines;
    for (const std::string& line : Split(text, "\r\n")) lines.push_back(Split(line, ","));
    Require(lines.back() == Column{""}, "the last line has no end");
    lines.pop_back();
    Require(lines.size() > kHead, "no head");
    for (const auto& line : lines) Require(line.size() == lines[0].size(), "lines of different length");
    Columns columns;
    for (std::size_t i = 0; i < lines[0].size(); ++i) {
        Column column;
        for (std::size_t line = kHead; line < lines.size(); ++line) column.push_back(lines[line][i]);
        const auto end = std::find(column.begin() + 1, column.end(), "");
        Require(std::count(end, column.end(), "") == column.end() - end, "a gap in a series");
        column.erase(end, column.end());
        columns[lines[0][i] + " " + lines[1][i] + " " + lines[2][i]] = column;
    }
    return columns;
}

/// Of the object that tolvane-measure writes. Throws what the library throws if something is missing.
Columns ColumnsOfJson(const nlohmann::json& report) {
    Columns columns;
    for (const auto& result : report.at("results")) {
        Column column = {result.at("average").dump()};
        for (const auto& value : result.at("values")) column.push_back(value.dump());
        columns[result.at("name").dump() + result.at("component").dump() + result.at("files").dump()] =
            column;
    }
    return columns;
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

/// A report without what is only said: the log, and the words for the inputs, whose codec may not be named
/// without memory.
nlohmann::json Figures(nlohmann::json report) {
    report.erase("log");
    for (auto& input : report["inputs"]) input.erase("description");
    return report;
}

/// Whether it says so. The runtime of the teams does it for itself, and ends the process.
bool LacksMemory(const FinishedRun& run) {
    return run.errors.find("ot enough memory") != std::string::npos ||
           run.errors.find("libgomp: Out of memory") != std::string::npos;
}

bool HasValues(const FinishedRun& run) {
    const auto isFilled = [](const auto& entry) { return entry.second.size() > 1; };
    return std::any_of(run.csv.begin(), run.csv.end(), isFilled) ||
           std::any_of(run.json.begin(), run.json.end(), isFilled);
}

class Judge {
public:
    Judge(const FinishedRun& disturbed, const std::vector<FinishedRun>& knownRuns)
        : run(disturbed), known(knownRuns) {}

    std::string Judgement() {
        if (run.hung) Complain("it hung");
        if (!run.unreadable.empty()) Complain("an output isn't whole: " + run.unreadable);
        CheckStatus();
        if (run.unreadable.empty()) {
            CheckValues();
            CheckPictures();
        }
        return complaints;
    }

private:
    void Complain(const std::string& what) { complaints += what + "\n"; }

    template <class Condition>
    bool AnyKnown(const Condition& holds) const {
        return std::any_of(known.begin(), known.end(), holds);
    }

    void CheckStatus() {
        constexpr int kComplete = 0, kPartial = 1, kNothing = 2, kUsage = 64;
        if (run.status == kComplete) return CheckComplete();
        // They may also be there and not be told.
        if (run.status == kPartial && !HasValues(run) && run.output.empty() && !LacksMemory(run))
            Complain("1, but there are no results");
        if (run.status == kNothing && HasValues(run)) Complain("2, but there are results");
        const bool hasOutputs =
            run.files.at(kCsvName) != kOldContent || run.files.at(kJsonName) != kOldContent;
        if (run.status == kUsage && (hasOutputs || Split(run.errors, "\n").size() != 2))
            Complain("64, but that isn't all");
        if (run.status != kPartial && run.status != kNothing && run.status != kUsage)
            return Complain("no status of this program");
        const auto& usual = known[0].errorLines;
        if (std::includes(usual.begin(), usual.end(), run.errorLines.begin(), run.errorLines.end()))
            Complain("it doesn't say why");
    }

    void CheckComplete() {
        if (run.output != known[0].output) Complain("0, but standard output isn't complete");
        for (const auto& [name, bytes] : known[0].files) {
            const auto found = run.files.find(name);
            const bool isEqual =
                found != run.files.end() &&
                (name == kLogName    ? Split(found->second, "\n").size() == Split(bytes, "\n").size()
                 : name == kJsonName ? Figures(run.report) == Figures(known[0].report)
                                     : found->second == bytes || HasFramesOf(found->second, bytes));
            if (!isEqual) Complain("0, but " + name + " isn't complete");
        }
    }

    void CheckValues() {
        for (const auto columns : {&FinishedRun::csv, &FinishedRun::json})
            for (const auto& [key, column] : run.*columns)
                if (!IsKnown(columns, key, column)) Complain("wrong numbers: " + key);
        for (const std::string& line : run.outputLines) {
            // "PSNR YYUV a.yuv b.yuv none dB"
            const bool hasNoValue = line.ends_with(" none") || line.ends_with(" none dB");
            if (!hasNoValue && !AnyKnown([&](const auto& other) { return other.outputLines.contains(line); }))
                Complain("wrong line: " + line);
        }
        if (run.report.is_null()) return;
        const auto& frames = run.report["bad_frames"];
        if (!frames.is_null() &&
            !AnyKnown([&](const auto& other) { return other.report["bad_frames"] == frames; }))
            Complain("wrong bad frames");
    }

    /// A missing average shows as 0 in a CSV file, and without a frame it says nothing. If the memory ends in
    /// a frame, a metric may have measured it, and has it in its average, but its value is in no series.
    bool IsKnown(Columns FinishedRun::*columns, const std::string& key, const Column& column) const {
        const std::size_t missing = LacksMemory(run) ? 1 : 0;
        return AnyKnown([&](const FinishedRun& other) {
            const auto found = (other.*columns).find(key);
            if (found == (other.*columns).end()) return false;
            const Column& whole = found->second;
            if (column.size() == 1) return true;
            const bool isAverageMissing = column[0] == "null" || column[0] == "AVG: 0.00000";
            return (whole[0] == column[0] || isAverageMissing) && column.size() <= whole.size() &&
                   column.size() + missing >= whole.size() &&
                   std::equal(column.begin() + 1, column.end(), whole.begin() + 1);
        });
    }

    void CheckPictures() {
        // The pictures and videos that the run says are complete.
        for (const char* kind : {"visualization", "bad_frames"}) {
            if (run.report.is_null()) break;
            for (const std::string path : run.report["outputs"][kind])
                if (!run.files.contains(path.substr(path.rfind('/') + 1))) Complain(path + " isn't there");
        }
        for (const auto& [name, bytes] : run.files) {
            if (name == kCsvName || name == kJsonName || name == kLogName) continue;
            const auto isIn = [&name = name, &bytes = bytes](const FinishedRun& other) {
                const auto found = other.files.find(name);
                return found != other.files.end() && found->second == bytes;
            };
            if (AnyKnown(isIn)) continue;
            if (name.ends_with(".avi"))
                CheckVideo(name, bytes);
            else
                Complain(name + " isn't what it should be");
        }
    }

    /// It may have the first frames of a known one, and then that has to be said: "08:15:30 : Failed to write
    /// visualization file "out/psnr.avi"".
    void CheckVideo(const std::string& name, const std::string& bytes) {
        if (HasFramesOf(bytes, known[0].files.at(name))) return;
        const std::vector<std::string> frames = FramesOf(bytes);
        const bool isStart = AnyKnown([&](const FinishedRun& other) {
            const auto found = other.files.find(name);
            if (found == other.files.end()) return frames.empty();
            const std::vector<std::string> whole = FramesOf(found->second);
            return frames.size() <= whole.size() && std::equal(frames.begin(), frames.end(), whole.begin());
        });
        const bool isSaid =
            std::any_of(run.errorLines.begin(), run.errorLines.end(), [&](const std::string& line) {
                return line.starts_with("Failed to ") && line.ends_with("/" + name + "\"");
            });
        if (!isStart)
            Complain(name + " has wrong pictures");
        else if (HasValues(run) && !isSaid && !LacksMemory(run))
            Complain(name + " isn't complete, and nothing says so");
    }

    const FinishedRun& run;
    const std::vector<FinishedRun>& known;
    std::string complaints;
};

}  // namespace

FinishedRun::FinishedRun(int waitStatus, std::string standardOutput, std::string standardErrors,
                         std::map<std::string, std::string> left)
    : status(WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus)),
      hung(WIFSIGNALED(waitStatus) && WTERMSIG(waitStatus) == SIGALRM),
      output(std::move(standardOutput)),
      errors(std::move(standardErrors)),
      files(std::move(left)),
      outputLines(LinesOf(output)),
      errorLines(LinesOf(errors)) {
    const std::string &csvText = files[kCsvName], &jsonText = files[kJsonName];
    try {
        if (csvText != kOldContent) csv = ColumnsOfCsv(csvText);
        if (jsonText == kOldContent) return;
        report = nlohmann::json::parse(jsonText);
        json = ColumnsOfJson(report);
    } catch (const std::exception& error) {
        unreadable = error.what();
    }
}

std::string Complaints(const FinishedRun& disturbed, const std::vector<FinishedRun>& known) {
    return Judge(disturbed, known).Judgement();
}
