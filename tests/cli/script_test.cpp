#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/cli/program.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const std::string kOriginal = SAMPLES_DIR "/yard.y4m";
const std::string kProcessed = SAMPLES_DIR "/yard_x264.y4m";

/// The frames' values; empty if the run didn't measure.
json Values(const std::string& arguments) {
    const ProgramRun run = RunProgram(arguments + " -q --json -");
    if (run.status != 0) return json::array();
    return json::parse(run.output)["results"][0]["values"];
}

/// In a current directory of its own, where the scripts are written.
struct ScriptTest : testing::Test {
    ScriptTest() { fs::current_path(directory.Root()); }
    ~ScriptTest() override { fs::current_path(old); }

    const fs::path old = fs::current_path();
    TemporaryDirectory directory;
};

// Whichever way a clip is opened, its values are the same.
TEST_F(ScriptTest, MeasuresTheSame) {
    // Its content is what a script's functions go by.
    fs::copy(kProcessed, "clip \xC3\xA9.mkv");
    directory.Write("script.avs", "DirectShowSource(\"clip \xC3\xA9.mkv\")\n");
    const json direct = Values("--original " + kOriginal + " --processed " + kProcessed);
    ASSERT_FALSE(direct.empty());
    const struct {
        const char* what;
        std::string processed;
    } kCases[] = {
        {"a name that needs a script", "'clip \xC3\xA9.mkv'"},
        {"a name that doesn't", kProcessed + " --avs"},
        {"for one file alone, and its filter",
         kProcessed + " --processed-avs-filter FFVideoSource --processed-only-preferred"},
        {"with parameters",
         "'clip \xC3\xA9.mkv' --avs-filter directshowsource --only-preferred --avs-parameters "
         "'pixel_type = \"YV12\"'"},
        {"after a filter that fails", "'clip \xC3\xA9.mkv' --avs-filter AviSource"},
        {"a script of the user's", "script.avs"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(direct, Values("--original " + kOriginal + " --processed " + c.processed));
    }
    EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));
}

TEST_F(ScriptTest, RawFiles) {
    directory.Write("a.yuv", std::string(96, 'a') + std::string(96, 'b'));
    directory.Write("b.yuv", std::string(96, 'c') + std::string(96, 'e'));
    const std::string pair = "--original a.yuv --processed b.yuv --size 8x8 -m mse:Y --layout ";
    for (const char* layout : {"IYUV", "YV12"}) {
        const json direct = Values(pair + layout);
        ASSERT_EQ((json{4.0, 9.0}), direct);
        EXPECT_EQ(direct, Values(pair + layout + " --avs --only-preferred"));
    }
}

TEST_F(ScriptTest, FailuresLeaveNothingBehind) {
    directory.Write("!!%__#$@&.avs", "of a program that was killed");
    directory.Write("a.mkv", "no video");
    const ProgramRun run = RunProgram("--original " + kOriginal + " --processed a.mkv");
    EXPECT_EQ(2, run.status);
    EXPECT_NE(run.errors.npos, run.errors.find("Failed to open file \"a.mkv\"")) << run.errors;
    EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));
    EXPECT_EQ(2, RunProgram("--original " + kOriginal + " --processed " + kProcessed +
                            " --processed-avs-filter AviSource --processed-only-preferred -q")
                     .status);
}

}  // namespace
