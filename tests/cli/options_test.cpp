#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"

// A wrong option ends with 64 and exactly one line, which names the option.
TEST(Options, WrongOnesAreNamed) {
    const std::pair<const char*, const char*> kCases[] = {
        {"--foo", "--foo"},
        {"", "--original"},
        {"--original", "--original"},
        {"--original ''", "--original"},
        {"--original= --processed a.y4m", "--original takes"},
        {"--original a.y4m", "--processed"},
        {"--original a.yuv --processed b.yuv", "--size"},
        {"--original a.yuv --processed b.yuv --size 0x16", "--size"},
        {"--original a.yuv --processed b.yuv --size 16x", "--size"},
        {"--original a.yuv --processed b.yuv --size 99999999999x16", "--size"},
        {"--original a.yuv --processed b.yuv --size 65536x65536", "--size"},
        {"--original a.yuv --processed b.yuv --size 16x16 --layout 420", "--layout"},
        {"--original a.rgb --processed b.yuv --size 16x16", "--layout"},
        {"--original a.yuv --processed b.y4m --processed-layout YUV --original-size 16x16", "--size"},
        {"--original a.y4m --mask-size 4x4 --processed b.y4m", "--mask-size"},
        {"--original a.y4m --processed b.y4m --black-mask", "--black-mask"},
        {"--original a.y4m --processed b.y4m -m nothing", "--metric"},
        {"--original a.y4m --processed b.y4m -m other_cuda", "--gpu-emulation"},
        {"--original a.y4m --processed b.y4m -m psnr:X", "--metric"},
        {"--original a.y4m --processed b.y4m -m psnr=x", "--metric"},
        {"--original a.y4m --processed b.y4m -m :Y", "--metric"},
        {"--original a.y4m --processed b.y4m --matrix rec709", "--matrix"},
        {"--original a.y4m --processed b.y4m --threads 0", "--threads"},
        {"--original a.y4m --processed b.y4m --csv-naming custom", "--csv-name"},
        {"--original a.y4m --processed b.y4m --csv d --csv-naming custom --csv-name ../x", "--csv-name"},
        {"--original a.y4m --processed b.y4m --progress sometimes", "--progress"},
        {"--progress", "--progress takes auto|always|never"},
        {"--original a.y4m --matrix", "--matrix takes rec601|pc601"},
        {"--original a.y4m --processed b.y4m --quiet=no", "--quiet takes no value"},
        {"--original a.y4m --processed b.y4m --log=", "--log takes"},
        {"--original a.y4m --processed b.y4m --original c.y4m", "--original"},
        {"--original a.y4m --processed b.y4m --size 16x16", "--size"},
        {"--original a.y4m --processed b.yuv --processed-size 99999x99999", "--processed-size"},
        {"--original a.y4m --processed b.y4m -m 'two\nlines'", "--metric"},
        {"--original a.y4m --processed b.y4m --json", "--json"},
        {"--original a.y4m --processed b.y4m surplus", "surplus"},
        {"--original a.y4m --processed b.mp4 --avs-filter dss3", "--avs-filter"},
        {"--original a.y4m --processed b.y4m --processed-avs-filter ''", "--processed-avs-filter"},
        {"--original a.y4m --processed b.y4m --avs-filter dss2", "--avs-filter"},
        {"--original a.y4m --processed b.y4m --avs-parameters ''", "--avs-parameters"},
        {"--original a.y4m --processed b.y4m --only-preferred", "--only-preferred"},
        {"--original a.avs --processed b.avs --avs", "--avs"},
        {"--original a.y4m --processed b.y4m --mask-only-preferred", "--mask-only-preferred"},
        {"--original a.y4m --processed b.y4m --mask-avs-parameters x", "--mask-avs-parameters"},
        {"--original a.yuv --processed b.yuv --size 16x16 --layout P010 --avs", "--layout"},
        {"--original a.yuv --processed b.yuv --size 16x16 --processed-layout YUV --processed-avs",
         "--processed-layout"},
        {"--original a.y4m --visualize d -m blurring_metric", "--processed"},
        {"--original a.y4m --processed b.y4m --caption-frame", "--visualize"},
        {"--original a.y4m --processed b.y4m --visualize d --vis-naming custom", "--vis-naming"},
        {"--original a.y4m --processed b.y4m --visualize d --codec ABCD", "--codec"},
        {"--original a.y4m --processed b.y4m --visualize d --codec MJPG:101", "--codec"},
        {"--original a.y4m --processed b.y4m --visualize d --codec MJPG:", "--codec"},
        {"--original a.y4m --processed b.y4m --visualize d --codec HFYU:50", "--codec"},
        {"--original a.y4m --processed b.y4m --bad-frames-count 3", "--bad-frames"},
        {"--original a.y4m --processed b.y4m --bad-frames d --bad-frames-count -1", "--bad-frames-count"},
        {"--original a.y4m --processed b.y4m --bad-frames d --bad-frames-type 4", "--bad-frames-type"},
        {"--original a.y4m --processed b.y4m --bad-frames d --bad-frames-type 1", "--processed2"},
        {"--original a.y4m --processed2 b.y4m --bad-frames d", "--processed"},
    };
    for (const auto& [arguments, named] : kCases) {
        SCOPED_TRACE(arguments);
        const ProgramRun run = RunProgram(arguments);
        EXPECT_EQ(64, run.status);
        EXPECT_EQ("", run.output);
        EXPECT_EQ(1, std::count(run.errors.begin(), run.errors.end(), '\n')) << run.errors;
        EXPECT_TRUE(run.Says(named)) << run.errors;
    }
}

TEST(Options, HelpVersionAndList) {
    EXPECT_EQ("Tolvane 3.0.0.0\n", RunProgram("--version").output);
    const ProgramRun help = RunProgram("--help");
    EXPECT_EQ(0, help.status);
    for (const char* option : {"--original", "--metric", "--matrix", "--json", "--csv", "--quiet"}) {
        EXPECT_NE(help.output.npos, help.output.find(option)) << option;
    }
    const ProgramRun list = RunProgram("-q -q --list-metrics");
    EXPECT_EQ(0, list.status);
    EXPECT_EQ("  0  psnr              PSNR                              YUVRGBL   2  dB\n",
              list.output.substr(0, list.output.find('\n') + 1));
    const ProgramRun codecs = RunProgram("--codec list");
    EXPECT_EQ(0, codecs.status);
    for (const char* line : {"none  Uncompressed RGB\n", "MJPG  ", "HFYU  "})
        EXPECT_NE(codecs.output.npos, codecs.output.find(line)) << line;
}
