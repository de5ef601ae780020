#include "update/file_tree.h"

#include "tests/temporary_directory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using Kind = FileTree::Kind;

class Tree : public testing::Test {
protected:
    /// The tree's directory, with ways out of it.
    std::string MakeRoot() const {
        fs::create_directories(directory.Path("root/sub"));
        fs::create_directories(directory.Path("outside"));
        directory.Write("outside/file", "outside");
        directory.Write("root/file", "inside");
        fs::create_directory_symlink(directory.Path("outside"), directory.Path("root/way"));
        fs::create_symlink(directory.Path("outside/file"), directory.Path("root/link"));
        fs::create_symlink("sub", directory.Path("root/near"));
        return directory.Path("root");
    }

    TemporaryDirectory directory;
    FileHook hook;
    FileTree tree{MakeRoot(), hook};
};

TEST_F(Tree, SeesWhatIsThere) {
    const struct {
        const char* name;
        Kind kind;
    } cases[] = {
        {"file", Kind::File},
        {"sub", Kind::Directory},
        {"link", Kind::Link},
        {"missing", Kind::Missing},
        {"missing/too", Kind::Missing},
        {"file/below", Kind::Unreachable},
        {"way/file", Kind::Unreachable},
        {"near/file", Kind::Unreachable},
    };
    for (const auto& c : cases) EXPECT_EQ(c.kind, tree.Look(c.name).kind) << c.name;
}

TEST_F(Tree, FollowsNoLink) {
    EXPECT_FALSE(tree.Read("link", 100));
    EXPECT_FALSE(tree.Read("way/file", 100));
    EXPECT_FALSE(tree.WriteWhole("link", "x"));
    EXPECT_FALSE(tree.WriteWhole("way/new", "x"));
    EXPECT_FALSE(tree.MakeDirectoriesFor("way/deeper/new"));
    EXPECT_FALSE(tree.RemoveFile("way/file"));
    EXPECT_FALSE(tree.RemoveAll("way/file"));
    EXPECT_FALSE(tree.SetMode("link", 0600));
    EXPECT_NE(0, tree.Rename("file", "way/new"));
    EXPECT_FALSE(tree.Duplicate("file", tree, "way/new"));
    EXPECT_TRUE(tree.RemoveAll("way")) << "the link itself";
    EXPECT_TRUE(tree.RemoveAll("link"));
    EXPECT_FALSE(fs::exists(directory.Path("outside/new")));
    EXPECT_EQ("outside", ReadWhole(directory.Path("outside/file")));
}

TEST_F(Tree, RemovesDeepestFirstAndNothingElse) {
    fs::create_directories(directory.Path("root/gone/a/b"));
    directory.Write("root/gone/a/b/file", "x");
    fs::create_directory_symlink(directory.Path("outside"), directory.Path("root/gone/a/way"));
    EXPECT_TRUE(tree.RemoveAll("gone"));
    EXPECT_FALSE(fs::exists(directory.Path("root/gone")));
    EXPECT_TRUE(tree.RemoveAll("gone"));
    EXPECT_TRUE(tree.RemoveFile("gone/file"));
    EXPECT_EQ("outside", ReadWhole(directory.Path("outside/file")));
    EXPECT_EQ("inside", ReadWhole(directory.Path("root/file")));
}

TEST_F(Tree, CopiesWhereNoSecondNameCanBe) {
    fs::permissions(directory.Path("root/file"), fs::perms(0754));
    hook = [](std::string_view step, const std::string&) { return step == "link" ? EPERM : 0; };
    EXPECT_TRUE(tree.Duplicate("file", tree, "sub/copy"));
    EXPECT_EQ("inside", ReadWhole(directory.Path("root/sub/copy")));
    EXPECT_EQ(fs::perms(0754), fs::status(directory.Path("root/sub/copy")).permissions());
    EXPECT_EQ(1u, fs::hard_link_count(directory.Path("root/file")));
    EXPECT_FALSE(tree.Duplicate("file", tree, "sub/copy")) << "what is there stays";

    hook = [](std::string_view step, const std::string&) {
        return step == "link" || step == "write" ? EIO : 0;
    };
    EXPECT_FALSE(tree.Duplicate("file", tree, "half"));
    EXPECT_FALSE(fs::exists(directory.Path("root/half")));
}

TEST_F(Tree, ReadsUpToTheLimit) {
    EXPECT_EQ("inside", tree.Read("file", 6));
    EXPECT_FALSE(tree.Read("file", 5));
    EXPECT_FALSE(tree.Read("sub", 100));
}

TEST(TreeRoot, Missing) {
    const FileHook hook;
    FileTree tree("/nonexistent", hook);
    EXPECT_FALSE(tree.IsOpen());
    EXPECT_FALSE(tree.Lock(std::chrono::milliseconds(0)));
    EXPECT_EQ(Kind::Unreachable, tree.Look("a").kind);
    EXPECT_FALSE(tree.WriteWhole("a", "x"));
}

}  // namespace
