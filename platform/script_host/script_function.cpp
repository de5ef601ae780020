#include "platform/script_host/script_function.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>

namespace {

const char* KindName(SourceValueKind kind) {
    switch (kind) {
        case SourceFile:
            return "a file's name in quotes";
        case SourceText:
            return "a text in quotes";
        case SourceWhole:
            return "a whole number";
        case SourceReal:
            return "a number";
        case SourceFlag:
            return "true or false";
    }
    return "nothing that a script can say";
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

/// The parameter that an argument is for, by its name or its place.
std::size_t FindParameter(const ScriptCall& call, std::size_t place,
                          const std::vector<SourceParameter>& parameters) {
    const std::string& name = call.arguments[place].name;
    if (name.empty()) {
        if (place > 0 && !call.arguments[place - 1].name.empty())
            throw ScriptError(call.line, "an argument without a name stands behind one with a name");
        if (place >= parameters.size())
            throw ScriptError(call.line, call.function + " has too many arguments");
        return place;
    }
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&name](const auto& p) { return IsSameName(p.name, name); });
    if (found == parameters.end())
        throw ScriptError(call.line, call.function + " has no argument " + Quoted(name));
    return static_cast<std::size_t>(found - parameters.begin());
}

bool FitsInt(std::int64_t number) {
    return number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
}

/// Stores a number or a flag; false if `from` isn't of this kind.
bool Store(const ScriptValue& from, SourceValueKind kind, SourceValue& to) {
    const auto* whole = std::get_if<std::int64_t>(&from);
    const auto* real = std::get_if<double>(&from);
    const auto* flag = std::get_if<bool>(&from);
    if (kind == SourceWhole && whole != nullptr && FitsInt(*whole)) {
        to.whole = static_cast<int>(*whole);
    } else if (kind == SourceReal && (real != nullptr || whole != nullptr)) {
        to.real = real != nullptr ? *real : static_cast<double>(*whole);
    } else if (kind == SourceFlag && flag != nullptr) {
        to.flag = *flag;
    } else {
        return false;
    }
    return true;
}

}  // namespace

BoundArguments::BoundArguments(const ScriptCall& call, const std::vector<SourceParameter>& parameters,
                               const std::string& scriptDirectory)
    : directory(scriptDirectory), values(parameters.size()) {
    for (std::size_t place = 0; place < call.arguments.size(); ++place) {
        const std::size_t number = FindParameter(call, place, parameters);
        Bind(call, call.arguments[place], parameters[number], values[number]);
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].required && !values[i].given)
            throw ScriptError(call.line,
                              call.function + " misses its argument " + Quoted(parameters[i].name));
    }
}

void BoundArguments::Bind(const ScriptCall& call, const ScriptArgument& argument,
                          const SourceParameter& parameter, SourceValue& value) {
    if (value.given)
        throw ScriptError(call.line,
                          call.function + " gets its argument " + Quoted(parameter.name) + " twice");
    value.given = true;
    const bool isText = parameter.kind == SourceFile || parameter.kind == SourceText;
    const auto* text = std::get_if<std::string>(&argument.value);
    if (isText && text != nullptr) {
        texts.push_back(std::make_unique<std::string>(
            parameter.kind == SourceFile ? FindSourceFile(*text, directory) : *text));
        value.text = texts.back()->c_str();
    } else if (isText || !Store(argument.value, parameter.kind, value)) {
        throw ScriptError(call.line, "the argument " + Quoted(parameter.name) + " of " + call.function +
                                         " takes " + KindName(parameter.kind));
    }
}

std::string FindSourceFile(const std::string& name, const std::string& directory) {
    const auto from = [&directory](const std::string& file) {
        return !file.empty() && file.front() == '/' ? file : directory + file;
    };
    std::error_code error;
    if (std::filesystem::exists(from(name), error)) return from(name);
    std::string withSlashes = name;
    std::replace(withSlashes.begin(), withSlashes.end(), '\\', '/');
    return from(withSlashes);
}
