#include "engine/run/taken_by_run.h"

TakenPaths TakenByRun(const RunParameters& run) {
    TakenPaths taken;
    for (const FileRecord& record : run.inputFiles) taken.TakeInput(record.sourceName);
    if (run.useMask) taken.TakeInput(run.maskFile.sourceName);
    for (const std::wstring& path : run.reservedPaths) taken.TakeOutput(path);
    for (const std::wstring& path : run.visualizationPaths) taken.TakeOutput(path);
    return taken;
}
