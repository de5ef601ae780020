#pragma once

#include <memory>

#include "video/avisynth/script_filter.h"
#include "video/video_source.h"

/// Opens a video through a script of one line, or two if `filter` comes from a plug-in, that is written for
/// this moment to the current directory. Null if the filter's number is unknown, the script can't be written,
/// or it fails; a source name with a double quote can't be written in a script.
///
/// `useDefaults`  gives the filter its default arguments in place of `input.parameters`.
std::unique_ptr<rkIVideoSource> rkOpenThroughScript(const rkScriptInput& input, int filter, bool preferPlanar,
                                                    bool useDefaults);
