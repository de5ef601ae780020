#pragma once

#include "platform/settings_store.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>

/// A store that forgets with its end.
class MemorySettingsStore : public ISettingsStore {
public:
    std::optional<int> ReadNumber(const std::string& name) const override { return Read<int>(name); }
    std::optional<std::wstring> ReadText(const std::string& name) const override {
        return Read<std::wstring>(name);
    }
    bool WriteNumber(const std::string& name, int number) override { return Write(name, number); }
    bool WriteText(const std::string& name, const std::wstring& text) override { return Write(name, text); }

private:
    using Value = std::variant<int, std::wstring>;

    template <class Type>
    std::optional<Type> Read(const std::string& name) const {
        const auto found = values.find(name);
        if (found == values.end() || !std::holds_alternative<Type>(found->second)) return {};
        return std::get<Type>(found->second);
    }

    bool Write(const std::string& name, Value value) {
        values.insert_or_assign(name, std::move(value));
        return true;
    }

    std::map<std::string, Value> values;
};
