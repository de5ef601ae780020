#include "platform/elf_file.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/file.h"

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);
using Section = ElfW(Shdr);
using DynamicEntry = ElfW(Dyn);

constexpr int kClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
constexpr int kByteOrder = std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;
#if defined(__x86_64__)
constexpr int kMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr int kMachine = EM_AARCH64;
#else
#error "name the ELF machine of this processor"
#endif

constexpr std::size_t kMaxDynamicEntries = 4096;  // a hundred times what a linker writes

bool IsOurHeader(const Header& header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == kClass &&
           header.e_ident[EI_DATA] == kByteOrder && header.e_ident[EI_VERSION] == EV_CURRENT &&
           header.e_type == ET_DYN && header.e_machine == kMachine && header.e_phentsize == sizeof(Segment);
}

/// Whether the range fits, without a sum that could overflow.
bool Fits(std::uint64_t offset, std::uint64_t bytes, std::uint64_t size) {
    return offset <= size && bytes <= size - offset;
}

template <class Record>
bool ReadTable(const ReadOnlyFile& file, std::uint64_t offset, std::size_t count,
               std::vector<Record>& records) {
    const std::size_t bytes = count * sizeof(Record);
    if (!Fits(offset, bytes, file.Size())) return false;
    records.resize(count);
    return file.ReadAt(offset, records.data(), bytes) == bytes;
}

/// The linker writes the section headers last, so that they tell of a file that lost its end. They may be
/// stripped.
bool HasItsEnd(const Header& header, std::uint64_t fileSize) {
    return header.e_shoff == 0 ||
           Fits(header.e_shoff, std::uint64_t{header.e_shnum} * sizeof(Section), fileSize);
}

bool IsLoaded(std::uint64_t address, const std::vector<Segment>& segments) {
    return std::any_of(segments.begin(), segments.end(), [address](const Segment& segment) {
        return segment.p_type == PT_LOAD && address >= segment.p_vaddr &&
               address - segment.p_vaddr < segment.p_filesz;
    });
}

/// The loader takes the tables of symbols and strings for granted.
bool IsUsableDynamicTable(const ReadOnlyFile& file, const Segment& dynamic,
                          const std::vector<Segment>& segments) {
    std::vector<DynamicEntry> entries;
    const auto count = static_cast<std::size_t>(dynamic.p_filesz / sizeof(DynamicEntry));
    if (count > kMaxDynamicEntries || !ReadTable(file, dynamic.p_offset, count, entries)) return false;

    bool hasSymbols = false;
    bool hasStrings = false;
    for (const DynamicEntry& entry : entries) {
        if (entry.d_tag == DT_NULL) return hasSymbols && hasStrings;
        if (entry.d_tag != DT_SYMTAB && entry.d_tag != DT_STRTAB) continue;
        if (!IsLoaded(entry.d_un.d_ptr, segments)) return false;
        (entry.d_tag == DT_SYMTAB ? hasSymbols : hasStrings) = true;
    }
    return false;
}

}  // namespace

bool IsWholeSharedLibrary(const ReadOnlyFile& file) {
    Header header;
    if (file.ReadAt(0, &header, sizeof(header)) != sizeof(header) || !IsOurHeader(header)) return false;
    const std::uint64_t fileSize = file.Size();
    std::vector<Segment> segments;
    if (!HasItsEnd(header, fileSize) || !ReadTable(file, header.e_phoff, header.e_phnum, segments))
        return false;

    bool hasDynamic = false;
    for (const Segment& segment : segments) {
        if (segment.p_type != PT_LOAD && segment.p_type != PT_DYNAMIC) continue;
        if (!Fits(segment.p_offset, segment.p_filesz, fileSize) || segment.p_filesz > segment.p_memsz)
            return false;
        if (segment.p_type == PT_DYNAMIC) {
            if (!IsUsableDynamicTable(file, segment, segments)) return false;
            hasDynamic = true;
        }
    }
    return hasDynamic;
}
