#include <algorithm>
#include <new>

#include "platform/file.h"
#include "platform/media/libav.h"
#include "platform/script_host/builtin_sources.h"
#include "platform/script_host/source_plugin.h"
#include "platform/text.h"

namespace {

constexpr std::size_t kMaxScriptBytes = 1 << 16;

/// Throws ScriptError.
std::string ReadScript(const std::wstring& path) {
    ReadOnlyFile file;
    if (!file.Open(path)) throw ScriptError(1, "the script can't be read");
    // One byte more shows a script that is too long.
    std::string text(kMaxScriptBytes + 1, '\0');
    text.resize(file.ReadAt(0, text.data(), text.size()));
    if (text.size() > kMaxScriptBytes) throw ScriptError(1, "the script is longer than 65536 bytes");
    return text;
}

std::vector<ScriptFunction> FunctionsFor(const Script& script) {
    std::vector<ScriptFunction> functions = BuiltinSources();
    for (const Script::Plugin& plugin : script.plugins) {
        const std::wstring path = FindSourcePlugin(plugin.path);
        const std::string error =
            path.empty() ? "there is no such file beside the program" : LoadSourcePlugin(path, functions);
        if (!error.empty()) throw ScriptError(plugin.line, "loadplugin of \"" + plugin.path + "\": " + error);
    }
    return functions;
}

ScriptResult Call(const ScriptCall& call, const std::vector<ScriptFunction>& functions,
                  const std::string& directory) {
    // A plug-in that names a function again replaces it.
    const auto function = std::find_if(functions.rbegin(), functions.rend(),
                                       [&call](const auto& f) { return IsSameName(f.name, call.function); });
    if (function == functions.rend())
        throw ScriptError(call.line, "there is no function \"" + call.function + "\"");
    const BoundArguments arguments(call, function->parameters, directory);
    ScriptResult result = function->open(arguments.Values());
    if (result.clip == nullptr) throw ScriptError(call.line, call.function + ": " + result.error);
    return result;
}

}  // namespace

ScriptResult RunScript(const std::wstring& path) try {
    const Script script = ParseScript(ReadScript(path));
    const std::string name = ToUtf8(path);
    return Call(script.source, FunctionsFor(script), name.substr(0, name.rfind('/') + 1));
} catch (const ScriptError& error) {
    return {nullptr, error.what()};
} catch (const NoCodecLibrary& error) {
    return {nullptr, error.what()};
} catch (const std::bad_alloc&) {
    return {nullptr, "there isn't enough memory for the script"};
}
