#pragma once

#include <optional>
#include <string>

/// Named values that survive the end of a program: 32-bit numbers and texts.
///
/// A value keeps its type: what was written as a number is no text, and a text is no number, not even "42". A
/// text comes back with every character that it had: line ends, quotes, and the bytes of file names that
/// aren't UTF-8 (see `platform/text.h`). Names are ASCII letters, digits and "_".
///
/// Several processes may use the store at once: each value is read and written whole, and what one of them
/// doesn't write stays as it is.
class ISettingsStore {
public:
    /// Nothing if there is no value of this name, or it isn't of this type, or the store can't be read.
    virtual std::optional<int> ReadNumber(const std::string& name) const = 0;
    virtual std::optional<std::wstring> ReadText(const std::string& name) const = 0;

    /// Replaces a value of either type. False if it got lost; the other values don't depend on it.
    virtual bool WriteNumber(const std::string& name, int number) = 0;
    virtual bool WriteText(const std::string& name, const std::wstring& text) = 0;

    virtual ~ISettingsStore() = default;
};
