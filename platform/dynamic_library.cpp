#include "platform/dynamic_library.h"

#include <dlfcn.h>

#include "platform/elf_file.h"
#include "platform/file.h"
#include "platform/text.h"

bool DynamicLibrary::Open(const std::wstring& path) {
    Close();
    ReadOnlyFile file;
    if (!file.Open(path) || !IsWholeSharedLibrary(file)) return false;

    // The loader searches its own directories for a name without a separator.
    std::string name = ToUtf8(path);
    if (name.find('/') == name.npos) name = "./" + name;
    // All symbols at once: one that is missing is found here and not in the middle of a measurement.
    handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    return IsOpen();
}

void DynamicLibrary::Close() {
    if (IsOpen()) dlclose(handle);
    handle = nullptr;
}

void* DynamicLibrary::FindSymbol(const char* name) const {
    return IsOpen() ? dlsym(handle, name) : nullptr;
}
