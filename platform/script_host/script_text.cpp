#include "platform/script_host/script_text.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsWordStart(char c) {
    return c == '_' || (Lower(c) >= 'a' && Lower(c) <= 'z');
}
bool IsWordPart(char c) {
    return IsWordStart(c) || IsDigit(c);
}
bool IsNumberPart(char c) {
    return IsWordPart(c) || c == '.' || c == '+' || c == '-';
}

/// Reads a script from its start to its end, and knows its line.
class Reader {
public:
    explicit Reader(std::string_view script) : rest(script) {
        if (rest.substr(0, kByteOrderMark.size()) == kByteOrderMark)
            rest.remove_prefix(kByteOrderMark.size());
    }

    int Line() const { return line; }

    /// Goes to the next statement; false at the end.
    bool FindStatement() {
        for (;;) {
            SkipBlanks();
            if (rest.empty()) return false;
            if (rest.front() != '\n') return true;
            rest.remove_prefix(1);
            ++line;
        }
    }

    ScriptCall ReadCall() {
        ScriptCall call;
        call.line = line;
        call.function = ReadWord("a function's name");
        Expect('(', "after \"" + call.function + "\"");
        if (!Accept(')')) {
            do call.arguments.push_back(ReadArgument());
            while (Accept(','));
            Expect(')', "after an argument");
        }
        SkipBlanks();
        if (!rest.empty() && rest.front() != '\n') Fail("behind the call");
        return call;
    }

private:
    /// Blanks, a line's carriage return and a comment, up to the line feed.
    void SkipBlanks() {
        rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r"), rest.size()));
        if (!rest.empty() && rest.front() == '#') rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
    }

    bool Accept(char c) {
        SkipBlanks();
        if (rest.empty() || rest.front() != c) return false;
        rest.remove_prefix(1);
        return true;
    }

    void Expect(char c, const std::string& where) {
        if (!Accept(c)) Fail(where + " instead of \"" + c + "\"");
    }

    [[noreturn]] void Fail(const std::string& where) const {
        if (rest.empty()) throw ScriptError(line, "the script ends " + where);
        const auto c = static_cast<unsigned char>(rest.front());
        if (c == '\n') throw ScriptError(line, "the line ends " + where);
        const bool shown = c > ' ' && c < 0x7F;
        throw ScriptError(line, (shown ? std::string("\"") + rest.front() + "\""
                                       : "a character of code " + std::to_string(c)) +
                                    " stands " + where);
    }

    std::string Take(bool (*isPart)(char)) {
        const auto end = std::find_if_not(rest.begin(), rest.end(), isPart);
        const std::string word(rest.begin(), end);
        rest.remove_prefix(word.size());
        return word;
    }

    std::string ReadWord(const std::string& what) {
        SkipBlanks();
        if (rest.empty() || !IsWordStart(rest.front())) Fail("instead of " + what);
        return Take(IsWordPart);
    }

    ScriptArgument ReadArgument() {
        SkipBlanks();
        if (rest.empty() || !IsWordStart(rest.front())) return {"", ReadValue()};
        const std::string word = Take(IsWordPart);
        if (Accept('=')) return {word, ReadValue()};
        return {"", FlagOf(word)};
    }

    ScriptValue ReadValue() {
        SkipBlanks();
        if (rest.empty()) Fail("instead of a value");
        const char c = rest.front();
        if (c == '"') return ReadText();
        if (IsWordStart(c)) return FlagOf(Take(IsWordPart));
        if (IsNumberPart(c)) return ReadNumber();
        Fail("instead of a value");
    }

    std::string ReadText() {
        const auto end = rest.find('"', 1);
        if (end == rest.npos) throw ScriptError(line, "a text has no closing quote");
        const std::string text(rest.substr(1, end - 1));
        // Paths end at a zero byte for the system: what is behind it would be dropped without a word.
        if (text.find('\0') != text.npos) throw ScriptError(line, "a text holds a zero byte");
        line += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
        rest.remove_prefix(end + 1);
        return text;
    }

    ScriptValue ReadNumber() {
        const std::string word = Take(IsNumberPart);
        const char* begin = word.data() + (word.front() == '+' ? 1 : 0);
        const char* end = word.data() + word.size();
        std::int64_t whole = 0;
        if (const auto [at, error] = std::from_chars(begin, end, whole); at == end && error == std::errc()) {
            return whole;
        }
        double real = 0;
        const auto [at, error] = std::from_chars(begin, end, real, std::chars_format::fixed);
        const bool digitsOnly =
            std::all_of(begin, end, [](char c) { return IsDigit(c) || c == '.' || c == '-'; });
        if (at != end || error != std::errc() || !digitsOnly || word.find('.') == word.npos) {
            throw ScriptError(line, "\"" + word + "\" is no number, or one that is too large");
        }
        return real;
    }

    bool FlagOf(const std::string& word) const {
        if (IsSameName(word, "true")) return true;
        if (IsSameName(word, "false")) return false;
        throw ScriptError(line,
                          "\"" + word + "\" is no value: texts stand in quotes, flags are true and false");
    }

    std::string_view rest;
    int line = 1;
};

std::string PluginPath(const ScriptCall& call) {
    const bool isText = call.arguments.size() == 1 && call.arguments[0].name.empty() &&
                        std::holds_alternative<std::string>(call.arguments[0].value);
    if (!isText) throw ScriptError(call.line, "loadplugin takes one text, the plug-in's file");
    return std::get<std::string>(call.arguments[0].value);
}

}  // namespace

Script ParseScript(std::string_view text) {
    Script script;
    Reader reader(text);
    while (reader.FindStatement()) {
        ScriptCall call = reader.ReadCall();
        if (script.source.line > 0) throw ScriptError(call.line, "a script ends with its one source");
        if (IsSameName(call.function, "loadplugin")) {
            script.plugins.push_back({call.line, PluginPath(call)});
        } else {
            script.source = std::move(call);
        }
    }
    if (script.source.line == 0) throw ScriptError(reader.Line(), "the script calls no source function");
    return script;
}

bool IsSameName(std::string_view first, std::string_view second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}
