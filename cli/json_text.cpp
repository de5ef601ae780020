#include "cli/json_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <utility>

namespace {

using Json = nlohmann::json;

/// Of a single value only: the library's arrays and objects need memory even to go away, and end the process
/// without.
std::string TokenOf(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

void JsonText::Key(std::string_view key) {
    BeginItem();
    text.append("\"").append(key).append("\": ");
    isBehindKey = true;
}

void JsonText::String(std::string_view string) {
    Scalar(TokenOf(string));
}

void JsonText::Number(double value) {
    if (!std::isfinite(value)) return Null();
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.9g", value);
    Scalar(TokenOf(std::strtod(digits, nullptr)));
}

std::string JsonText::Take() {
    text += '\n';
    return std::move(text);
}

void JsonText::Begin(char bracket) {
    BeginItem();
    text += bracket;
    ++depth;
    isFirst = true;
}

void JsonText::End(char bracket) {
    --depth;
    if (!isFirst) NewLine();
    text += bracket;
    isFirst = false;
}

void JsonText::Scalar(std::string_view token) {
    BeginItem();
    text += token;
}

void JsonText::BeginItem() {
    if (depth > 0 && !isBehindKey) {
        if (!isFirst) text += ',';
        NewLine();
    }
    isFirst = isBehindKey = false;
}

void JsonText::NewLine() {
    text += '\n';
    text.append(2 * depth, ' ');
}
