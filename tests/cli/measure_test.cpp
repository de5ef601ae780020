#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>

#include "tests/cli/program.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Measure : testing::Test {
    const TemporaryDirectory directory;
    const std::string out = directory.Path("");
};

/// A raw file of `frames` grey frames, each a step brighter.
std::string GreyFrames(int frames, std::size_t frameBytes) {
    std::string bytes;
    for (int i = 0; i < frames; ++i) bytes += std::string(frameBytes, static_cast<char>(100 + i));
    return bytes;
}

std::string Noise(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(size, '\0');
    for (char& sample : bytes) sample = static_cast<char>(random());
    return bytes;
}

TEST_F(Measure, ItsResultsSayHowToMeasureAgain) {
    const std::string mask = directory.Write("mask.yuv", GreyFrames(9, 176 * 144));
    const json run = Measured(kPair + " --matrix pc601 -m psnr:Y -m 'roi_psnr:Y=x=8 y=8 w=32 h=32' --mask " +
                              mask + " --mask-size 176x144 --mask-layout Y --black-mask");
    EXPECT_EQ(RunProgram("--version").output,
              run["program"].get<std::string>() + " " + run["version"].get<std::string>() + "\n");
    EXPECT_EQ("PC.601", run["matrix"]);
    EXPECT_EQ("black", run["masked_pixels"]);
    const auto input = [](const std::string& file, const char* role, int length, const char* layout) {
        return json{{"file", file},
                    {"role", role},
                    {"width", 176},
                    {"height", 144},
                    {"length", length},
                    {"through_script", false},
                    {"description", std::string("width 176 height 144 colorspace ") + layout}};
    };
    EXPECT_EQ(json::array({input(mask, "mask", 9, "Y"), input(kOriginal, "original", 6, "IYUV"),
                           input(kProcessed, "processed", 6, "IYUV")}),
              run["inputs"]);
    EXPECT_EQ("", run["results"][0]["settings"]);
    EXPECT_EQ("x=8 y=8 w=32 h=32", run["results"][1]["settings"]);
}

// The codec libraries are withheld by empty files of their names.
TEST_F(Measure, OnlyCompressedVideoNeedsTheCodecLibraries) {
    const std::string raw = out + "raw", coded = out + "coded";
    for (const std::string& made : {raw, coded, raw + "_too"}) fs::create_directory(made);
    ASSERT_EQ(0, RunProgram(kPair + " -m ssim_fast --visualize " + raw).status);
    ASSERT_EQ(0, RunProgram(kPair + " -m ssim_fast --codec MJPG --visualize " + coded).status);
    for (int version = 50; version < 100; ++version)
        for (const char* library : {"avcodec", "avformat", "avutil", "swscale"})
            directory.Write("lib" + std::string(library) + ".so." + std::to_string(version), "");
    const std::string name = "/ssim_fast_yyuv_yard_yard_x264.avi";
    fs::copy(coded + name, out + "coded.mp4");  // whatever it holds: the script host opens it
    const std::vector<std::tuple<std::string, int>> rows = {
        {kPair, 0},
        {kPair + " --visualize " + raw + "_too --bad-frames " + raw, 0},
        {"--original " + raw + name + " --processed " + raw + name, 0},
        {"--original " + coded + name + " --processed " + raw + name, 2},
        {"--original " + out + "coded.mp4 --processed " + raw + name, 2},
    };
    const char* before = std::getenv("LD_LIBRARY_PATH");
    setenv("LD_LIBRARY_PATH", out.c_str(), 1);
    for (const auto& [arguments, status] : rows) {
        const ProgramRun run = RunProgram(arguments + " -m ssim_fast");
        EXPECT_EQ(status, run.status) << arguments << '\n' << run.errors;
        EXPECT_EQ(status != 0, run.Says("file too short")) << run.errors;
        EXPECT_EQ(status != 0, run.Says("Failed to open file ")) << run.errors;
    }
    before != nullptr ? setenv("LD_LIBRARY_PATH", before, 1) : unsetenv("LD_LIBRARY_PATH");
}

TEST_F(Measure, PrintsOneLineAResult) {
    const ProgramRun run = RunProgram(kPair + " -q -m psnr:Y -m mse:U");
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(
        "PSNR YYUV yard.y4m yard_x264.y4m 33.3095894 dB\n"
        "MSE UYUV yard.y4m yard_x264.y4m 4.98550606\n",
        run.output);  // 189529 / 38016, frame by frame in float
    EXPECT_EQ("", run.errors);
}

TEST_F(Measure, ItsJsonHasEveryNameWhole) {
    const std::string name = out + "a \"b\" \\ \t\n\x01\x7F gr\xC3\xBC\xC3\x9F.y4m";
    fs::copy(kOriginal, name);
    EXPECT_EQ(name, Measured("--original '" + name + "' --processed " + kProcessed)["inputs"][0]["file"]);
    const std::string log = Measured("--original 'cut \xC3' --processed " + kProcessed, 2)["log"].dump();
    EXPECT_NE(log.npos, log.find("cut \xEF\xBF\xBD")) << "a replacement character";
}

// MSSSIM has no value where contrast is inverted as a whole.
TEST_F(Measure, NoNumberIsSaidInOneWay) {
    const std::string noise = Noise(64 * 64 * 3 / 2, 3);
    std::string inverted = noise;
    for (char& sample : inverted) sample = static_cast<char>(~sample);
    const std::string pair = "--size 64x64 -m msssim_precise --original " + directory.Write("a.yuv", noise) +
                             " --processed " + directory.Write("b.yuv", inverted) + " --csv " + out +
                             " --visualize " + out;
    EXPECT_EQ("MSSSIM (precise) YYUV a.yuv b.yuv nan\n", RunProgram(pair + " -q").output);
    const json run = Measured(pair);
    EXPECT_TRUE(run["results"][0]["average"].is_null() && run["results"][0]["values"][0].is_null());
    const std::string csv = ReadWhole(run["outputs"]["csv"]);
    EXPECT_NE(csv.npos, csv.find("nan"));
    EXPECT_EQ(csv.npos, csv.find("-nan"));
}

TEST_F(Measure, BadInputsEndWithTheirMessageAndStatus) {
    const std::string good = directory.Write("good.yuv", GreyFrames(3, 384)), whole = ReadWhole(kOriginal);
    const std::string cut = whole.substr(0, whole.size() - 38050),
                      twoAndAHalf = GreyFrames(3, 384).substr(192);
    const auto write = [&](const char* name, const std::string& bytes) {
        return directory.Write(name, bytes);
    };
    const char *cantOpen = "Failed to open file \"", *noFrame = "default length is set to 0";
    const std::vector<std::tuple<std::string, int, const char*>> rows = {
        {out + "missing.y4m", 2, cantOpen},
        {out + ".", 2, cantOpen},
        {write("poem.txt", "four lines of a poem"), 2, cantOpen},
        {write("empty.y4m", ""), 2, cantOpen},
        {write("huge.y4m", "YUV4MPEG2 W999999 H999999\nFRAME\n"), 2, cantOpen},
        {write("no_frame.y4m", "YUV4MPEG2 W20000 H20000\nFRAME\n"), 2, noFrame},
        {write("cut.y4m", cut), 0, "default length is set to 4"},
        {write("empty.yuv", ""), 2, noFrame},
        {write("two_and_a_half.yuv", twoAndAHalf), 0, "default length is set to 2"},
        {good, 2, " is different from default, skipping file."},
    };
    for (const auto& [original, status, message] : rows) {
        SCOPED_TRACE(original);
        const bool raw = original.ends_with("yuv");
        const ProgramRun run =
            RunProgram(std::string(raw ? "--size 16x16" : "") + " --original " + original + " --processed " +
                       (raw && original != good ? good : kProcessed) + " --json -");
        EXPECT_EQ(status, run.status);
        EXPECT_TRUE(run.Says(message)) << run.errors;
        EXPECT_TRUE(json::accept(run.output));
    }
    const ProgramRun quiet = RunProgram("-q --original missing.y4m --processed " + kProcessed);
    EXPECT_EQ(2, quiet.status);
    EXPECT_TRUE(quiet.Says("nothing was measured")) << quiet.errors;
    fs::permissions(write("locked.yuv", "x"), fs::perms::none);
    if (geteuid() != 0) {  // root reads everything
        EXPECT_EQ(2, RunProgram("--size 16x16 --original " + out + "locked.yuv --processed " + good).status);
    }
}

TEST_F(Measure, AnInputThatIsLeftOutShowsInTheStatus) {
    const std::string clip = directory.Write("a.yuv", GreyFrames(4, 384));
    const std::string one = directory.Write("one.yuv", GreyFrames(1, 384));
    const std::string empty = directory.Write("empty.yuv", "");
    for (const auto& [options, status, message] : std::vector<std::tuple<std::string, int, std::string>>{
             {"", 0, "default length is set to 4"},
             {" --processed2-size 8x8", 1, "(8x8) is different from default, skipping file."},
             {" --mask " + clip, 0, ""},
             {" --mask " + clip + " --mask-size 8x8", 1,
              "(8x8) is different from default, not using the mask."},
             {" --mask " + one, 1, "Default length is 4, mask file length is 1. Not using the mask."},
             {" --mask " + out + "gone.yuv", 1, "Failed to open file with a mask\"" + out + "gone.yuv\""}}) {
        const ProgramRun run = RunProgram("--size 16x16 --original " + clip + " --processed " + clip +
                                          " --processed2 " + clip + options);
        EXPECT_EQ(status, run.status) << options;
        EXPECT_TRUE(run.Says(message)) << run.errors;
    }
    const ProgramRun shorter = RunProgram("--size 16x16 --original " + clip + " --processed " + one);
    EXPECT_TRUE(shorter.status == 0 && shorter.Says("Default length is set to 1")) << shorter.errors;
    const ProgramRun none = RunProgram("--size 16x16 --original " + empty + " --processed " + empty);
    EXPECT_EQ("PSNR YYUV empty.yuv empty.yuv none dB\n", none.output) << "no frame, no value";
}

// A masked run gives what a run gives on clips in which the marked pixels were painted in the mask's colour
// beforehand.
TEST_F(Measure, AMaskPaintsItsMarkedPixels) {
    constexpr std::size_t kSide = 16, kPixels = kSide * kSide;
    constexpr char kBright = static_cast<char>(200), kGrey = static_cast<char>(128);
    const std::string first = Noise(6 * kPixels, 7), second = Noise(6 * kPixels, 8);  // two frames
    for (const bool black : {false, true}) {
        SCOPED_TRACE(black ? "black pixels are marked" : "bright pixels are marked");
        std::string mask(3 * kPixels, kGrey), paintedFirst = first, paintedSecond = second;
        for (std::size_t at = 0; at < kPixels; ++at) {
            const bool isMarked = at % kSide >= 5 && at / kSide >= 3 && at / kSide < 9;
            mask[at] = isMarked == black ? '\0' : kBright;
            for (std::string* clip : {&paintedFirst, &paintedSecond})
                for (std::size_t plane = 0; isMarked && plane < 3; ++plane)
                    (*clip)[at + plane * kPixels] = mask[at + plane * kPixels];
        }
        // A frame without a mark, whose luma is that of the first one's other pixels.
        mask += std::string(kPixels, black ? kBright : '\0') + std::string(2 * kPixels, kGrey);
        const auto run = [&](const std::string& a, const std::string& b, const std::string& more) {
            return Measured("--size 16x16 --layout YUV --original " + directory.Write("a.yuv", a) +
                            " --processed " + directory.Write("b.yuv", b) +
                            " -m mse:Y -m mse:U -m mse:R -m mse:L -m blurring_metric:V " + more)["results"];
        };
        const std::string withMask =
            "--mask " + directory.Write("m.yuv", mask) + (black ? " --black-mask" : "");
        EXPECT_EQ(run(paintedFirst, paintedSecond, ""), run(first, second, withMask));
        EXPECT_NE(run(paintedFirst, paintedSecond, ""), run(first, second, ""));
    }
}

TEST_F(Measure, FewerFramesThanTheSizeSuggests) {
    std::string bytes = "YUV4MPEG2 W2 H2\n";
    for (const char* parameters : {"", " Xsecond", " Xthis line and the one before add up to a frame"})
        bytes += std::string("FRAME") + parameters + "\nyyyyuv";
    const std::string clip = directory.Write("few.y4m", bytes);
    const ProgramRun run = RunProgram("--original " + clip + " --processed " + clip + " --json -");
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(run.Says("Failed to read frame from sequence \"" + clip + "\", measurement skipped"));
    EXPECT_EQ(3u, json::parse(run.output)["results"][0]["values"].size());
}

TEST_F(Measure, WhatCannotBeSavedIsSaid) {
    const std::string file = directory.Write("file", ""), noLog = "can't write the log to";
    for (const auto& [outputs, message] :
         {std::pair(" --json " + file + "/r.json", std::string()),
          {" --json /dev/full", ""},
          {" --json - >/dev/full", ""},
          {" -q --log " + out + ".", noLog},
          {" -q --log " + out + "missing/log", noLog},
          {" -q --log /dev/full", noLog},
          {" --csv " + file, "Failed to save CSV to \"" + file + "/psnr_yyuv_yard_yard_x264.csv\""}}) {
        const ProgramRun run = RunProgram(kPair + outputs);
        EXPECT_EQ(1, run.status) << outputs;
        EXPECT_TRUE(run.Says(message)) << run.errors;
    }
}

TEST_F(Measure, AnOutputIsNeverAnInputOrAnotherOutput) {
    const std::string bytes = ReadWhole(kOriginal), clip = directory.Write("in.y4m", bytes);
    fs::create_symlink("in.y4m", out + "link");
    fs::create_hard_link(clip, out + "hard");
    const std::string files = "-q --original " + clip + " --processed " + kProcessed;
    const std::string csv = " --csv " + out + " --csv-naming custom --csv-name ";
    for (const auto& [outputs, named] : {std::pair(" --json " + clip, "--json"),
                                         {" --json " + out + "x/../in.y4m", "--json"},
                                         {" --json " + out + "link", "--json"},
                                         {" --log " + out + "hard", "--log"},
                                         {csv + "in.y4m", "--csv-name"},
                                         {" --json " + out + "same --log " + out + "same", "--log"},
                                         {" --json " + out + "same" + csv + "same", "--csv-name"}}) {
        SCOPED_TRACE(outputs);
        const ProgramRun run = RunProgram(files + outputs);
        EXPECT_EQ(64, run.status);
        EXPECT_TRUE(run.Says(named)) << run.errors;
        EXPECT_EQ(bytes, ReadWhole(clip));
        EXPECT_FALSE(fs::exists(out + "same"));
    }
    EXPECT_EQ(0, RunProgram(files + " --json /dev/null --log /dev/null").status);
    EXPECT_EQ(0, RunProgram(files + " --json " + out + "a --log " + out + "b").status);
}

TEST_F(Measure, CsvAndJsonAgreeInFourteenColumns) {
    std::string metrics;
    for (const char component : {'Y', 'U', 'V', 'L', 'R', 'G', 'B'})
        metrics += std::string(" -m psnr:") + component;
    const json run = Measured(kPair + " --processed2 " + kOriginal + metrics + " --csv " + out + "new");
    EXPECT_EQ(14u, run["results"].size());
    std::istringstream csv(ReadWhole(run["outputs"]["csv"]));
    std::string line;
    std::getline(csv, line);
    const std::string heads = "PSNR_YYUV,PSNR_UYUV,PSNR_VYUV,PSNR_LLUV,PSNR_RRGB,PSNR_GRGB,PSNR_BRGB";
    EXPECT_EQ(heads + "," + heads + "\r", line);
    for (int i = 0; i < 3; ++i) std::getline(csv, line);
    for (std::size_t frame = 0; frame < 6; ++frame) {
        std::string expected;
        for (const json& result : run["results"]) {
            char cell[32];
            std::snprintf(cell, sizeof cell, "%5.5f", result["values"][frame].get<float>());
            expected += (expected.empty() ? "" : ",") + std::string(cell);
        }
        std::getline(csv, line);
        EXPECT_EQ(expected + "\r", line);
    }
    EXPECT_FALSE(std::getline(csv, line));
    EXPECT_EQ(100, run["results"][7]["average"]) << "the original against itself";
}

TEST_F(Measure, ThreadsDoNotChangeABit) {
    const std::string run = kPair + " -m psnr:Y -m psnr:L -m psnr:R -m apsnr:B -m mse:V -m delta:U -m msad:G";
    const json one = Measured(run + " --threads 1")["results"];
    for (const char* threads : {"2", "8"})
        EXPECT_EQ(one, Measured(run + " --threads " + threads)["results"]) << threads;
}

TEST_F(Measure, ASignalStopsAtTheEndOfAFrame) {
    // A sparse file of zeros: far more frames than the test waits for.
    const std::string clip = directory.Write("long.yuv", ""), log = out + "log";
    fs::resize_file(clip, 352ULL * 288 * 3 / 2 * 4'000'000);
    // The signal comes once the frame loop is running; the log tells.
    const ProgramRun run = RunProgram(
        "--size 352x288 --original " + clip + " --processed " + clip + " --csv " + out + " --json " + out +
        "r.json --log " + log + " & measuring=$!; until tr -d '\\0' <" + log +
        " | grep -q Loaded; do sleep 0.1; done; sleep 0.3; " + "kill -INT $measuring; wait $measuring");
    EXPECT_EQ(1, run.status) << run.errors;
    const json result = json::parse(ReadWhole(out + "r.json"))["results"][0];
    const std::size_t frames = result["values"].size();
    EXPECT_TRUE(frames > 0 && frames < 4'000'000) << frames;
    EXPECT_EQ(100, result["average"]) << "over the frames done";
    const std::string csv = ReadWhole(out + "psnr_yyuv_long.csv");
    EXPECT_EQ(frames + 4, static_cast<std::size_t>(std::count(csv.begin(), csv.end(), '\n')));
}

}  // namespace
