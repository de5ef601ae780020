#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <map>
#include <string_view>

#include "platform/program_version.h"
#include "platform/text.h"
#include "video/raw_layout.h"

const std::array<const char*, RoleCount> kRoleNames = {"original", "processed", "processed2", "mask"};

namespace {

constexpr const char* kSizeForm = "takes WxH in pixels, such as 1920x1080";
constexpr const char* kMetricForm = "takes ID[:COMPONENT][=SETTINGS], COMPONENT one of Y, U, V, L, R, G, B";
constexpr const char* kLayoutForm =
    "takes IYUV, YV12, YUV, UYVY, YUY2, Y, YV16, Y410, or P010 to P416 and P410_RGB to P416_RGB with 10, 14 "
    "or 16 bits";

bool ParseNumber(std::string_view text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

UsageError Wrong(const std::string& option, const std::string& given, const char* form) {
    return UsageError(option + " " + form + "; it got \"" + given + "\"");
}

PictureSize ParseSize(const std::string& option, const std::string& text) {
    const auto x = text.find('x');
    PictureSize size;
    if (x == text.npos || !ParseNumber(std::string_view(text).substr(0, x), size.width) ||
        !ParseNumber(std::string_view(text).substr(x + 1), size.height) || size.width < 1 ||
        size.height < 1) {
        throw Wrong(option, text, kSizeForm);
    }
    return size;
}

int ParseLayout(const std::string& option, const std::string& text) {
    const int layout = rkColorSpaceByName(FromUtf8(text).c_str());
    if (layout < 0) throw Wrong(option, text, kLayoutForm);
    return layout;
}

MetricOption ParseMetric(const std::string& text) {
    // In the order of the component numbers.
    static constexpr std::string_view kComponents = "YUVLRGB";
    MetricOption metric;
    std::string head = text;
    if (const auto equals = text.find('='); equals != text.npos) {
        metric.settings = FromUtf8(std::string_view(text).substr(equals + 1));
        head.resize(equals);
    }
    if (const auto colon = head.find(':'); colon != head.npos) {
        const std::string component = head.substr(colon + 1);
        const auto number = component.size() == 1 ? kComponents.find(component) : kComponents.npos;
        if (number == kComponents.npos) throw Wrong("--metric", text, kMetricForm);
        metric.component = static_cast<int>(number);
        head.resize(colon);
    }
    if (head.empty()) throw Wrong("--metric", text, kMetricForm);
    metric.id = FromUtf8(head);
    return metric;
}

/// The texts of the options, as the parser stores them; checked and turned into `Options` behind it.
struct RawOptions {
    std::array<std::string, RoleCount> paths, sizes, layouts;
    std::string size, layout;
    std::vector<std::string> metrics;
    std::string csvDirectory, csvName, json, log;
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
        AddMeasurement();
        AddOutputs();
    }

    /// False after `--help` or `--version`, with their text in `message`.
    bool Parse(int argc, const char* const* argv, std::string& message) {
        try {
            app.parse(argc, argv);
        } catch (const CLI::CallForHelp&) {
            message = app.help();
            return false;
        } catch (const CLI::CallForVersion&) {
            message = app.version() + "\n";
            return false;
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

    void AddMeasurement() {
        app.add_option("-m,--metric", raw.metrics)
            ->type_name("ID[:COMPONENT][=SETTINGS]")
            ->description("Metric to measure, may be repeated (default psnr:Y)")
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->group("Measurement");
        app.add_flag("--list-metrics", options.listMetrics, "Print the list of metrics")
            ->group("Measurement");
        app.add_option("--matrix", options.matrix, "YUV/RGB matrix: rec601 (default) or pc601")
            ->type_name("WORD")
            ->transform(Choice({{"rec601", 0}, {"pc601", 1}}))
            ->group("Measurement");
        app.add_option("--threads", options.threads, "Number of threads")
            ->type_name("N")
            ->check(CLI::Range(1, 1024).description(""))
            ->group("Measurement");
    }

    void AddOutputs() {
        app.add_option("--csv", raw.csvDirectory, "Save a CSV file in this directory")
            ->type_name("DIR")
            ->group("Outputs");
        app.add_option("--csv-naming", options.csv.naming, "prefix (default), postfix or custom")
            ->type_name("WORD")
            ->transform(Choice({{"prefix", 0}, {"postfix", 1}, {"custom", 2}}))
            ->group("Outputs");
        app.add_option("--csv-name", raw.csvName, "File name for custom naming")
            ->type_name("NAME")
            ->group("Outputs");
        app.add_option("--csv-separator", options.csv.semicolon, "comma (default) or semicolon")
            ->type_name("WORD")
            ->transform(Choice({{"comma", 0}, {"semicolon", 1}}))
            ->group("Outputs");
        app.add_option("--csv-decimal", options.csv.decimalComma, "dot (default) or comma")
            ->type_name("WORD")
            ->transform(Choice({{"dot", 0}, {"comma", 1}}))
            ->group("Outputs");
        app.add_flag("--csv-unicode", options.csv.unicode, "Write the CSV file in 16-bit characters")
            ->group("Outputs");
        app.add_option("--json", raw.json, "Save the results as JSON, - for standard output")
            ->type_name("FILE")
            ->expected(0, 1)
            ->group("Outputs");
        app.add_option("--log", raw.log, "Append the log to this file")->type_name("FILE")->group("Outputs");
        app.add_option("--progress", progress, "auto (default), always or never")
            ->type_name("WORD")
            ->transform(Choice({{"auto", 0}, {"always", 1}, {"never", 2}}))
            ->group("Outputs");
        app.add_flag("-q,--quiet", options.quiet, "No log lines on standard error")->group("Outputs");
    }

    /// Turns one of the given words into its number; any other word is refused with the list.
    static CLI::Validator Choice(const std::vector<std::pair<std::string, int>>& words) {
        std::string list;
        for (const auto& word : words) list += (list.empty() ? "" : ", ") + word.first;
        const auto turn = [words, list](std::string& text) -> std::string {
            for (const auto& [word, number] : words) {
                if (text != word) continue;
                text = std::to_string(number);
                return {};
            }
            return "takes one of " + list + "; it got \"" + text + "\"";
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
        }
        if (app.count("--size") > 0) options.size = ParseSize("--size", raw.size);
        if (app.count("--layout") > 0) options.layout = ParseLayout("--layout", raw.layout);
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
    }

    /// The parser would take the last value of a repeated option without a word.
    void CheckGivenOnce() const {
        for (const CLI::Option* option : app.get_options()) {
            if (option->count() > 1 && option->get_type_size() > 0 && option->get_name() != "--metric") {
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
