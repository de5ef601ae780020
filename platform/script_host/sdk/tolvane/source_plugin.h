// The interface between Tolvane's scripts and a source plug-in: a shared library that scripts load by
//
//     loadplugin("avs_plugins\NAME.dll")
//
// and that gives them functions, each of which opens a file as a video. This header is all that a plug-in
// needs. The library exports one C function, `RegisterSources`. Everything here is plain C data, so that the
// compilers of the program and of the plug-in needn't be the same.
//
// Texts are UTF-8, ended by a 0. No function may let an exception out.
#pragma once

constexpr int kSourceInterfaceVersion = 1;

enum SourceValueKind {
    SourceFile,   // a text that names a file; the function gets a path that can be opened
    SourceText,   // any text
    SourceWhole,  // a whole number
    SourceReal,   // a number, with a point or without
    SourceFlag    // true or false
};

/// One parameter of a function. Arguments without a name fill the parameters in their order.
struct SourceParameter {
    const char* name;  ///< letters, digits, `_`
    SourceValueKind kind;
    bool required;
};

/// The argument for one parameter; only the field of the parameter's kind means anything.
struct SourceValue {
    bool given;
    const char* text;
    int whole;
    double real;
    bool flag;
};

enum SourceSurface {
    SourceYV12,     ///< planes Y, V, U without gaps, 4:2:0, rows top-down; even sizes
    SourceYUY2,     ///< interleaved Y U Y V, 4:2:2, rows top-down and without gaps; even width
    SourceRGB24,    ///< interleaved B G R, rows bottom-up, padded to a multiple of 4 bytes
    SourceAsStored  ///< only when asking: that of the three which keeps the chroma form of the file
};

/// An open video. `video` is handed back to the function's other operations.
struct SourceVideo {
    void* video;
    int width;  ///< pixels
    int height;
    SourceSurface surface;
    int frameCount;
    unsigned rate;  ///< frames a second are `rate / scale`, both above 0
    unsigned scale;
    const char* description;  ///< how the file's samples became this surface; empty if untouched
};

/// A function as scripts call it. What its pointers lead to stays as long as the library is loaded.
///
/// `open`   gets as many values as there are parameters, in their order. True and `result` filled, its text
///          valid until `close`; or false and why, in one line of at most `messageSize` bytes, the closing 0
///          included.
/// `read`   fills `buffer` with frame `frame`, counted from 0, in the surface's size; false if it can't be
///          had. Frames are asked for in any order; each gives the same picture whenever it is asked for.
/// `close`  ends what `open` made. Each open video is used by one thread at a time.
struct SourceFunction {
    const char* name;
    const SourceParameter* parameters;
    int parameterCount;
    bool (*open)(const SourceValue* values, SourceVideo* result, char* message, int messageSize);
    bool (*read)(void* video, int frame, unsigned char* buffer);
    void (*close)(void* video);
};

/// The program's own reader of container files, for plug-ins that only choose what it shall do. `open` takes
/// a path and the surface that is wanted, and answers as a `SourceFunction`'s does; it fails if the pictures
/// would lose what they hold. Stays as long as the program runs.
struct SourceContainers {
    bool (*open)(const char* path, SourceSurface surface, SourceVideo* result, char* message,
                 int messageSize);
    bool (*read)(void* video, int frame, unsigned char* buffer);
    void (*close)(void* video);
};

/// The script that a plug-in is loaded for. `add` gives it a copy of a function and may be called any number
/// of times.
struct SourceHost {
    int version;  ///< `kSourceInterfaceVersion` of the program
    void (*add)(SourceHost* host, const SourceFunction* function);
    const SourceContainers* containers;
};

/// The plug-in's one export. False if it can't work with a program of this version.
extern "C" __attribute__((visibility("default"))) bool RegisterSources(SourceHost* host);
