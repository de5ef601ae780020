#pragma once

class ReadOnlyFile;

/// Whether a file is a shared library for this machine from its header to its end: ELF of this word size,
/// byte order and processor, whose program headers, segments, section headers and dynamic table lie within
/// the file, and whose dynamic table names symbols and strings that are loaded. What the segments hold
/// otherwise isn't looked at.
bool IsWholeSharedLibrary(const ReadOnlyFile& file);
