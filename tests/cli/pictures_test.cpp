#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/cli/program.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

const std::string kPair = "--original " SAMPLES_DIR "/yard.y4m --processed " SAMPLES_DIR "/yard_x264.y4m ";

json Measured(const std::string& arguments, int status = 0) {
    const ProgramRun run = RunProgram(arguments + " -q --json -");
    EXPECT_EQ(status, run.status) << run.errors;
    return json::parse(run.output);
}

std::set<std::string> NamesIn(const std::string& directory) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) names.insert(entry.path().filename());
    return names;
}

/// A run whose mask, log and JSON have the names that its pictures would get.
TEST(Pictures, GoToNoFileThatTheRunReadsOrWritesElse) {
    const TemporaryDirectory directory;
    const std::string mask = directory.Path("yard_fr_0.bmp");
    Measured(kPair + "--bad-frames-count 1 --bad-frames " + directory.Path(""));
    const std::string bytes = ReadWhole(mask);
    const std::string log = directory.Path("yard_x264_fr_0.bmp");
    const std::string results = directory.Path("psnr_yyuv_yard_yard_x264.avi");
    fs::remove(log);
    const ProgramRun run = RunProgram(kPair + "--mask " + mask + " --log " + log + " --json " + results +
                                      " --bad-frames-count 1 --bad-frames " + directory.Path("") +
                                      " --visualize " + directory.Path(""));
    EXPECT_EQ(1, run.status) << "a mask of one frame isn't used";
    EXPECT_EQ(bytes, ReadWhole(mask));
    EXPECT_TRUE(json::accept(ReadWhole(results)));
    EXPECT_EQ(':', ReadWhole(log)[4]) << "the time in front of a line";
    EXPECT_EQ((std::set<std::string>{"psnr_yyuv_yard_yard_x264.avi", "psnr_yyuv_yard_yard_x264_2.avi",
                                     "yard_2_fr_0.bmp", "yard_fr_0.bmp", "yard_x264_2_fr_0.bmp",
                                     "yard_x264_fr_0.bmp"}),
              NamesIn(directory.Path("")));
}

TEST(Pictures, AreSavedAsTheOptionsSay) {
    const TemporaryDirectory directory;
    for (const char* name : {"raw", "small", "bad"}) fs::create_directory(directory.Path(name));
    const json run = Measured(kPair + "-m psnr:Y -m blurring_metric:U --visualize " + directory.Path("raw"));
    EXPECT_EQ(json::array({directory.Path("raw/psnr_yyuv_yard_yard_x264.avi"),
                           directory.Path("raw/blurring_metric_uyuv_yard_yard_x264.avi")}),
              run["outputs"]["visualization"]);
    EXPECT_EQ(3u, run["results"].size()) << "blurring of both files";
    EXPECT_TRUE(run["bad_frames"].is_null());

    // Without a caption's value and frame the pictures of a lossless codec are those of the other file.
    Measured(kPair + "--no-caption-value --visualize " + directory.Path("raw"));
    Measured(kPair + "--no-caption-value --vis-naming postfix --codec hfyu --visualize " +
             directory.Path("small"));
    EXPECT_EQ((std::set<std::string>{"yard_yard_x264_psnr_yyuv.avi"}), NamesIn(directory.Path("small")));
    const std::string raw = directory.Path("raw/psnr_yyuv_yard_yard_x264.avi");
    const std::string small = directory.Path("small/yard_yard_x264_psnr_yyuv.avi");
    EXPECT_LT(fs::file_size(small), fs::file_size(raw));
    const std::string compare = "-m mse:R -m mse:B --original " + raw + " --processed ";
    const json same = Measured(compare + small)["results"];
    EXPECT_EQ(6u, same[0]["values"].size());
    EXPECT_EQ(0, same[0]["average"]);
    EXPECT_EQ(0, same[1]["average"]);

    for (const char* caption : {"--caption-frame", "--caption-position bottom"}) {
        Measured(kPair + "--no-caption-value --vis-naming postfix --visualize " + directory.Path("small") +
                 " " + caption);
        EXPECT_GT(Measured(compare + small)["results"][0]["average"], 0) << caption;
    }
}

TEST(Pictures, OfBadFrames) {
    const TemporaryDirectory directory;
    const std::string bad = " --bad-frames-count 2 --bad-frames-radius 2 --bad-frames ";
    const json run = Measured(kPair + "-m psnr:Y -m mse:Y -m ssim_precise:Y" + bad + directory.Path(""));
    const json values = run["results"][0]["values"];
    const auto worst = std::min_element(values.begin(), values.end()) - values.begin();
    EXPECT_EQ(2u, run["bad_frames"].size());
    EXPECT_EQ(1, std::count(run["bad_frames"].begin(), run["bad_frames"].end(), worst));
    EXPECT_EQ(
        (std::set<std::string>{"yard_fr_0.bmp", "yard_fr_1.bmp", "yard_x264_fr_0.bmp", "yard_x264_fr_1.bmp"}),
        NamesIn(directory.Path("")));
    EXPECT_EQ(4u, run["outputs"]["bad_frames"].size());
    const std::string text = RunProgram(kPair + "-q" + bad + directory.Path("")).output;
    EXPECT_EQ("Bad frames " + run["bad_frames"][0].dump() + " " + run["bad_frames"][1].dump() + "\n",
              text.substr(text.find('\n') + 1));

    // The pictures are bitmaps that can be measured: their visualization is one too.
    const std::string pictures = "--original " + directory.Path("yard_fr_0.bmp") + " --processed " +
                                 directory.Path("yard_x264_fr_0.bmp") + " --visualize " + directory.Path("");
    EXPECT_EQ(json::array({directory.Path("psnr_yyuv_yard_fr_0_yard_x264_fr_0.bmp")}),
              Measured(pictures)["outputs"]["visualization"]);
}

TEST(Pictures, WhatCannotBeSavedIsSaid) {
    const json visualized = Measured(kPair + "--visualize " SAMPLES_DIR "/yard.y4m/", 1);
    EXPECT_EQ((json{{"measurement", 2}, {"visualization", 1}}), visualized["outcome"]);
    EXPECT_EQ(json::array(), visualized["outputs"]["visualization"]);
    EXPECT_EQ(6u, visualized["results"][0]["values"].size());

    const json bad = Measured(kPair + "--bad-frames " SAMPLES_DIR "/yard.y4m/", 1);
    EXPECT_TRUE(bad["bad_frames"].is_null());
    EXPECT_EQ("Failed to save bad frames!", bad["log"].back());
}

TEST(Pictures, WithoutAFontHaveNoCaptions) {
    const TemporaryDirectory directory;
    const std::string config = directory.Write("fonts.conf", "<fontconfig></fontconfig>");
    ASSERT_EQ(0, setenv("FONTCONFIG_FILE", config.c_str(), 1));
    const json run = Measured(kPair + "-m psnr:Y -m mse:Y --visualize " + directory.Path("") +
                              " --bad-frames " + directory.Path(""));
    unsetenv("FONTCONFIG_FILE");
    EXPECT_EQ(2u, run["outputs"]["visualization"].size());
    EXPECT_EQ(12u, run["outputs"]["bad_frames"].size());
    const auto isOfFont = [](const json& line) {
        return line.get<std::string>().starts_with("No font was found");
    };
    EXPECT_EQ(1, std::count_if(run["log"].begin(), run["log"].end(), isOfFont));
}

TEST(Pictures, CodecsAreListed) {
    const ProgramRun list = RunProgram("--codec list");
    EXPECT_EQ(0, list.status);
    for (const char* line : {"none  Uncompressed RGB\n", "MJPG  ", "HFYU  "})
        EXPECT_NE(list.output.npos, list.output.find(line)) << line;
}

}  // namespace
