#include "platform/script_host/builtin_sources.h"
#include "platform/script_host/clip.h"
#include "platform/script_host/script_text.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

std::string Written(const ScriptValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return "\"" + *text + "\"";
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&value)) return std::to_string(*real);
    return std::get<bool>(value) ? "true" : "false";
}

/// The script as one would write it. Numbers with a point are cut to six places.
std::string Written(const Script& script) {
    std::string text;
    for (const Script::Plugin& plugin : script.plugins) text += "loadplugin(\"" + plugin.path + "\")\n";
    text += script.source.function + "(";
    for (const ScriptArgument& argument : script.source.arguments) {
        if (text.back() != '(') text += ", ";
        text += (argument.name.empty() ? "" : argument.name + " = ") + Written(argument.value);
    }
    return text + ")";
}

/// The functions with parameters of every kind, so that arguments of every kind are bound.
void Bind(const ScriptCall& call) {
    static const std::vector<SourceParameter> kParameters = {{"text", SourceText, true},
                                                             {"whole", SourceWhole, false},
                                                             {"real", SourceReal, false},
                                                             {"flag", SourceFlag, false}};
    try {
        const BoundArguments arguments(call, kParameters, "");
        Require(arguments.Values().size() == kParameters.size() && arguments.Values()[0].text != nullptr);
    } catch (const ScriptError& error) {
        Require(error.what()[0] == 'l');
    }
}

}  // namespace

/// A script that is read and written again reads as the same; one that isn't names its line. Run as a whole
/// it gives a clip or a message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const Script script = ParseScript({reinterpret_cast<const char*>(data), size});
        const std::string written = Written(script);
        Require(Written(ParseScript(written)) == written);
        Bind(script.source);
        // Libraries with the fuzzer's counters can't be unloaded again.
        if (!script.plugins.empty()) return 0;
    } catch (const ScriptError& error) {
        Require(std::string(error.what()).rfind("line ", 0) == 0);
    }
    const MemoryFile file(data, size);
    const ScriptResult result = RunScript(file.Path());
    Require((result.clip == nullptr) != result.error.empty());
    return 0;
}
