#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/cli/exact_sums.h"
#include "tests/cli/program.h"

namespace {

using nlohmann::json;

const std::string kClips = CLIPS_DIR "/";

struct Pair {
    const char* original;
    const char* processed;
    const char* options = "";
};

json Measured(const Pair& pair, const std::string& metrics) {
    const ProgramRun run = RunProgram("--original " + kClips + pair.original + " --processed " + kClips +
                                      pair.processed + " " + pair.options + " " + metrics + " -q --json -");
    EXPECT_EQ(0, run.status) << run.errors;
    return json::parse(run.output)["results"];
}

/// The mean squared error behind a frame's PSNR.
double ErrorOf(const json& value, double peak) {
    return peak * peak / std::pow(10, value.get<double>() / 10);
}

}  // namespace

// The files hold the integer sums of squared differences by a separate program. The mean error behind a PSNR
// of float precision is off by ln(10) / 10 * 2^-23 * 45 dB, about 1.2e-6 of it, times two roundings.
TEST(Clips, ExactSums) {
    const struct {
        const char* name;
        Pair pair;
    } kCases[] = {
        {"yard_cif_x264", {"yard_cif.y4m", "yard_cif_x264.y4m"}},
        {"yard_cif_x264", {"yard_cif.y4m", "yard_cif_x264.mp4"}},
        {"yard_cif_mpeg4", {"yard_cif.y4m", "yard_cif_mpeg4.y4m"}},
        {"yard_cif_mpeg4", {"yard_cif.y4m", "yard_cif_mpeg4.avi", "--processed-avs-filter dss2"}},
        {"yard_cif_422_x264", {"yard_cif_422.y4m", "yard_cif_422_x264.y4m"}},
        {"yard_cif_444_x264", {"yard_cif_444.y4m", "yard_cif_444_x264.y4m"}},
        {"yard_360x202_x264_crf26", {"yard_360x202.y4m", "yard_360x202_x264_crf26.y4m"}},
        {"yard_360x202_x264_crf40", {"yard_360x202.y4m", "yard_360x202_x264_crf40.y4m"}},
        {"yard_360x202_mjpeg_q4", {"yard_360x202.y4m", "yard_360x202_mjpeg_q4.y4m"}},
        {"yard_360x202_mjpeg_q24", {"yard_360x202.y4m", "yard_360x202_mjpeg_q24.y4m"}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        const json results = Measured(c.pair, "-m psnr:Y -m psnr:U -m psnr:V");
        const auto exact = ExactErrors(kClips + "expected/" + c.name + ".exact.csv");
        for (std::size_t frame = 0; frame < exact.size(); ++frame) {
            for (std::size_t plane = 0; plane < 3; ++plane) {
                const double mse = exact[frame][plane];
                EXPECT_NEAR(mse, ErrorOf(results[plane]["values"][frame], 255), mse * 2.5e-6)
                    << frame << " " << plane;
            }
        }
        EXPECT_EQ(exact.size(), results[0]["values"].size());
        EXPECT_GT(exact.size(), 0u);
    }
}

// Two printed decimals of another program. Its 10-bit errors are on a scale to 1023, ours to 255.75.
TEST(Clips, PrintedDecimals) {
    const struct {
        const char* name;
        Pair pair;
        double peak;
    } kCases[] = {
        {"yard_cif_420p10le",
         {"yard_cif_420p10le.yuv10", "yard_cif_x264_420p10le.yuv10", "--size 352x288 --layout P010"},
         1023},
        {"yard_cif_h264.mov", {"yard_cif.y4m", "yard_cif_h264.mov"}, 255},
        {"yard_cif_x264", {"yard_cif_i420.yuv", "yard_cif_x264_i420.yuv", "--size 352x288"}, 255},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        const json results = Measured(c.pair, "-m psnr:Y -m psnr:U -m psnr:V");
        std::ifstream expected(kClips + "expected/" + c.name + ".psnr.txt");
        std::string line;
        const std::size_t frames = results[0]["values"].size();
        EXPECT_GE(frames, 5u);
        for (std::size_t frame = 0; frame < frames; ++frame) {
            ASSERT_TRUE(std::getline(expected, line));
            for (std::size_t plane = 0; plane < 3; ++plane) {
                const std::string key = std::string("mse_") + "yuv"[plane] + ":";
                const double mse = std::stod(line.substr(line.find(key) + key.size()));
                EXPECT_NEAR(mse, ErrorOf(results[plane]["values"][frame], c.peak), 0.0051)
                    << frame << " " << plane;
            }
        }
    }
}
