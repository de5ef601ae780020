#include "video/avisynth/open_through_script.h"

#include "video/avisynth/temporary_script.h"
#include "video/sources/create_source.h"

std::unique_ptr<rkIVideoSource> rkOpenThroughScript(const rkScriptInput& input, int filter, bool preferPlanar,
                                                    bool useDefaults) {
    if (filter < 0 || filter >= rkScriptFilterCount) return nullptr;
    if (input.sourceName.find(L'"') != std::wstring::npos) return nullptr;
    const std::wstring parameters = useDefaults ? rkDefaultParameters(input, filter) : input.parameters;
    // The source has read the script when it is open.
    rkTemporaryScript script;
    if (!script.Create(rkScriptText(input, filter, parameters))) return nullptr;
    return rkCreateVideoSource(kTemporaryScriptName, preferPlanar);
}
