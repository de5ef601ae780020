#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/vfw/bitmap_format.h"

/// What stands in an AVI file: chunks of a type, a size and that many bytes, padded to an even number. Lists
/// are chunks that start with a type of their own and hold chunks. All numbers are little-endian.

constexpr std::uint32_t kFccRiff = FourCC('R', 'I', 'F', 'F');
constexpr std::uint32_t kFccList = FourCC('L', 'I', 'S', 'T');
constexpr std::uint32_t kFccAvi = FourCC('A', 'V', 'I', ' ');   // the first RIFF chunk's form
constexpr std::uint32_t kFccAvix = FourCC('A', 'V', 'I', 'X');  // and that of the further ones
constexpr std::uint32_t kFccHdrl = FourCC('h', 'd', 'r', 'l');  // list of headers
constexpr std::uint32_t kFccStrl = FourCC('s', 't', 'r', 'l');  // list of one stream's headers
constexpr std::uint32_t kFccOdml = FourCC('o', 'd', 'm', 'l');  // list of what OpenDML adds to the headers
constexpr std::uint32_t kFccMovi = FourCC('m', 'o', 'v', 'i');  // list of samples
constexpr std::uint32_t kFccRec = FourCC('r', 'e', 'c', ' ');   // list of samples that belong together
constexpr std::uint32_t kFccAvih = FourCC('a', 'v', 'i', 'h');  // the file's header
constexpr std::uint32_t kFccStrh = FourCC('s', 't', 'r', 'h');  // a stream's header
constexpr std::uint32_t kFccStrf = FourCC('s', 't', 'r', 'f');  // its format
constexpr std::uint32_t kFccStrn = FourCC('s', 't', 'r', 'n');  // its name
constexpr std::uint32_t kFccIndx = FourCC('i', 'n', 'd', 'x');  // its index
constexpr std::uint32_t kFccDmlh = FourCC('d', 'm', 'l', 'h');  // the header of `odml`
constexpr std::uint32_t kFccIdx1 = FourCC('i', 'd', 'x', '1');  // the index of the first RIFF chunk

constexpr std::size_t kChunkHeaderBytes = 8;
constexpr std::size_t kListTypeBytes = 4;
constexpr std::size_t kMainHeaderBytes = 56;
constexpr std::size_t kStreamHeaderBytes = 56;
constexpr std::size_t kIdx1EntryBytes = 16;

/// The head of `indx` and of the `ix##` chunks that it lists, then their entries.
constexpr std::size_t kIndexHeadBytes = 24;
constexpr std::uint8_t kIndexOfIndexes = 0;
constexpr std::uint8_t kIndexOfChunks = 1;
constexpr std::size_t kSuperIndexEntryBytes = 16;
constexpr std::size_t kChunkIndexEntryBytes = 8;      // at least
constexpr std::uint32_t kChunkIndexNoKey = 1u << 31;  // in the size of an entry
