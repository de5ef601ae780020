#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// A directory of the test's own, removed with what is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "tolvane.XXXXXX").native();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        root = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& Root() const { return root; }
    std::string Path(const std::string& name) const { return (root / name).native(); }

    /// Writes a file; its path.
    std::string Write(const std::string& name, std::string_view bytes) const {
        std::ofstream(root / name, std::ios::binary) << bytes;
        return Path(name);
    }

private:
    std::filesystem::path root;
};

inline std::string ReadWhole(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
