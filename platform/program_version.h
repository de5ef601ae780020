#pragma once

/// The program's version, four numbers as in "3.0.0.0". Static storage.
const char* ProgramVersion();
