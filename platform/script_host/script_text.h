#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// The script language, line by line:
///
///     loadplugin("avs_plugins\NAME.dll")              any number, in front
///     Function("file", 352, name = "text", b = true)  exactly one
///
/// and blank lines; `#` starts a comment. Arguments without a name come before those with one. Values are
/// texts in double quotes (all characters but the quote, line ends too; nothing is escaped), whole numbers,
/// numbers with a point, `true` and `false`. Names and words are letters, digits and `_`, in any case. Text
/// is UTF-8, a byte order mark in front is skipped.

/// A value as written: text, whole number, number with a point, or flag.
using ScriptValue = std::variant<std::string, std::int64_t, double, bool>;

struct ScriptArgument {
    std::string name;  ///< empty if it has none
    ScriptValue value;
};

struct ScriptCall {
    int line = 0;  ///< counted from 1
    std::string function;
    std::vector<ScriptArgument> arguments;
};

struct Script {
    struct Plugin {
        int line = 0;
        std::string path;
    };
    std::vector<Plugin> plugins;
    ScriptCall source;
};

/// What is wrong with a script: `what` is one line in UTF-8 that begins with the number of the script's line.
class ScriptError : public std::runtime_error {
public:
    ScriptError(int line, const std::string& message)
        : std::runtime_error("line " + std::to_string(line) + ": " + message) {}
};

/// Throws ScriptError, std::bad_alloc.
Script ParseScript(std::string_view text);

/// Whether two names are one: letters A to Z in any case.
bool IsSameName(std::string_view first, std::string_view second);
