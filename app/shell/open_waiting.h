#pragma once

#include "engine/model/file_record.h"

/// Opens a file for a window, or gives null if it doesn't open. Some containers are read from end to end
/// before they are open; meanwhile windows go on repainting, but take no input. GUI thread only.
std::unique_ptr<rkIVideoSource> OpenWaiting(const FileRecord& record);
