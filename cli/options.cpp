#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <initializer_list>
#include <limits>

#include "cli/option_values.h"
#include "platform/program_version.h"
#include "platform/text.h"

const std::array<const char*, RoleCount> kRoleNames = {"original", "processed", "processed2", "mask"};

namespace {

constexpr int kMostFrames = std::numeric_limits<int>::max();

/// The texts of the options, as the parser stores them; checked and turned into `Options` behind it.
struct RawOptions {
    std::array<std::string, RoleCount> paths, sizes, layouts;
    std::string size, layout;
    std::array<std::string, RoleCount> filters, parameters;
    std::string filter, parameter;
    std::vector<std::string> metrics;
    std::string csvDirectory, csvName, visualizationDirectory, badFramesDirectory, json, log;
};

class Parser {
public:
    explicit Parser(Options& target)
        : options(target), app("Measures objective video quality.", "tolvane-measure") {
        app.set_version_flag("--version", std::string("Tolvane ") + ProgramVersion());
        app.set_help_flag("--help", "Print this help");
        app.allow_extras();
        app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        AddInputs();
        AddScripts();
        AddMeasurement();
        AddOutputs();
        AddPictures();
    }

    /// False after `--help` or `--version`, with their text in `message`.
    bool Parse(int argc, const char* const* argv, std::string& message) {
        try {
            app.parse(Arguments(argc, argv));
        } catch (const CLI::CallForHelp&) {
            message = app.help();
            return false;
        } catch (const CLI::CallForVersion&) {
            message = app.version() + "\n";
            return false;
        } catch (const CLI::ArgumentMismatch& error) {
            const std::string name = std::string(error.what()).substr(0, std::string(error.what()).find(':'));
            throw Missing(name, app.get_option(name));
        } catch (const CLI::ParseError& error) {
            throw UsageError(error.what());
        }
        if (const auto surplus = app.remaining(); !surplus.empty()) {
            throw UsageError("\"" + surplus.front() + "\" is no option; --help lists them");
        }
        CheckGivenOnce();
        Check();
        return true;
    }

private:
    /// The arguments, the last one first as the parser wants them. In place of "--name=" it gets the option
    /// and an empty value, which it would pass over for the next argument.
    std::vector<std::string> Arguments(int argc, const char* const* argv) const {
        std::vector<std::string> arguments;
        for (int i = 1; i < argc; ++i) {
            const std::string argument = argv[i];
            const std::size_t equals = argument.starts_with("--") ? argument.find('=') : argument.npos;
            const std::string name = argument.substr(0, equals);
            const CLI::Option* option = equals == argument.npos ? nullptr : app.get_option_no_throw(name);
            if (option != nullptr && option->get_expected_max() == 0)
                throw UsageError(name + " takes no value; it got \"" + argument.substr(equals + 1) + "\"");
            const bool isEmpty = option != nullptr && equals + 1 == argument.size();
            arguments.push_back(isEmpty ? name : argument);
            if (isEmpty) arguments.emplace_back();
        }
        std::reverse(arguments.begin(), arguments.end());
        return arguments;
    }

    static UsageError Missing(const std::string& name, const CLI::Option* option) {
        return UsageError(name + " takes " + option->get_type_name() + ": " + option->get_description());
    }

    /// An option that takes one of some words, the first of them unless it is given; `target` gets its
    /// position.
    template <class Target>
    void AddChoice(const std::string& name, Target& target, const std::vector<std::string>& words,
                   const std::string& description, const char* group) {
        std::string list;
        for (const std::string& word : words) list += (list.empty() ? "" : "|") + word;
        app.add_option(name, target, description + " (default " + words.front() + ")")
            ->type_name(list)
            ->transform(Choice(words))
            ->group(group);
    }

    void AddInputs() {
        for (std::size_t i = 0; i < RoleCount; ++i) {
            const std::string name = std::string("--") + kRoleNames[i];
            app.add_option(name, raw.paths[i], kFileHelp[i])->type_name("FILE")->group("Inputs");
        }
        app.add_option("--size", raw.size)
            ->type_name("WxH")
            ->description("Picture size of raw files")
            ->group("Inputs");
        app.add_option("--layout", raw.layout)
            ->type_name("NAME")
            ->description(
                "Layout of raw files: IYUV (default for .yuv), YV12, YUV, UYVY, YUY2, Y, YV16, Y410, P010 "
                "... P416, "
                "P410_RGB ...")
            ->group("Inputs");
        for (std::size_t i = 0; i < RoleCount; ++i) {
            const std::string name = std::string("--") + kRoleNames[i];
            const std::string ofFile =
                std::string(" of the ") + kRoleNames[i] + " file alone, which then is raw";
            app.add_option(name + "-size", raw.sizes[i], "Picture size" + ofFile)
                ->type_name("WxH")
                ->group("Inputs");
            app.add_option(name + "-layout", raw.layouts[i], "Layout" + ofFile)
                ->type_name("NAME")
                ->group("Inputs");
        }
        app.add_flag("--black-mask", options.blackMask,
                     "The mask's black pixels are left out, not its bright ones")
            ->group("Inputs");
    }

    /// The same four options for all files and for each one.
    void AddScripts() {
        AddScript("--", "", raw.filter, raw.parameter, options.script);
        for (std::size_t i = 0; i < RoleCount; ++i) {
            const std::string role = kRoleNames[i];
            AddScript("--" + role + "-", ", for the " + role + " file alone", raw.filters[i],
                      raw.parameters[i], options.files[i].script);
        }
    }

    void AddScript(const std::string& prefix, const std::string& which, std::string& filter,
                   std::string& parameters, ScriptOptions& script) {
        app.add_flag(
               prefix + "avs", script.use,
               "Open through a script" + (which.empty() ? " also what can be opened without one" : which))
            ->group("Scripts");
        app.add_option(prefix + "avs-filter", filter, "Function that the script calls" + which)
            ->type_name("NAME")
            ->group("Scripts");
        app.add_option(prefix + "avs-parameters", parameters,
                       "Its arguments behind the file, separated by commas" + which)
            ->type_name("TEXT")
            ->group("Scripts");
        app.add_flag(prefix + "only-preferred", script.onlyPreferred, "Try no other function" + which)
            ->group("Scripts");
    }

    void TakeScript(const std::string& prefix, const std::string& filter, const std::string& parameters,
                    ScriptOptions& script) {
        if (app.count(prefix + "avs-filter") > 0) script.filter = ParseFilter(prefix + "avs-filter", filter);
        if (app.count(prefix + "avs-parameters") > 0) script.parameters = FromUtf8(parameters);
    }

    void AddMeasurement() {
        app.add_option("-m,--metric", raw.metrics)
            ->type_name("ID[:COMPONENT][=SETTINGS]")
            ->description("Metric to measure, may be repeated (default psnr:Y)")
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->group("Measurement");
        app.add_flag("--list-metrics", options.listMetrics, "Print the list of metrics")
            ->group("Measurement");
        AddChoice("--matrix", options.matrix, {"rec601", "pc601"}, "Matrix between YUV and RGB",
                  "Measurement");
        app.add_option("--threads", options.threads, "Number of threads")
            ->type_name("N")
            ->check(CLI::Range(1, 1024).description(""))
            ->group("Measurement");
        app.add_flag("--gpu-emulation", options.gpuEmulation, "Run the GPU's metrics without one, slowly")
            ->group("Measurement");
    }

    void AddOutputs() {
        app.add_option("--csv", raw.csvDirectory, "Save a CSV file in this directory")
            ->type_name("DIR")
            ->group("Outputs");
        AddChoice("--csv-naming", options.csv.naming, {"prefix", "postfix", "custom"},
                  "Its name begins or ends with the metrics, or is that of --csv-name", "Outputs");
        app.add_option("--csv-name", raw.csvName, "File name for --csv-naming custom")
            ->type_name("NAME")
            ->group("Outputs");
        AddChoice("--csv-separator", options.csv.semicolon, {"comma", "semicolon"}, "Between its cells",
                  "Outputs");
        AddChoice("--csv-decimal", options.csv.decimalComma, {"dot", "comma"}, "In its numbers", "Outputs");
        app.add_flag("--csv-unicode", options.csv.unicode, "Write the CSV file in 16-bit characters")
            ->group("Outputs");
        app.add_option("--json", raw.json, "Save the results as JSON, - for standard output")
            ->type_name("FILE")
            ->expected(0, 1)
            ->group("Outputs");
        app.add_option("--log", raw.log, "Append the log to this file")->type_name("FILE")->group("Outputs");
        AddChoice("--progress", progress, {"auto", "always", "never"},
                  "Show a progress bar on standard error; auto: on a terminal", "Outputs");
        app.add_flag("-q,--quiet", options.quiet, "No log lines on standard error")->group("Outputs");
    }

    void AddPictures() {
        VisualizationOptions& visualization = options.visualization;
        app.add_option("--visualize", raw.visualizationDirectory,
                       "Save what each metric sees in this directory: a video, or a bitmap for bitmaps")
            ->type_name("DIR")
            ->group("Pictures");
        AddChoice("--vis-naming", visualization.naming, {"prefix", "postfix"},
                  "Their names begin or end with the metric", "Pictures");
        app.add_option("--codec", visualization.codec)
            ->type_name("FOURCC[:QUALITY]")
            ->description(
                "Compress these videos, quality 0 to 100 (default 75); \"--codec list\" prints the codecs")
            ->group("Pictures");
        AddChoice("--caption-position", visualization.captionAtBottom, {"top", "bottom"},
                  "Where the caption stands in them", "Pictures");
        app.add_flag("--caption-frame", visualization.captionFrame, "Captions have the frame's number")
            ->group("Pictures");
        app.add_flag("--no-caption-value", visualization.noCaptionValue, "Captions have no values")
            ->group("Pictures");

        app.add_option("--bad-frames", raw.badFramesDirectory,
                       "Save the pictures of the worst frames in this directory; with several metrics the "
                       "first one in the "
                       "results decides")
            ->type_name("DIR")
            ->group("Pictures");
        app.add_option("--bad-frames-type", options.badFrames.type)
            ->type_name("N")
            ->check(CLI::Range(0, 3).description(""))
            ->description(
                "Those with the greatest difference: 0 of original and processed (default), 1 of the two "
                "processed, 2 where the first is better, 3 where the second is better")
            ->group("Pictures");
        app.add_option("--bad-frames-count", options.badFrames.count, "Their number (default 10), 0 for all")
            ->type_name("N")
            ->check(CLI::Range(0, kMostFrames).description(""))
            ->group("Pictures");
        app.add_option("--bad-frames-radius", options.badFrames.radius,
                       "Frames around a chosen one that are passed over (default 0)")
            ->type_name("N")
            ->check(CLI::Range(0, kMostFrames).description(""))
            ->group("Pictures");
    }

    /// Turns one of the given words into its position; any other word is refused with the list.
    static CLI::Validator Choice(const std::vector<std::string>& words) {
        const auto turn = [words](std::string& text) -> std::string {
            const auto found = std::find(words.begin(), words.end(), text);
            if (found == words.end()) {
                std::string list;
                for (const std::string& word : words) list += (list.empty() ? "" : ", ") + word;
                return "takes one of " + list + "; it got \"" + text + "\"";
            }
            text = std::to_string(found - words.begin());
            return {};
        };
        return CLI::Validator(turn, "");
    }

    void Check() {
        for (std::size_t i = 0; i < RoleCount; ++i) {
            const std::string name = std::string("--") + kRoleNames[i];
            FileOptions& file = options.files[i];
            if (app.count(name) > 0 && raw.paths[i].empty())
                throw UsageError(name + " takes the path of a file");
            file.path = FromUtf8(raw.paths[i]);
            if (app.count(name + "-size") > 0) file.size = ParseSize(name + "-size", raw.sizes[i]);
            if (app.count(name + "-layout") > 0) file.layout = ParseLayout(name + "-layout", raw.layouts[i]);
            TakeScript(name + "-", raw.filters[i], raw.parameters[i], file.script);
        }
        if (app.count("--size") > 0) options.size = ParseSize("--size", raw.size);
        if (app.count("--layout") > 0) options.layout = ParseLayout("--layout", raw.layout);
        TakeScript("--", raw.filter, raw.parameter, options.script);
        for (const std::string& metric : raw.metrics) options.metrics.push_back(ParseMetric(metric));
        options.progress = static_cast<ProgressMode>(progress);
        CheckOutputs();
    }

    void CheckOutputs() {
        if (app.count("--csv") > 0 && raw.csvDirectory.empty()) throw UsageError("--csv takes a directory");
        options.csv.directory = FromUtf8(raw.csvDirectory);
        options.csv.name = FromUtf8(raw.csvName);
        if (options.csv.naming == 2 && raw.csvName.empty()) {
            throw UsageError("--csv-name is missing: custom naming takes a file name");
        }
        if (raw.csvName.find_first_of("/\\") != std::string::npos || raw.csvName == "." ||
            raw.csvName == "..") {
            throw Wrong("--csv-name", raw.csvName, "takes a file name without directories");
        }
        if (app.count("--json") > 0) {
            options.json = FromUtf8(raw.json);
            if (raw.json.empty() && !options.listMetrics)
                throw UsageError("--json takes a file, or - for standard output");
        }
        options.log = FromUtf8(raw.log);
        if (app.count("--log") > 0 && raw.log.empty()) throw UsageError("--log takes a file");
        CheckPictures();
    }

    void CheckPictures() {
        options.listCodecs = options.visualization.codec == "list";
        if (options.listCodecs) return;
        if (app.count("--codec") > 0 && options.visualization.codec.empty())
            throw UsageError("--codec takes FOURCC[:QUALITY], or list");
        options.visualization.directory = FromUtf8(raw.visualizationDirectory);
        options.badFrames.directory = FromUtf8(raw.badFramesDirectory);
        CheckGroup(
            "--visualize", options.visualization.directory,
            {"--vis-naming", "--codec", "--caption-position", "--caption-frame", "--no-caption-value"});
        CheckGroup("--bad-frames", options.badFrames.directory,
                   {"--bad-frames-type", "--bad-frames-count", "--bad-frames-radius"});
    }

    /// An output takes a directory, and what says how it is made would go unnoticed without it.
    void CheckGroup(const std::string& output, const std::wstring& directory,
                    std::initializer_list<const char*> details) const {
        if (app.count(output) > 0 && directory.empty()) throw UsageError(output + " takes a directory");
        for (const char* detail : details)
            if (directory.empty() && app.count(detail) > 0)
                throw UsageError(std::string(detail) + " needs " + output);
    }

    /// The parser would take the last value of a repeated option without a word.
    void CheckGivenOnce() const {
        for (const CLI::Option* option : app.get_options()) {
            if (option->count() > 1 && option->get_expected_max() > 0 && option->get_name() != "--metric") {
                throw UsageError(option->get_name() + " takes one " + option->get_type_name() +
                                 " and may be given once");
            }
        }
    }

    static constexpr std::array<const char*, RoleCount> kFileHelp = {
        "Original video", "Processed video to compare with it", "Second processed video",
        "Mask of the pixels to leave out"};

    Options& options;
    RawOptions raw;
    int progress = 0;
    CLI::App app;
};

}  // namespace

std::optional<Options> ParseOptions(int argc, const char* const* argv, std::string& message) {
    Options options;
    Parser parser(options);
    if (!parser.Parse(argc, argv, message)) return std::nullopt;
    return options;
}
