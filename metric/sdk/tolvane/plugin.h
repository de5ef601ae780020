// The interface between Tolvane and a metric plug-in. This header is all that a plug-in needs;
// docs/plugins.md shows the way from an empty file to a measured value.
//
// A plug-in is a shared library with the name ending ".tlp" and two exported C functions, `CreateMetric` and
// `ReleaseMetric`. The object that `CreateMetric` makes starts with a pointer to a table of functions: the
// table that the platform's C++ compilers build for `IMetricPlugin`. Any language that can lay out such a
// table will do.
//
// All text is `wchar_t` of the platform, ended by a 0. `bool` is one byte. No function may let an exception
// out: the program drops the answer of a call that does.
#pragma once

namespace Metric {

constexpr int kMaxPluginResults = 10;     ///< results of one metric
constexpr int kMaxPluginFiles = 9;        ///< files that one result speaks of
constexpr int kMaxPluginComponents = 10;  ///< entries of `GetComponents`
constexpr int kPluginTextSize = 260;      ///< characters of every text buffer, the closing 0 included

/// One frame as a metric reads it: planes of `GetWidth` times `GetHeight` floats, row after row from the top,
/// on a scale of 0 to 256 at every bit depth (8-bit samples 0 to 255). U and V are centred on 0; L runs from
/// 0 to 100.
///
/// Only the planes of the family that was asked for hold the current frame: Y, U, V, or R, G, B, or L. They
/// are shared with other metrics and only to be read. The order of the operations is part of the plug-in ABI.
class IMetricImage {
public:
    virtual float* GetR() = 0;
    virtual float* GetG() = 0;
    virtual float* GetB() = 0;
    virtual float* GetY() = 0;
    virtual float* GetU() = 0;
    virtual float* GetV() = 0;
    virtual float* GetL() = 0;
    virtual int GetWidth() = 0;
    virtual int GetHeight() = 0;

protected:
    ~IMetricImage() = default;  // no slot in the table
};

/// A metric of a plug-in. The order of the operations is part of the plug-in ABI.
///
/// Order of calls  `CreateMetric`; in a run `Init`, then `Configure` if configurable, `GetResultInfo` once,
///                 `Measure` or `MeasureAndVisualize` for each frame in order, `GetAverages`;
///                 `ReleaseMetric`. The operations that describe the metric (from `GetInputCount` on, except
///                 `Configure`) are called at any time, also on an object that never sees `Init`: the list of
///                 metrics is made from those.
/// Threads         one thread at a time an object, not always the same one; several objects work at once.
/// Colour          components are numbers: 0 Y, 1 U, 2 V, 3 L, 4 R, 5 G, 6 B.
/// Visualize       where it is a flag: whether the user wants pictures of where the metric sees differences.
class IMetricPlugin {
public:
    /// Keeps the first place of the table, which is never called.
    virtual void Reserved() {}

    /// Prepares for pictures of `width` by `height` pixels in one colour component. Result ids come from the
    /// program's `resultIdCounter`: for each result take its value and raise it by one. The counter is to be
    /// used during this call.
    virtual void Init(int component, int width, int height, int* resultIdCounter) = 0;

    /// Measures one frame: the images of as many files as `GetInputCount` told, the original first. Fills
    /// `ids` and `values`, one of each a result, and `resultCount`.
    virtual void Measure(IMetricImage** images, int imageCount, int* ids, float* values,
                         int* resultCount) = 0;

    /// The same, and paints the picture `target`: `width` by `height` pixels, bytes blue, green, red, rows
    /// from the top and `targetStride` bytes apart.
    virtual void MeasureAndVisualize(IMetricImage** images, int imageCount, int* ids, float* values,
                                     int* resultCount, unsigned char* target, int targetStride) = 0;

    /// The results that will be delivered, at least 1 and at most 10. For result i: its id in `ids[i]`; in
    /// `fileLists[i][0]` how many files it speaks of, at most 9, and behind that their positions (0 the
    /// original, 1 the processed file; a metric of one file gives 0); in the buffer `names[i]` what tells it
    /// from the metric's other results, appended to the metric's name. A metric with one result leaves the
    /// name empty.
    virtual void GetResultInfo(int* resultCount, int* ids, int** fileLists, wchar_t** names,
                               bool visualize) = 0;

    /// The value of the whole sequence for each result, over the frames measured so far.
    virtual void GetAverages(int* ids, float* values, int* resultCount, bool visualize) = 0;

    /// How many files are compared: 1 or 2.
    virtual int GetInputCount(bool visualize) = 0;

    /// The colour components that the metric works on, at most 10, in the order in which they are to be
    /// displayed.
    virtual void GetComponents(int* components, int* count) = 0;

    /// A name that never changes, by which settings and scripts find the metric: "roi_psnr".
    virtual void GetId(wchar_t* buffer) = 0;

    /// The unit of the values, such as "dB"; may be empty.
    virtual void GetUnit(wchar_t* buffer) = 0;

    /// The width and height of a picture are best multiples of these. 1 if any size will do.
    virtual int GetBlockWidth() = 0;
    virtual int GetBlockHeight() = 0;

    /// The name that is displayed: "PSNR (region)".
    virtual void GetName(wchar_t* buffer) = 0;

    /// The address of a page about the metric; may be empty.
    virtual void GetInfoUrl(wchar_t* buffer) = 0;

    /// Whether greater values mean better quality.
    virtual bool IsHigherBetter() = 0;

    /// Whether there is a settings string. Only then `Configure` and `GetDefaultSettings` are called.
    virtual bool IsConfigurable() = 0;

    /// Takes the line that the user typed, unchanged. False refuses it: the metric isn't run.
    virtual bool Configure(const wchar_t* settings) = 0;

    /// The settings string that the user starts from. False if it doesn't fit `size` characters: the program
    /// comes again with up to 8320.
    virtual bool GetDefaultSettings(wchar_t* buffer, int size) = 0;

protected:
    ~IMetricPlugin() = default;  // no slot in the table
};

}  // namespace Metric

#define TOLVANE_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

/// Stores the address of a new metric, an `IMetricPlugin*`, in `*metric`, or null if there can't be one.
TOLVANE_PLUGIN_EXPORT void CreateMetric(void** metric);

/// Destroys what `CreateMetric` made.
TOLVANE_PLUGIN_EXPORT void ReleaseMetric(void* metric);

/// Defines both exports for a `final` class with a default constructor.
#define TOLVANE_EXPORT_METRIC(Class)                                               \
    void CreateMetric(void** metric) {                                             \
        try {                                                                      \
            *metric = static_cast<::Metric::IMetricPlugin*>(new Class);            \
        } catch (...) {                                                            \
            *metric = nullptr;                                                     \
        }                                                                          \
    }                                                                              \
    void ReleaseMetric(void* metric) {                                             \
        delete static_cast<Class*>(static_cast<::Metric::IMetricPlugin*>(metric)); \
    }
