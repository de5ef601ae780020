#pragma once

#include <tolvane/source_plugin.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/script_host/clip.h"
#include "platform/script_host/script_text.h"

/// A function that scripts can call: a plug-in's, or one of the program's own.
struct ScriptFunction {
    std::string name;
    std::vector<SourceParameter> parameters;
    /// Opens the video. Gets one value a parameter. Throws std::bad_alloc.
    std::function<ScriptResult(const std::vector<SourceValue>& values)> open;
};

/// The arguments of a call, bound to the parameters of its function.
class BoundArguments {
public:
    /// Throws ScriptError for an argument that the function doesn't have, that is given twice, that is of
    /// another kind than its parameter, and for a required one that is missing. A file is looked for from
    /// `directory` (empty, or ending in a separator) on, see `FindSourceFile`.
    BoundArguments(const ScriptCall& call, const std::vector<SourceParameter>& parameters,
                   const std::string& directory);
    BoundArguments(const BoundArguments&) = delete;
    BoundArguments& operator=(const BoundArguments&) = delete;

    /// One a parameter. Their texts belong to this object.
    const std::vector<SourceValue>& Values() const { return values; }

private:
    void Bind(const ScriptCall& call, const ScriptArgument& argument, const SourceParameter& parameter,
              SourceValue& value);

    std::string directory;
    std::vector<SourceValue> values;
    std::vector<std::unique_ptr<std::string>> texts;
};

/// The path of a file that a script names: relative to the script's directory, and with `\` as separator
/// where there is no file of just this name.
std::string FindSourceFile(const std::string& name, const std::string& directory);
