#pragma once

#include "platform/text.h"
#include "tests/http_server.h"
#include "tests/temporary_directory.h"
#include "update/auto_updater.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <utility>

/// A program in a directory of its own, and a server that may have an update of it.
struct UpdateFixture : testing::Test {
    using Files = std::vector<std::pair<std::string, std::string>>;  // names and contents

    UpdateFixture() {
        std::filesystem::create_directories(directory.Path("tmp"));
        setenv("TMPDIR", directory.Path("tmp").c_str(), 1);
        Reset();
    }
    ~UpdateFixture() override { unsetenv("TMPDIR"); }

    /// An old program and nothing else.
    void Reset() const {
        std::filesystem::remove_all(Program(""));
        std::filesystem::create_directory(Program(""));
        WriteProgram("tolvane", "old");
    }

    std::string Program(const std::string& name) const { return directory.Path("program/" + name); }

    void Write(const std::string& name, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(Program(name)).parent_path());
        directory.Write("program/" + name, contents);
    }

    /// A program that prints what it is.
    static std::string Script(const std::string& what) { return "#!/bin/sh\necho " + what + "\n"; }
    void WriteProgram(const std::string& name, const std::string& what) const {
        Write(name, Script(what));
        chmod(Program(name).c_str(), 0755);
    }

    std::string Contents(const std::string& name) const { return ReadWhole(Program(name)); }
    bool Exists(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(Program(name)));
    }
    mode_t Mode(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(0, lstat(Program(name).c_str(), &status)) << name;
        return status.st_mode & 07777;
    }

    /// All files of the program's directory, with their contents; a directory that is empty ends in "/".
    std::map<std::string, std::string> Everything() const {
        std::map<std::string, std::string> files;
        for (const auto& item : std::filesystem::recursive_directory_iterator(Program(""))) {
            const std::string name = item.path().lexically_relative(Program("")).native();
            if (item.is_directory() && !item.is_symlink()) {
                if (std::filesystem::is_empty(item.path())) files[name + "/"];
            } else {
                files[name] = ReadWhole(item.path());
            }
        }
        return files;
    }

    static std::string ListOf(const Files& files) {
        std::size_t total = 0;
        std::string lines;
        for (const auto& [name, contents] : files) {
            total += contents.size();
            lines += std::to_string(contents.size()) + " " + name + "\r\n";
        }
        return std::to_string(total) + "\r\n" + lines;
    }

    /// Puts an update on the server.
    void Offer(const Files& files, const std::string& version = "3.0.0.1") {
        server.AnswerText("/update/LATEST", version);
        server.AnswerText("/update/files/Win32/LIST", ListOf(files));
        for (const auto& [name, contents] : files) server.AnswerText("/update/files/Win32/" + name, contents);
    }

    /// Puts a complete download beside the program.
    void Stage(const Files& files) const {
        for (const auto& [name, contents] : files) Write("update/" + name, contents);
        Write("update/LIST", ListOf(files));
        Write("update/.COMPLETED", "");
    }

    UpdaterSettings Settings(FileHook hook = {}) const {
        UpdaterSettings settings;
        settings.programPath = FromUtf8(Program("tolvane"));
        settings.version = "3.0.0.0";
        settings.http.connectLimit = std::chrono::milliseconds(500);
        settings.http.stallLimit = std::chrono::seconds(1);
        settings.isOnline = [] { return true; };
        settings.fileHook = std::move(hook);
        return settings;
    }
    /// Settings with which one step that changes files fails: the `failing`-th, counted from 0.
    UpdaterSettings FailingAt(int failing) const {
        return Settings([=, steps = 0](auto, auto&) mutable { return steps++ == failing ? EIO : 0; });
    }
    /// Settings with which the steps always fail whose names, and whose files' names, start so.
    UpdaterSettings Failing(const std::string& which, const std::string& start) const {
        return Settings([=](std::string_view step, const std::string& name) {
            return step.starts_with(which) && name.starts_with(start) ? EIO : 0;
        });
    }

    TemporaryDirectory directory;
    HttpServer server;
};
