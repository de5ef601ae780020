#pragma once

#include <string>
#include <string_view>

/// JSON text as it is written, indented by two blanks: without a tree of values beside it, which for a long
/// run would be many times as big.
///
/// Calls follow the structure, each value in an object behind its key. Any of them throws std::bad_alloc.
class JsonText {
public:
    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }
    void Key(std::string_view key);  ///< of plain letters

    /// UTF-8; bytes that are none show as the replacement character.
    void String(std::string_view text);
    void Integer(int value) { Scalar(std::to_string(value)); }
    void Boolean(bool value) { Scalar(value ? "true" : "false"); }
    /// With nine significant digits, so that a float survives; null if it isn't finite.
    void Number(double value);
    void Null() { Scalar("null"); }

    /// The whole, ended by a line feed. The object is of no use behind it.
    std::string Take();

private:
    void Begin(char bracket);
    void End(char bracket);
    void Scalar(std::string_view token);
    void BeginItem();
    void NewLine();

    std::string text;
    std::size_t depth = 0;
    bool isFirst = true;  ///< the next item is the first one in its brackets
    bool isBehindKey = false;
};
