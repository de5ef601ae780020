#pragma once

#include <tolvane/source_plugin.h>

/// The reader of container files that plug-ins are offered. Static storage.
const SourceContainers& GetSourceContainers();
