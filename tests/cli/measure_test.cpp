#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "tests/cli/exact_sums.h"
#include "tests/cli/program.h"

namespace {

using nlohmann::json;

const std::string kOriginal = SAMPLES_DIR "/yard.y4m";
const std::string kProcessed = SAMPLES_DIR "/yard_x264.y4m";
const std::string kPair = "--original " + kOriginal + " --processed " + kProcessed;

json Measured(const std::string& arguments) {
    return json::parse(RunProgram(arguments + " -q --json -").output);
}

/// A raw file of `frames` grey frames, each a step brighter.
std::string GreyFrames(int frames, std::size_t frameBytes) {
    std::string bytes;
    for (int i = 0; i < frames; ++i) bytes += std::string(frameBytes, static_cast<char>(100 + i));
    return bytes;
}

// The sums come from a separate program, in integers. A PSNR in float has a relative error of 2^-24 in its
// logarithm and again in the product: about 6e-8 of 35 dB each.
TEST(Measure, SamplesAgreeWithExactSums) {
    const auto exact = ExactErrors(SAMPLES_DIR "/yard_x264.exact.csv");
    const json results = Measured(kPair + " -m psnr:Y -m psnr:U -m psnr:V")["results"];
    ASSERT_EQ(3u, results.size());
    ASSERT_EQ(6u, exact.size());
    for (std::size_t frame = 0; frame < exact.size(); ++frame) {
        for (std::size_t plane = 0; plane < 3; ++plane) {
            EXPECT_NEAR(10 * std::log10(255 * 255 / exact[frame][plane]),
                        results[plane]["values"][frame].get<double>(), 8e-6);
        }
    }
    EXPECT_EQ(6u, results[0]["values"].size());
    EXPECT_EQ("VYUV", results[2]["component"]);
}

// SSIM on a GPU is SSIM (precise) with other weights, which see a little structure in flat areas: 0.92, 0.91.
TEST(Measure, GpuMetricsRunOnTheHostWhenAsked) {
    const json results = Measured(
        kPair + " --gpu-emulation -m ssim_precise -m ssim_cuda -m msssim_cuda -m 3ssim_cuda")["results"];
    ASSERT_EQ(4u, results.size());
    EXPECT_EQ("SSIM (CUDA)", results[1]["name"]);
    EXPECT_NEAR(results[0]["average"].get<double>(), results[1]["average"].get<double>(), 0.02);
    for (const json& result : results) EXPECT_EQ(6u, result["values"].size()) << result["name"];
}

TEST(Measure, ItsResultsSayHowToMeasureAgain) {
    const TemporaryDirectory directory;
    const std::string mask = directory.Write("mask.yuv", GreyFrames(9, 176 * 144));
    const json run = Measured(kPair + " --matrix pc601 -m psnr:Y -m 'roi_psnr:Y=x=8 y=8 w=32 h=32' --mask " +
                              mask + " --mask-size 176x144 --mask-layout Y --black-mask");
    EXPECT_EQ("PC.601", run["matrix"]);
    EXPECT_EQ("black", run["masked_pixels"]);
    ASSERT_EQ(3u, run["inputs"].size());
    const auto input = [](const std::string& file, const char* role, int length, const char* layout) {
        return json{{"file", file},
                    {"role", role},
                    {"width", 176},
                    {"height", 144},
                    {"length", length},
                    {"through_script", false},
                    {"description", std::string("width 176 height 144 colorspace ") + layout}};
    };
    EXPECT_EQ(input(mask, "mask", 9, "Y"), run["inputs"][0]);
    EXPECT_EQ(input(kOriginal, "original", 6, "IYUV"), run["inputs"][1]);
    EXPECT_EQ(input(kProcessed, "processed", 6, "IYUV"), run["inputs"][2]);
    EXPECT_EQ("", run["results"][0]["settings"]);
    EXPECT_EQ("x=8 y=8 w=32 h=32", run["results"][1]["settings"]);
}

TEST(Measure, PrintsOneLineAResult) {
    const ProgramRun run = RunProgram(kPair + " -q -m psnr:Y -m mse:U");
    EXPECT_EQ(0, run.status);
    EXPECT_EQ(
        "PSNR YYUV yard.y4m yard_x264.y4m 33.3095894 dB\n"
        "MSE UYUV yard.y4m yard_x264.y4m 4.98550606\n",
        run.output);  // 189529 / 38016, frame by frame in float
    EXPECT_EQ("", run.errors);
}

// MSSSIM has no value where contrast is inverted as a whole.
TEST(Measure, NoNumberIsSaidInOneWay) {
    const TemporaryDirectory directory;
    std::mt19937 random(3);
    std::string noise(64 * 64 * 3 / 2, 0), inverted(noise);
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<char>(random());
        inverted[i] = static_cast<char>(~noise[i]);
    }
    const std::string pair = "--size 64x64 -m msssim_precise --original " + directory.Write("a.yuv", noise) +
                             " --processed " + directory.Write("b.yuv", inverted) + " --csv " +
                             directory.Path("") + " --visualize " + directory.Path("");
    EXPECT_EQ("MSSSIM (precise) YYUV a.yuv b.yuv nan\n", RunProgram(pair + " -q").output);
    const json run = Measured(pair);
    EXPECT_TRUE(run["results"][0]["average"].is_null() && run["results"][0]["values"][0].is_null());
    const std::string csv = ReadWhole(run["outputs"]["csv"]);
    EXPECT_NE(csv.npos, csv.find("nan"));
    EXPECT_EQ(csv.npos, csv.find("-nan"));
}

TEST(Measure, LogsInTheDesktopsFormat) {
    const TemporaryDirectory directory;
    const std::string log = directory.Path("log.txt");
    for (int i = 0; i < 2; ++i) EXPECT_EQ(0, RunProgram(kPair + " -q --log " + log).status);
    const std::string bytes = ReadWhole(log);
    ASSERT_GT(bytes.size(), 8u);
    EXPECT_EQ(std::string(":\0", 2), bytes.substr(4, 2)) << "HH:MM:SS : text, two bytes a character";
    const std::string lastLine("D\0o\0n\0e\0!\0\r\0\n\0", 14);
    EXPECT_EQ(lastLine, bytes.substr(bytes.size() - lastLine.size()));
    EXPECT_NE(bytes.find(lastLine), bytes.rfind(lastLine)) << "the first run's lines stay";
}

TEST(Measure, BadInputsEndWithTheirMessageAndStatus) {
    const TemporaryDirectory directory;
    const std::string good = directory.Write("good.yuv", GreyFrames(3, 384));
    const std::string whole = ReadWhole(kOriginal);
    const std::string unreadable = directory.Write("locked.yuv", "x");
    std::filesystem::permissions(unreadable, std::filesystem::perms::none);

    const struct {
        const char* what;
        std::string original;
        int status;
        std::string message;
    } kCases[] = {
        {"missing", directory.Path("missing.y4m"), 2, "Failed to open file \""},
        {"directory", directory.Path("."), 2, "Failed to open file \""},
        {"no video", directory.Write("a.txt", "four lines of a poem"), 2, "Failed to open file \""},
        {"empty header", directory.Write("empty.y4m", ""), 2, "Failed to open file \""},
        {"huge header", directory.Write("huge.y4m", "YUV4MPEG2 W999999 H999999\nFRAME\n"), 2,
         "Failed to open file \""},
        {"big picture, no frame", directory.Write("big.y4m", "YUV4MPEG2 W20000 H20000\nFRAME\n"), 2,
         "default length is set to 0"},
        {"truncated in a frame", directory.Write("cut.y4m", whole.substr(0, whole.size() - 38050)), 0,
         "default length is set to 4"},
        {"empty raw file", directory.Write("empty.yuv", ""), 2, "default length is set to 0"},
        {"raw file of two and a half frames",
         directory.Write("half.yuv", GreyFrames(3, 384).substr(0, 2 * 384 + 192)), 0,
         "default length is set to 2"},
        {"another size", good, 2, " is different from default, skipping file."},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const bool raw = c.original.ends_with("yuv");
        const std::string processed = raw && c.original != good ? good : kProcessed;
        const ProgramRun run = RunProgram(std::string(raw ? "--size 16x16" : "") + " --original " +
                                          c.original + " --processed " + processed + " --json -");
        EXPECT_EQ(c.status, run.status) << run.errors;
        EXPECT_NE(run.errors.npos, run.errors.find(c.message)) << run.errors;
        EXPECT_TRUE(json::accept(run.output));
    }
    if (geteuid() != 0) {  // root reads everything
        EXPECT_EQ(2, RunProgram("--size 16x16 --original " + unreadable + " --processed " + good).status);
    }
}

TEST(Measure, AnInputThatIsLeftOutShowsInTheStatus) {
    const TemporaryDirectory directory;
    const std::string clip = directory.Write("a.yuv", GreyFrames(4, 384));
    const std::string three =
        "--size 16x16 --original " + clip + " --processed " + clip + " --processed2 " + clip;
    EXPECT_EQ(0, RunProgram(three).status);
    EXPECT_EQ(1, RunProgram(three + " --processed2-size 8x8").status)
        << "one file in two roles, of two sizes";
    EXPECT_EQ(1, RunProgram(three + " --mask " + clip + " --mask-size 8x8").status);
    EXPECT_EQ(0, RunProgram(three + " --mask " + clip).status);
    const std::string empty = directory.Write("empty.yuv", "");
    const ProgramRun none = RunProgram("--size 16x16 --original " + empty + " --processed " + empty);
    EXPECT_EQ("PSNR YYUV empty.yuv empty.yuv none dB\n", none.output) << "no frame, no value";
}

// A masked run gives what a run gives on clips in which the marked pixels were painted in the mask's colour
// beforehand.
TEST(Measure, AMaskPaintsItsMarkedPixels) {
    constexpr int kSide = 16;
    const TemporaryDirectory directory;
    std::mt19937 random(7);
    std::string first(3 * kSide * kSide, 0), second(first), paintedFirst, paintedSecond;
    for (std::string* clip : {&first, &second}) {
        for (char& sample : *clip) sample = static_cast<char>(random());
    }
    for (const bool black : {false, true}) {
        SCOPED_TRACE(black ? "black pixels are marked" : "bright pixels are marked");
        const char marked = black ? 0 : static_cast<char>(200), other = black ? static_cast<char>(200) : 0;
        std::string mask(3 * kSide * kSide, static_cast<char>(128));
        paintedFirst = first;
        paintedSecond = second;
        for (int i = 0; i < kSide * kSide; ++i) {
            const bool isMarked = i % kSide >= 5 && i / kSide >= 3 && i / kSide < 9;
            const auto at = static_cast<std::size_t>(i);
            mask[at] = isMarked ? marked : other;
            for (std::string* clip : {&paintedFirst, &paintedSecond}) {
                if (!isMarked) continue;
                (*clip)[at] = marked;
                (*clip)[at + kSide * kSide] = (*clip)[at + 2 * kSide * kSide] = static_cast<char>(128);
            }
        }
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

TEST(Measure, SevenComponentsOfTwoProcessedFilesMakeFourteenColumns) {
    const TemporaryDirectory directory;
    std::string metrics;
    for (const char component : {'Y', 'U', 'V', 'L', 'R', 'G', 'B'})
        metrics += std::string(" -m psnr:") + component;
    const json run =
        Measured(kPair + " --processed2 " + kOriginal + metrics + " --csv " + directory.Path(""));
    std::istringstream csv(ReadWhole(run["outputs"]["csv"]));
    std::string line;
    std::getline(csv, line);
    const std::string heads = "PSNR_YYUV,PSNR_UYUV,PSNR_VYUV,PSNR_LLUV,PSNR_RRGB,PSNR_GRGB,PSNR_BRGB";
    EXPECT_EQ(heads + "," + heads + "\r", line);
    EXPECT_EQ(14u, run["results"].size());
}

TEST(Measure, FewerFramesThanTheSizeSuggests) {
    const TemporaryDirectory directory;
    std::string bytes = "YUV4MPEG2 W2 H2\n";
    for (const char* parameters : {"", " Xsecond", " Xthis line and the one before add up to a frame"})
        bytes += std::string("FRAME") + parameters + "\nyyyyuv";
    const std::string clip = directory.Write("few.y4m", bytes);
    const ProgramRun run = RunProgram("--original " + clip + " --processed " + clip + " --json -");
    EXPECT_EQ(1, run.status);
    EXPECT_NE(run.errors.npos,
              run.errors.find("Failed to read frame from sequence \"" + clip + "\", measurement skipped"));
    EXPECT_EQ(3u, json::parse(run.output)["results"][0]["values"].size());
}

TEST(Measure, WhatCannotBeSavedIsSaid) {
    const TemporaryDirectory directory;
    const std::string file = directory.Write("file", "");
    EXPECT_EQ(1, RunProgram(kPair + " --json " + file + "/r.json").status);
    EXPECT_EQ(1, RunProgram(kPair + " --json /dev/full").status);
    for (const std::string& log :
         {directory.Path("."), directory.Path("missing/log"), std::string("/dev/full")}) {
        const ProgramRun run = RunProgram(kPair + " -q --log " + log);
        EXPECT_EQ(1, run.status) << log;
        EXPECT_NE(run.errors.npos, run.errors.find("can't write the log to")) << run.errors;
    }
    EXPECT_EQ(1, RunProgram(kPair + " --json - >/dev/full").status);
    const ProgramRun csv = RunProgram(kPair + " --csv " + file);
    EXPECT_EQ(1, csv.status);
    EXPECT_NE(csv.errors.npos,
              csv.errors.find("Failed to save CSV to \"" + file + "/psnr_yyuv_yard_yard_x264.csv\""));
}

TEST(Measure, AnOutputIsNeverAnInputOrAnotherOutput) {
    const TemporaryDirectory directory;
    const std::string bytes = ReadWhole(kOriginal);
    const std::string clip = directory.Write("in.y4m", bytes);
    std::filesystem::create_symlink("in.y4m", directory.Path("link"));
    std::filesystem::create_hard_link(clip, directory.Path("hard"));
    const std::string files = "-q --original " + clip + " --processed " + kProcessed;
    const std::string csv = " --csv " + directory.Path("") + " --csv-naming custom --csv-name ";
    const struct {
        std::string outputs;
        const char* named;
    } kCases[] = {
        {" --json " + clip, "--json"},
        {" --json " + directory.Path("./x/../in.y4m"), "--json"},
        {" --json " + directory.Path("link"), "--json"},
        {" --log " + directory.Path("hard"), "--log"},
        {csv + "in.y4m", "--csv-name"},
        {" --json " + directory.Path("same") + " --log " + directory.Path("same"), "--log"},
        {" --json " + directory.Path("same") + csv + "same", "--csv-name"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.outputs);
        const ProgramRun run = RunProgram(files + c.outputs);
        EXPECT_EQ(64, run.status);
        EXPECT_NE(run.errors.npos, run.errors.find(c.named)) << run.errors;
        EXPECT_EQ(bytes, ReadWhole(clip));
        EXPECT_FALSE(std::filesystem::exists(directory.Path("same")));
    }
    EXPECT_EQ(0, RunProgram(files + " --json /dev/null --log /dev/null").status);
    EXPECT_EQ(0,
              RunProgram(files + " --json " + directory.Path("a") + " --log " + directory.Path("b")).status);
}

TEST(Measure, QuietStillSaysThatSomethingFailed) {
    const ProgramRun run = RunProgram("-q --original missing.y4m --processed " + kProcessed);
    EXPECT_EQ(2, run.status);
    EXPECT_NE(run.errors.npos, run.errors.find("nothing was measured")) << run.errors;
}

TEST(Measure, CsvAndJsonAgree) {
    const TemporaryDirectory directory;
    const json run = Measured(kPair + " --processed2 " + kOriginal + " -m psnr:Y -m msad:R --csv " +
                              directory.Path("new"));
    const std::string path = run["outputs"]["csv"];
    EXPECT_EQ(directory.Path("new/psnr_yyuv_msad_rrgb_yard_yard_x264.csv"), path);
    std::istringstream csv(ReadWhole(path));
    std::string line;
    for (int i = 0; i < 4; ++i) std::getline(csv, line);
    std::size_t frame = 0;
    for (; std::getline(csv, line); ++frame) {
        std::istringstream cells(line);
        std::string cell;
        for (const json& result : run["results"]) {
            std::getline(cells, cell, ',');
            char expected[32];
            std::snprintf(expected, sizeof expected, "%5.5f", result["values"][frame].get<double>());
            EXPECT_EQ(std::string(expected), cell.substr(0, cell.find('\r')));
        }
    }
    EXPECT_EQ(6u, frame);
    EXPECT_EQ(4u, run["results"].size()) << "two metrics, two pairs";
    EXPECT_EQ(100, run["results"][2]["average"]) << "the original against itself";
}

TEST(Measure, ThreadsDoNotChangeABit) {
    const std::string run = kPair + " -m psnr:Y -m psnr:L -m psnr:R -m apsnr:B -m mse:V -m delta:U -m msad:G";
    const json one = Measured(run + " --threads 1")["results"];
    for (const char* threads : {"2", "8"})
        EXPECT_EQ(one, Measured(run + " --threads " + threads)["results"]) << threads;
    for (const json& result : one) {
        const std::string id = result["id"];
        const std::string component = result["component"].get<std::string>().substr(0, 1);
        EXPECT_EQ(result, Measured(kPair + " -m " + id + ":" + component)["results"][0]) << id;
    }
}

TEST(Measure, ASignalStopsAtTheEndOfAFrame) {
    const TemporaryDirectory directory;
    // A sparse file of zeros: far more frames than the test waits for.
    const std::string clip = directory.Write("long.yuv", "");
    std::filesystem::resize_file(clip, 352ULL * 288 * 3 / 2 * 4'000'000);
    const std::string arguments = "--size 352x288 --original " + clip + " --processed " + clip + " --csv " +
                                  directory.Path("") + " --json " + directory.Path("r.json");
    // The signal comes once the frame loop is running; the log tells.
    const ProgramRun run = RunProgram("--log " + directory.Path("log") + " " + arguments +
                                      " & measuring=$!; until tr -d '\\0' <" + directory.Path("log") +
                                      " | grep -q Loaded; do sleep 0.1; done; sleep 0.3; " +
                                      "kill -INT $measuring; wait $measuring");
    EXPECT_EQ(1, run.status) << run.errors;
    const json results = json::parse(ReadWhole(directory.Path("r.json")))["results"];
    const std::size_t frames = results[0]["values"].size();
    EXPECT_GT(frames, 0u);
    EXPECT_LT(frames, 4'000'000u);
    EXPECT_EQ(100, results[0]["average"]) << "over the frames done";
    const std::string csv = ReadWhole(directory.Path("psnr_yyuv_long.csv"));
    EXPECT_EQ(frames + 4, static_cast<std::size_t>(std::count(csv.begin(), csv.end(), '\n')));
}

}  // namespace
