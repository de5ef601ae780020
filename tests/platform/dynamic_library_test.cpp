#include "platform/dynamic_library.h"

#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "platform/text.h"

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

const std::string kLibrary = SAMPLE_LIBRARY;

std::string Content(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Whether a file of these bytes opens. Always a file that is new to the loader, which knows a library again.
bool Opens(const std::string& bytes) {
    const std::string path = testing::TempDir() + "library." + std::to_string(getpid());
    std::ofstream(path, std::ios::binary) << bytes;
    DynamicLibrary library;
    const bool opened = library.Open(FromUtf8(path));
    EXPECT_EQ(opened, library.IsOpen());
    std::filesystem::remove(path);
    return opened;
}

TEST(DynamicLibrary, FindsWhatALibraryExports) {
    DynamicLibrary library;
    EXPECT_EQ(nullptr, library.Find<int()>("Answer")) << "nothing is open";
    ASSERT_TRUE(library.Open(FromUtf8(kLibrary)));
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
    EXPECT_FALSE(library.Open(FromUtf8(std::filesystem::temp_directory_path().native())));
    EXPECT_FALSE(library.Open(L"/dev/zero"));
    EXPECT_FALSE(library.Open(L"/proc/self/exe")) << "a program";

    const auto old = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(kLibrary).parent_path());
    EXPECT_TRUE(library.Open(FromUtf8(std::filesystem::path(kLibrary).filename().native())));
    std::filesystem::current_path(old);
}

TEST(DynamicLibrary, RefusesEveryCutOffFile) {
    const std::string whole = Content(kLibrary);
    ASSERT_TRUE(Opens(whole));
    Header header;
    std::memcpy(&header, whole.data(), sizeof(header));
    const std::size_t headers = header.e_phoff + std::size_t{header.e_phnum} * sizeof(Segment);
    for (std::size_t length = 0; length < whole.size(); length += length <= headers ? 1 : 61) {
        ASSERT_FALSE(Opens(whole.substr(0, length))) << length << " bytes";
    }
    ASSERT_FALSE(Opens(whole.substr(0, whole.size() - 1)));
}

TEST(DynamicLibrary, RefusesHeadersThatAreNotTrue) {
    struct Library {
        std::string bytes = Content(kLibrary);
        Header& header = *reinterpret_cast<Header*>(bytes.data());
        Segment* segments = reinterpret_cast<Segment*>(bytes.data() + header.e_phoff);
        Segment& Find(std::uint32_t type) {
            return *std::find_if(segments, segments + header.e_phnum,
                                 [type](auto& s) { return s.p_type == type; });
        }
    };
    const struct {
        const char* what;
        std::function<void(Library&)> spoil;
    } kCases[] = {
        {"text", [](Library& l) { l.bytes.assign(1000, 'x'); }},
        {"word size", [](Library& l) { l.header.e_ident[EI_CLASS] = ELFCLASS32; }},
        {"byte order", [](Library& l) { l.header.e_ident[EI_DATA] = ELFDATA2MSB; }},
        {"machine", [](Library& l) { l.header.e_machine = EM_SPARC; }},
        {"a program at a fixed address", [](Library& l) { l.header.e_type = ET_EXEC; }},
        {"too many segments", [](Library& l) { l.header.e_phnum = 0xFFFF; }},
        {"segment size", [](Library& l) { l.header.e_phentsize = 1; }},
        {"segments behind the end", [](Library& l) { l.header.e_phoff = l.bytes.size() - 8; }},
        {"segments at the end of all numbers", [](Library& l) { l.header.e_phoff = ~std::uint64_t{0} - 63; }},
        {"loads more than there is", [](Library& l) { l.Find(PT_LOAD).p_filesz = l.bytes.size() + 1; }},
        {"loads from where nothing is",
         [](Library& l) { l.Find(PT_LOAD).p_offset = ~std::uint64_t{0} - 4095; }},
        {"more in the file than in memory", [](Library& l) { l.Find(PT_LOAD).p_memsz = 1; }},
        {"no dynamic table", [](Library& l) { l.Find(PT_DYNAMIC).p_type = PT_NULL; }},
        {"dynamic table behind the end", [](Library& l) { l.Find(PT_DYNAMIC).p_offset = l.bytes.size(); }},
        {"endless dynamic table", [](Library& l) { l.Find(PT_DYNAMIC).p_filesz = ~std::uint64_t{0}; }},
        {"zeros behind the headers, as after a crash while it was copied",
         [](Library& l) { std::fill(l.bytes.begin() + 1024, l.bytes.end(), '\0'); }},
        {"symbols at a wild address",
         [](Library& l) {
             auto* entry = reinterpret_cast<ElfW(Dyn)*>(l.bytes.data() + l.Find(PT_DYNAMIC).p_offset);
             while (entry->d_tag != DT_SYMTAB) ++entry;
             entry->d_un.d_ptr = 0x7000000000000000;
         }},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        Library library;
        c.spoil(library);
        EXPECT_FALSE(Opens(library.bytes));
    }
}

}  // namespace
