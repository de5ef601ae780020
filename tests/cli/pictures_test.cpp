#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "tests/cli/program.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;
using Names = std::set<std::string>;

struct Pictures : testing::Test {
    Names NamesIn(const std::string& name) const {
        Names names;
        for (const auto& entry : fs::directory_iterator(out + name)) names.insert(entry.path().filename());
        return names;
    }

    TemporaryDirectory directory;
    const std::string out = directory.Path("");
    const std::string video = " --visualize " + out, bad = " --bad-frames " + out + " --bad-frames-count ";
};

/// A run whose mask, log and JSON have the names that its pictures would get.
TEST_F(Pictures, GoToNoFileThatTheRunReadsOrWritesElse) {
    const std::string mask = out + "yard_fr_0.bmp", log = out + "yard_x264_fr_0.bmp";
    const std::string results = out + "psnr_yyuv_yard_yard_x264.avi";
    Measured(kPair + bad + "1");
    const std::string bytes = ReadWhole(mask);
    fs::remove(log);
    const ProgramRun run =
        RunProgram(kPair + " --mask " + mask + " --log " + log + " --json " + results + bad + "1" + video);
    EXPECT_EQ(1, run.status) << "a mask of one frame isn't used";
    EXPECT_EQ(bytes, ReadWhole(mask));
    EXPECT_TRUE(json::accept(ReadWhole(results)));
    EXPECT_EQ(std::string(":\0", 2), ReadWhole(log).substr(4, 2)) << "the time, two bytes a character";
    EXPECT_EQ((Names{"psnr_yyuv_yard_yard_x264.avi", "psnr_yyuv_yard_yard_x264_2.avi", "yard_2_fr_0.bmp",
                     "yard_fr_0.bmp", "yard_x264_2_fr_0.bmp", "yard_x264_fr_0.bmp"}),
              NamesIn(""));
}

TEST_F(Pictures, AreSavedAsTheOptionsSay) {
    for (const char* name : {"raw", "small"}) fs::create_directory(out + name);
    const json run = Measured(kPair + " -m psnr:Y -m blurring_metric:U" + video + "raw");
    const std::string raw = out + "raw/psnr_yyuv_yard_yard_x264.avi",
                      small = out + "small/yard_yard_x264_psnr_yyuv.avi";
    EXPECT_EQ(json::array({raw, out + "raw/blurring_metric_uyuv_yard_yard_x264.avi"}),
              run["outputs"]["visualization"]);
    EXPECT_EQ(3u, run["results"].size()) << "blurring of both files";
    EXPECT_TRUE(run["bad_frames"].is_null());

    // Without a caption's value and frame the pictures of a lossless codec are those of the other file.
    Measured(kPair + " --no-caption-value" + video + "raw");
    const auto difference = [&](const std::string& options) {
        Measured(kPair + " --no-caption-value --vis-naming postfix " + options + video + "small");
        const json same =
            Measured("-m mse:R -m mse:B --original " + raw + " --processed " + small)["results"];
        EXPECT_EQ(6u, same[0]["values"].size());
        return same[0]["average"].get<double>() + same[1]["average"].get<double>();
    };
    EXPECT_EQ(0, difference("--codec hfyu"));
    EXPECT_EQ((Names{"yard_yard_x264_psnr_yyuv.avi"}), NamesIn("small"));
    EXPECT_LT(fs::file_size(small), fs::file_size(raw));
    EXPECT_GT(difference("--caption-frame"), 0);
    EXPECT_GT(difference("--caption-position bottom"), 0);
}

TEST_F(Pictures, OfBadFrames) {
    const std::string two = bad + "2 --bad-frames-radius 2";
    const json run = Measured(kPair + " -m psnr:Y -m mse:Y -m ssim_precise:Y" + two);
    const json values = run["results"][0]["values"], frames = run["bad_frames"];
    const auto worst = std::min_element(values.begin(), values.end()) - values.begin();
    EXPECT_EQ(2u, frames.size());
    EXPECT_EQ(1, std::count(frames.begin(), frames.end(), worst));
    EXPECT_EQ((Names{"yard_fr_0.bmp", "yard_fr_1.bmp", "yard_x264_fr_0.bmp", "yard_x264_fr_1.bmp"}),
              NamesIn(""));
    EXPECT_EQ(4u, run["outputs"]["bad_frames"].size());
    const std::string text = RunProgram(kPair + " -q" + two).output;
    EXPECT_EQ("Bad frames " + frames[0].dump() + " " + frames[1].dump() + "\n",
              text.substr(text.find('\n') + 1));

    // The pictures are bitmaps that can be measured: their visualization is one too.
    const json pictures =
        Measured("--original " + out + "yard_fr_0.bmp --processed " + out + "yard_x264_fr_0.bmp" + video);
    EXPECT_EQ(json::array({out + "psnr_yyuv_yard_fr_0_yard_x264_fr_0.bmp"}),
              pictures["outputs"]["visualization"]);
}

TEST_F(Pictures, WhatCannotBeSavedIsSaid) {
    const json visualized = Measured(kPair + " --visualize " + kOriginal + "/", 1);
    EXPECT_EQ((json{{"measurement", 2}, {"visualization", 1}}), visualized["outcome"]);
    EXPECT_EQ(json::array(), visualized["outputs"]["visualization"]);
    EXPECT_EQ(6u, visualized["results"][0]["values"].size());

    const json noBad = Measured(kPair + " --bad-frames " + kOriginal + "/", 1);
    EXPECT_TRUE(noBad["bad_frames"].is_null());
    EXPECT_EQ("Failed to save bad frames!", noBad["log"].back());
}

TEST_F(Pictures, WithoutAFontHaveNoCaptions) {
    const std::string config = directory.Write("fonts.conf", "<fontconfig></fontconfig>");
    ASSERT_EQ(0, setenv("FONTCONFIG_FILE", config.c_str(), 1));
    const json run = Measured(kPair + " -m psnr:Y -m mse:Y" + video + bad + "0");
    unsetenv("FONTCONFIG_FILE");
    EXPECT_EQ(2u, run["outputs"]["visualization"].size());
    EXPECT_EQ(12u, run["outputs"]["bad_frames"].size());
    const auto isOfFont = [](const std::string& line) { return line.starts_with("No font was found"); };
    EXPECT_EQ(1, std::count_if(run["log"].begin(), run["log"].end(), isOfFont));
}

}  // namespace
