#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// The four files of a run, in the order of their options.
enum FileRole : std::size_t { RoleOriginal, RoleProcessed, RoleProcessed2, RoleMask, RoleCount };

/// The options' names of the roles, without dashes: "original", "processed", "processed2", "mask".
extern const std::array<const char*, RoleCount> kRoleNames;

struct PictureSize {
    int width = 0;
    int height = 0;
};

/// How files are opened through a script.
struct ScriptOptions {
    bool use = false;                        ///< also those that needn't be
    std::optional<int> filter;               ///< an `rkScriptFilter`; one that suits the file if not given
    std::optional<std::wstring> parameters;  ///< the filter's defaults if not given
    bool onlyPreferred = false;              ///< by this filter or not at all

    bool IsGiven() const { return use || filter || parameters || onlyPreferred; }
};

/// One input file as the options give it. All but the path is what was said for this very file.
struct FileOptions {
    std::wstring path;  ///< empty: not given
    std::optional<PictureSize> size;
    std::optional<int> layout;  ///< an `rkColorSpace` value
    ScriptOptions script;       ///< any of it has the file opened through a script
};

/// One `--metric`: ID[:COMPONENT][=SETTINGS].
struct MetricOption {
    std::wstring id;
    std::optional<int> component;          ///< a colour component; the metric's first if not given
    std::optional<std::wstring> settings;  ///< a plug-in's settings string; its default if not given
};

enum class ProgressMode { Auto, Always, Never };

struct CsvOptions {
    std::wstring directory;  ///< empty: no CSV
    int naming = 0;          ///< 0 prefix, 1 postfix, 2 custom
    std::wstring name;       ///< of custom naming
    bool semicolon = false;  ///< cells are separated by ";" instead of ","
    bool decimalComma = false;
    bool unicode = false;
};

struct VisualizationOptions {
    std::wstring directory;  ///< empty: no visualization
    int naming = 0;          ///< 0 prefix, 1 postfix
    std::string codec;       ///< FOURCC[:QUALITY] as given; empty: uncompressed
    bool captionAtBottom = false;
    bool captionFrame = false;
    bool noCaptionValue = false;
};

struct BadFramesOptions {
    std::wstring directory;  ///< empty: no bad frames
    int type = 0;            ///< a BadFramesType
    int count = 10;          ///< 0: all
    int radius = 0;
};

/// What the command line asks for, as plain values. Nothing is checked here against files or the metric list.
struct Options {
    bool listMetrics = false;
    bool listCodecs = false;
    std::array<FileOptions, RoleCount> files;
    std::optional<PictureSize> size;  ///< of every raw file without a size of its own
    std::optional<int> layout;
    ScriptOptions script;  ///< of every file without such an option of its own
    std::vector<MetricOption> metrics;
    int matrix = 0;  ///< 0 REC.601, 1 PC.601
    bool blackMask = false;
    CsvOptions csv;
    VisualizationOptions visualization;
    BadFramesOptions badFrames;
    std::optional<std::wstring>
        json;          ///< a path, "-" for standard output, or empty for the list of metrics only
    std::wstring log;  ///< empty: no log file
    int threads = 0;   ///< 0: as many as the runtime takes
    bool gpuEmulation = false;
    ProgressMode progress = ProgressMode::Auto;
    bool quiet = false;
};

/// The options are wrong; `what` is one line for the user, which names the option and says what it takes.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the command line. Throws UsageError. After `--help` or `--version`, whose text is then in `message`,
/// nothing is returned.
std::optional<Options> ParseOptions(int argc, const char* const* argv, std::string& message);
