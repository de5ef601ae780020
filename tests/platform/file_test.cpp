#include "platform/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text.h"
#include "tests/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

struct Files : testing::Test {
    /// As it is if it is absolute.
    std::wstring Path(const char* name) const { return FromUtf8((directory / name).native()); }
    std::string Content(const char* name) const { return ReadWhole(directory / name); }
    void Chmod(const char* name, mode_t mode) const { chmod((directory / name).c_str(), mode); }

    TemporaryDirectory temporary;
    fs::path directory = temporary.Root();
};

TEST_F(Files, ReadsRegularFilesAtPositions) {
    ASSERT_TRUE(ReplaceFile(Path("a"), "0123456789"));
    ReadOnlyFile file;
    ASSERT_EQ(0, mkfifo((directory / "pipe").c_str(), 0600));  // whose writer nobody waits for
    for (const char* name : {"missing", ".", "/dev/zero", "pipe"})
        EXPECT_FALSE(file.Open(Path(name))) << name;
    EXPECT_EQ(0u, file.Size());
    ASSERT_TRUE(file.Open(Path("a")));
    EXPECT_EQ(10u, file.Size());
    char buffer[8] = {};
    EXPECT_EQ(4u, file.ReadAt(3, buffer, 4));
    EXPECT_STREQ("3456", buffer);
    EXPECT_EQ(2u, file.ReadAt(8, buffer, 4));
    for (const std::uint64_t offset :
         {std::uint64_t{10}, ~std::uint64_t{0} - 1})  // more than the system can say
        EXPECT_EQ(0u, file.ReadAt(offset, buffer, 4));
}

TEST_F(Files, AppendsBehindWhatIsThere) {
    for (const char* run : {"one\n", "two\n"}) {
        AppendFile file;
        ASSERT_TRUE(file.Open(Path("log")));
        EXPECT_TRUE(file.Append(run));
    }
    EXPECT_EQ("one\ntwo\n", Content("log"));
    AppendFile refused;
    EXPECT_FALSE(refused.Open(Path(".")));
    EXPECT_FALSE(refused.Append("x"));
}

TEST_F(Files, ReplacesWholeOrNotAtAll) {
    ASSERT_TRUE(ReplaceFile(Path("a"), "old"));
    Chmod("a", 0640);
    fs::create_symlink("a", directory / "link");
    ASSERT_TRUE(ReplaceFile(Path("link"), "new"));
    EXPECT_EQ("new", Content("a"));
    EXPECT_TRUE(fs::is_symlink(directory / "link"));
    EXPECT_EQ(fs::perms(0640), fs::status(directory / "a").permissions());

    for (const char* name : {"a", "link", "new"}) EXPECT_TRUE(CanReplaceFile(Path(name))) << name;
    for (const char* name : {"missing/a", ".", "/proc/self/a", "/dev/full"}) {
        EXPECT_EQ(name == std::string("/dev/full"), CanReplaceFile(Path(name))) << name;
        EXPECT_FALSE(ReplaceFile(Path(name), "x")) << name;
    }
    ASSERT_EQ(0, mkfifo((directory / "pipe").c_str(), 0600));
    EXPECT_FALSE(ReplaceFile(Path("pipe"), "x")) << "nobody reads, and it doesn't wait";
    const int reader = open((directory / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(ReplaceFile(Path("pipe"), "x"));
    close(reader);
    fs::remove(directory / "pipe");
    EXPECT_EQ(2, std::distance(fs::directory_iterator(directory), {})) << "no temporary file stays behind";
}

/// As a user without rights over everything, for a while.
struct NormalUser {
    NormalUser() { isRoot = geteuid() == 0 && seteuid(65534) == 0; }
    ~NormalUser() {
        if (isRoot && seteuid(0) != 0) std::abort();
    }
    bool isRoot = false;
};

TEST_F(Files, ReplacingKeepsToThePermissions) {
    ASSERT_TRUE(ReplaceFile(Path("protected"), "old"));
    ASSERT_TRUE(ReplaceFile(Path("open"), "older"));
    Chmod("protected", 0444);
    Chmod("open", 0666);
    Chmod(".", 0777);
    {
        const NormalUser user;
        EXPECT_FALSE(CanReplaceFile(Path("protected")));
        EXPECT_FALSE(ReplaceFile(Path("protected"), "new"));
    }
    EXPECT_EQ("old", Content("protected"));

    Chmod(".", 0555);
    {
        const NormalUser user;
        EXPECT_TRUE(ReplaceFile(Path("open"), "new")) << "in a directory that takes no temporary file";
        EXPECT_FALSE(ReplaceFile(Path("another"), "new"));
    }
    Chmod(".", 0777);
    EXPECT_EQ("new", Content("open"));
}

}  // namespace
