#pragma once

#include <string>

/// The name under which generated scripts stand in the current directory, one at a time.
extern const wchar_t* const kTemporaryScriptName;

/// A generated script, from its creation to its deletion. While it is there it is locked: another program or
/// thread that wants to write one in the same directory waits for its end. What is left of a program that was
/// killed has no lock, and is taken away by the next one.
class rkTemporaryScript {
public:
    rkTemporaryScript() = default;
    ~rkTemporaryScript();
    rkTemporaryScript(const rkTemporaryScript&) = delete;
    rkTemporaryScript& operator=(const rkTemporaryScript&) = delete;

    /// Writes the script as UTF-8. False if it can't be created: the directory can't be written to, or
    /// someone else's script stays there for longer than ten seconds.
    bool Create(const std::wstring& text);

private:
    int descriptor = -1;
};

/// Takes away what a killed program left in the current directory. A program does it when it starts.
void rkRemoveStaleScript();
