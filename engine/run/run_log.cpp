#include "engine/run/run_log.h"

#include <new>
#include <stdexcept>

#include "engine/run/run_state.h"

namespace {

constexpr const wchar_t* kOutOfMemory = L"Not enough memory for the measurement.";

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
