#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// In a current directory of its own, where the scripts are written.
struct ScriptTest : testing::Test {
    ScriptTest() { fs::current_path(directory.Root()); }
    ~ScriptTest() override { fs::current_path(old); }

    static json Values(const std::string& arguments) { return Measured(arguments)["results"][0]["values"]; }

    const fs::path old = fs::current_path();
    TemporaryDirectory directory;
};

// Whichever way a clip is opened, its values are the same.
TEST_F(ScriptTest, MeasuresTheSame) {
    // Its content is what a script's functions go by.
    fs::copy(kProcessed, "clip \xC3\xA9.mkv");
    directory.Write("script.avs", "DirectShowSource(\"clip \xC3\xA9.mkv\")\n");
    const json direct = Values(kPair);
    for (const std::string& processed :
         {std::string("'clip \xC3\xA9.mkv'"),  // a name that needs a script
          kProcessed + " --avs",
          kProcessed + " --processed-avs-filter FFVideoSource --processed-only-preferred",
          std::string("'clip \xC3\xA9.mkv' --avs-filter directshowsource --only-preferred --avs-parameters "
                      "'pixel_type = \"YV12\"'"),
          std::string("'clip \xC3\xA9.mkv' --avs-filter AviSource"),  // which fails
          std::string("script.avs")})
        EXPECT_EQ(direct, Values("--original " + kOriginal + " --processed " + processed)) << processed;
    EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));

    directory.Write("a.yuv", std::string(96, 'a') + std::string(96, 'b'));
    directory.Write("b.yuv", std::string(96, 'c') + std::string(96, 'e'));
    for (const std::string options :
         {"IYUV", "YV12", "IYUV --avs --only-preferred", "YV12 --avs --only-preferred"})
        EXPECT_EQ((json{4.0, 9.0}),
                  Values("--original a.yuv --processed b.yuv --size 8x8 -m mse:Y --layout " + options))
            << options;
}

TEST_F(ScriptTest, FailuresLeaveNothingBehind) {
    directory.Write("!!%__#$@&.avs", "of a program that was killed");
    directory.Write("a.mkv", "no video");
    const ProgramRun run = RunProgram("--original " + kOriginal + " --processed a.mkv");
    EXPECT_EQ(2, run.status);
    EXPECT_TRUE(run.Says("Failed to open file \"a.mkv\"")) << run.errors;
    EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));
    EXPECT_EQ(2,
              RunProgram(kPair + " --processed-avs-filter AviSource --processed-only-preferred -q").status);
}

}  // namespace
