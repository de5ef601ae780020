#include "engine/run/run_log.h"

#include <new>
#include <stdexcept>

#include "engine/run/run_state.h"
#include "output/text_raster.h"

namespace {

constexpr const wchar_t* kOutOfMemory = L"Not enough memory for the measurement.";

/// What to say of the exception that is being handled.
std::wstring CaughtFailure() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    } catch (const std::length_error&) {  // a picture too big to be addressed
        return kOutOfMemory;
    } catch (...) {
        return L"The measurement failed because of an internal error.";
    }
}

}  // namespace

void LogLine(const RunParameters& run, const std::wstring& line) {
    if (run.log != nullptr) run.log->Log(line);
}

std::wstring Quoted(const std::wstring& text) {
    return L'"' + text + L'"';
}

const FileRecord& RecordOf(const RunParameters& run, int file) {
    return file == kMaskFile ? run.maskFile : run.inputFiles[static_cast<std::size_t>(file)];
}

void LogMissingFont(const RunParameters& run) {
    if (!TextRaster().HasFont())
        LogLine(run,
                L"No font was found, pictures are saved without captions (install one, such as DejaVu Sans)");
}

void LogFailure(const RunParameters& run) noexcept {
    try {
        LogLine(run, CaughtFailure());
    } catch (...) {  // no memory for the line either: the outcome tells
    }
}
