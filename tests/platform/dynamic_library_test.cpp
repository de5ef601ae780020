#include "platform/dynamic_library.h"

#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "platform/text.h"
#include "tests/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibrary = SAMPLE_LIBRARY;

/// A library's bytes, to be spoilt.
struct Library {
    using Segment = ElfW(Phdr);

    std::string bytes = ReadWhole(kLibrary);
    ElfW(Ehdr) & header = *reinterpret_cast<ElfW(Ehdr) *>(bytes.data());
    Segment* segments = reinterpret_cast<Segment*>(bytes.data() + header.e_phoff);

    Segment& Find(std::uint32_t type) {
        return *std::find_if(segments, segments + header.e_phnum, [=](auto& s) { return s.p_type == type; });
    }
};

/// Whether a file of these bytes opens. Always a file that is new to the loader, which knows a library again.
bool Opens(const std::string& bytes) {
    const TemporaryDirectory directory;
    DynamicLibrary library;
    const bool opened = library.Open(FromUtf8(directory.Write("library", bytes)));
    EXPECT_EQ(opened, library.IsOpen());
    return opened;
}

TEST(DynamicLibrary, FindsWhatALibraryExports) {
    DynamicLibrary library;
    EXPECT_EQ(nullptr, library.Find<int()>("Answer")) << "nothing is open";
    ASSERT_TRUE(library.Open(FromUtf8(kLibrary.native())));
    const auto answer = library.Find<int()>("Answer");
    ASSERT_NE(nullptr, answer);
    EXPECT_EQ(42, answer());
    EXPECT_EQ(nullptr, library.Find<int()>("Question"));
    EXPECT_FALSE(library.Open(L"/nonexistent.tlp"));
    EXPECT_EQ(nullptr, library.Find<int()>("Answer")) << "a failed Open closes what was open";
}

TEST(DynamicLibrary, TakesPathsAndNoNames) {
    DynamicLibrary library;
    EXPECT_FALSE(library.Open(L"libc.so.6")) << "which the system's loader would find";
    for (const wchar_t* path : {L"/tmp", L"/dev/zero", L"/proc/self/exe"}) EXPECT_FALSE(library.Open(path));

    const auto old = fs::current_path();
    fs::current_path(kLibrary.parent_path());
    EXPECT_TRUE(library.Open(FromUtf8(kLibrary.filename().native())));
    fs::current_path(old);
}

TEST(DynamicLibrary, RefusesEveryCutOffFile) {
    const Library whole;
    ASSERT_TRUE(Opens(whole.bytes));
    const auto headers = whole.header.e_phoff + whole.header.e_phnum * sizeof(Library::Segment);
    for (std::size_t length = 0; length < whole.bytes.size(); length += length <= headers ? 1 : 61)
        ASSERT_FALSE(Opens(whole.bytes.substr(0, length))) << length << " bytes";
    ASSERT_FALSE(Opens(whole.bytes.substr(0, whole.bytes.size() - 1)));
}

TEST(DynamicLibrary, RefusesHeadersThatAreNotTrue) {
    constexpr std::uint64_t kEndOfAllNumbers = ~std::uint64_t{0};
    const std::pair<const char*, std::function<void(Library&)>> kCases[] = {
        {"text", [](auto& l) { l.bytes.assign(1000, 'x'); }},
        {"word size", [](auto& l) { l.header.e_ident[EI_CLASS] = ELFCLASS32; }},
        {"byte order", [](auto& l) { l.header.e_ident[EI_DATA] = ELFDATA2MSB; }},
        {"machine", [](auto& l) { l.header.e_machine = EM_SPARC; }},
        {"a program at a fixed address", [](auto& l) { l.header.e_type = ET_EXEC; }},
        {"too many segments", [](auto& l) { l.header.e_phnum = 0xFFFF; }},
        {"segment size", [](auto& l) { l.header.e_phentsize = 1; }},
        {"segments behind the end", [](auto& l) { l.header.e_phoff = l.bytes.size() - 8; }},
        {"segments at the end of all numbers", [](auto& l) { l.header.e_phoff = kEndOfAllNumbers - 63; }},
        {"loads more than there is", [](auto& l) { l.Find(PT_LOAD).p_filesz = l.bytes.size() + 1; }},
        {"loads from nowhere", [](auto& l) { l.Find(PT_LOAD).p_offset = kEndOfAllNumbers - 4095; }},
        {"more in the file than in memory", [](auto& l) { l.Find(PT_LOAD).p_memsz = 1; }},
        {"no dynamic table", [](auto& l) { l.Find(PT_DYNAMIC).p_type = PT_NULL; }},
        {"dynamic table behind the end", [](auto& l) { l.Find(PT_DYNAMIC).p_offset = l.bytes.size(); }},
        {"endless dynamic table", [](auto& l) { l.Find(PT_DYNAMIC).p_filesz = kEndOfAllNumbers; }},
        {"zeros behind the headers, as after a crash while it was copied",
         [](auto& l) { std::fill(l.bytes.begin() + 1024, l.bytes.end(), '\0'); }},
        {"symbols at a wild address",
         [](auto& l) {
             auto* entry = reinterpret_cast<ElfW(Dyn)*>(l.bytes.data() + l.Find(PT_DYNAMIC).p_offset);
             while (entry->d_tag != DT_SYMTAB) ++entry;
             entry->d_un.d_ptr = 0x7000000000000000;
         }},
    };
    for (const auto& [what, spoil] : kCases) {
        Library library;
        spoil(library);
        EXPECT_FALSE(Opens(library.bytes)) << what;
    }
}

}  // namespace
