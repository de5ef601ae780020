#pragma once

#include <string>

/// A shared library that is loaded while the program runs. Its names are its own: they don't meet those of
/// the program or of other libraries. Every `Open` of a file that is loaded already counts as one more user
/// of the same library.
///
/// A file that isn't a whole library of this machine is refused before the system's loader sees it, which may
/// crash on one that is cut off. What a library does when it is loaded can't be guarded against. Not for two
/// threads at once.
class DynamicLibrary {
public:
    DynamicLibrary() = default;
    ~DynamicLibrary() { Close(); }
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    /// Closes what was open. `path` is a file, never a name to be searched for. False if it can't be loaded.
    bool Open(const std::wstring& path);
    void Close();
    bool IsOpen() const { return handle != nullptr; }

    /// The exported function `name`, or null. `Function` is the type that the caller knows it to have.
    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(FindSymbol(name));
    }

private:
    void* FindSymbol(const char* name) const;

    void* handle = nullptr;
};
