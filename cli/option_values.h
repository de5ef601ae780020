#pragma once

#include <string>

#include "cli/options.h"

/// What stands behind an option, UTF-8. All throw UsageError, with the form that the option takes, for anything else.

/// WIDTHxHEIGHT, both above 0.
PictureSize ParseSize(const std::string& option, const std::string& text);

/// The layout's tag, by the name that the dialogs and the log use.
int ParseLayout(const std::string& option, const std::string& text);

/// The number of a source filter for scripts.
int ParseFilter(const std::string& option, const std::string& text);

/// ID[:COMPONENT][=SETTINGS]; whether there is such a metric is not looked at.
MetricOption ParseMetric(const std::string& text);

/// The error that such a value is: the option, what it takes, and what it got.
UsageError Wrong(const std::string& option, const std::string& given, const char* form);
