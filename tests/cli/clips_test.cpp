// PSNR of coded clips against the squared differences that other programs have found.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <sstream>

#include "tests/cli/program.h"

namespace {

/// The mean squared errors of the planes Y, U and V of each frame. A CSV file has integer sums: frame, three
/// sums, the pixels of luma and of chroma; a line with "#" ends them. Others print two decimals of each.
std::vector<std::array<double, 3>> ExpectedErrors(const std::string& path) {
    std::vector<std::array<double, 3>> errors;
    std::ifstream file(path);
    std::string line;
    const bool isExact = path.ends_with(".csv");
    if (isExact) std::getline(file, line);  // the heads
    while (std::getline(file, line) && line[0] != '#') {
        std::array<double, 3>& error = errors.emplace_back();
        double cell[6] = {};
        char comma;
        std::istringstream cells(line);
        for (double& number : cell) cells >> number >> comma;
        for (std::size_t plane = 0; plane < 3; ++plane) {
            const std::string key = std::string("mse_") + "yuv"[plane] + ":";
            error[plane] = isExact ? cell[plane + 1] / cell[plane == 0 ? 4 : 5]
                                   : std::stod(line.substr(line.find(key) + key.size()));
        }
    }
    return errors;
}

/// Measures a pair of `directory` and compares it with the file `expected`.
void Compare(const std::string& directory, const std::string& expected, const std::string& original,
             const std::string& processed, const std::string& options = "", double peak = 255) {
    SCOPED_TRACE(processed);
    const auto results = Measured("--original " + directory + original + " --processed " + directory +
                                  processed + " -m psnr:Y -m psnr:U -m psnr:V " + options)["results"];
    const auto errors = ExpectedErrors(directory + expected);
    const bool isExact = expected.ends_with(".csv");
    const std::size_t frames = results[0]["values"].size();
    ASSERT_TRUE(frames >= 3 && (isExact ? frames == errors.size() : frames <= errors.size())) << frames;
    for (std::size_t plane = 0; plane < 3; ++plane) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            // A PSNR below 64 dB in float is rounded by 2^-19 dB, and its logarithm as much before: together
            // 9e-7 of the error behind it.
            const double error = errors[frame][plane], psnr = results[plane]["values"][frame];
            EXPECT_NEAR(error, peak * peak / std::pow(10, psnr / 10), isExact ? error * 1.8e-6 : 0.0051)
                << frame << " " << plane;
        }
    }
}

TEST(Clips, Samples) {
    Compare(SAMPLES_DIR "/", "yard_x264.exact.csv", "yard.y4m", "yard_x264.y4m");
}

#ifdef CLIPS_DIR
TEST(Clips, ExactSums) {
    const auto compare = [](const std::string& name, const char* original, const std::string& ending,
                            const char* options = "") {
        Compare(CLIPS_DIR "/", "expected/" + name + ".exact.csv", original, name + ending, options);
    };
    compare("yard_cif_x264", "yard_cif.y4m", ".y4m");
    compare("yard_cif_x264", "yard_cif.y4m", ".mp4");
    compare("yard_cif_mpeg4", "yard_cif.y4m", ".y4m");
    compare("yard_cif_mpeg4", "yard_cif.y4m", ".avi", "--processed-avs-filter dss2");
    compare("yard_cif_422_x264", "yard_cif_422.y4m", ".y4m");
    compare("yard_cif_444_x264", "yard_cif_444.y4m", ".y4m");
    for (const char* coding : {"x264_crf26", "x264_crf40", "mjpeg_q4", "mjpeg_q24"})
        compare(std::string("yard_360x202_") + coding, "yard_360x202.y4m", ".y4m");
}

TEST(Clips, PrintedDecimals) {
    const auto compare = [](const char* expected, const char* original, const char* processed,
                            const char* options = "", double peak = 255) {
        Compare(CLIPS_DIR "/", std::string("expected/") + expected + ".psnr.txt", original, processed,
                options, peak);
    };
    // That program's 10-bit errors are on a scale to 1023, ours to 255.75.
    compare("yard_cif_420p10le", "yard_cif_420p10le.yuv10", "yard_cif_x264_420p10le.yuv10",
            "--size 352x288 --layout P010", 1023);
    compare("yard_cif_h264.mov", "yard_cif.y4m", "yard_cif_h264.mov");
    compare("yard_cif_x264", "yard_cif_i420.yuv", "yard_cif_x264_i420.yuv", "--size 352x288");
}
#endif

}  // namespace
