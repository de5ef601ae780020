#pragma once

#include <string>

/// The functions of scripts that open a video, by the numbers that settings store.
enum rkScriptFilter : int {
    rkAviSourceFilter = 0,
    rkOpenDMLSourceFilter = 1,
    rkAviFileSourceFilter = 2,
    rkDirectShowSourceFilter = 3,
    rkDirectShowSource2Filter = 4,
    rkFFMpegSourceFilter = 5,
    rkQTSourceFilter = 6,
    rkRawSourceFilter = 7,
    rkScriptFilterCount
};

/// A video to be opened through a script.
struct rkScriptInput {
    std::wstring sourceName;
    std::wstring
        parameters;  ///< the user's arguments behind the file's name, separated by commas; may be empty
    int width = 0;   ///< frame size and layout (an `rkColorSpace`) of a raw file
    int height = 0;
    int yuvType = 0;
};

/// The arguments that a filter gets unless the user writes others; those of RawSource are made of the input's
/// size and layout. Empty for a number that is no filter's.
std::wstring rkDefaultParameters(const rkScriptInput& input, int filter);

/// Whether RawSource reads this layout; the format in its default parameters is "unknown format" otherwise.
bool rkRawSourceReads(int yuvType);

/// The filter that is called so, by its role or by its function ("DirectShowSource2", "dss2"), in any case;
/// -1 if there is none.
int rkScriptFilterByName(const std::wstring& name);

/// The filter that suits a file's name best.
int rkScriptFilterForFile(const std::wstring& fileName);

/// The script that opens the input through `filter` (0 to 7) with these arguments, without a line feed at its
/// end.
std::wstring rkScriptText(const rkScriptInput& input, int filter, const std::wstring& parameters);
