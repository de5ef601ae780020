#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What an update is on the server and in the program's directory. Names are relative, to the base address
/// there and to the program's directory here.

constexpr const char* kServerVersion = "update/LATEST";
constexpr const char* kServerFiles = "update/files/Win32/";
constexpr const char* kServerList = "update/files/Win32/LIST";

constexpr std::size_t kMaxVersionBytes = 4096;
constexpr std::size_t kMaxListBytes = 16384;
constexpr std::size_t kBlockBytes = 4096;
constexpr std::uint64_t kMaxUpdateBytes = std::uint64_t{2} << 30;  // more than any release; a lie ends here

/// The staging directory has every listed file under its own name, and beside them the list and the marks.
constexpr const char* kStaging = "update";
constexpr const char* kStagedList = "update/LIST";
constexpr const char* kCompleteMark = "update/.COMPLETED";  // the download is complete; written last
constexpr const char* kTriedMark = "update/.TRIED";         // an install has failed once
constexpr const char* kSetAside = "update.failed";          // a download that couldn't be installed

constexpr const char* kPreviousEnding = ".bak";       // behind a program file's name: the version before
constexpr const char* kArrivingEnding = ".arriving";  // a staged file that came from another volume

/// No listed name begins with one of these.
constexpr std::array<const char*, 5> kReservedNames = {"update", "update.failed", "LIST", ".COMPLETED",
                                                       ".TRIED"};
