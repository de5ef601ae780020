#include "tests/faults/scenario.h"

#include "platform/text.h"
#include "video/avi/video_file.h"
#include "video/color_space.h"
#include "video/sources/bmp_writer.h"
#include "video/video_image.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

namespace {

constexpr int kWidth = 32, kHeight = 24;
constexpr std::size_t kLumaBytes = kWidth * kHeight, kFrameBytes = kLumaBytes * 3 / 2;
constexpr int kLargeWidth = 192, kLargeHeight = 144;  // more than is read at once

std::vector<std::string> Roles(const Scenario& scenario) {
    std::vector<std::string> roles = {"original", "processed"};
    if (scenario.hasSecond) roles.push_back("processed2");
    if (scenario.hasMask) roles.push_back("mask");
    return roles;
}

std::string FileName(const Scenario& scenario, const std::string& role) {
    constexpr const char* kEndings[] = {".yuv", ".y4m", ".y4m", ".avi", ".avi", ".avi", ".bmp"};
    return role + kEndings[scenario.inputs];
}

/// Noise, of another strength in each frame and file, on a picture that they share.
std::string NoisyFrame(std::size_t bytes, const std::string& role, int frame) {
    std::mt19937 shared(static_cast<unsigned>(frame)),
        own(static_cast<unsigned>(role.size() * 100) + shared());
    const unsigned strength =
        role == "original" ? 1 : static_cast<unsigned>(role.size()) + 3 * (static_cast<unsigned>(frame) % 3);
    std::string samples(bytes, '\0');
    for (char& sample : samples) sample = static_cast<char>(60 + shared() % 100 + own() % strength);
    return samples;
}

/// The upper left quarter is marked.
std::string MaskFrame(bool isMarked) {
    std::string samples(kFrameBytes, '\x80');
    for (std::size_t i = 0; i < kLumaBytes; ++i)
        samples[i] = isMarked && i < kLumaBytes / 2 && i % kWidth < kWidth / 2 ? '\xF0' : '\0';
    return samples;
}

std::string RawFrames(const std::string& role, int frames, int maskedFrames) {
    std::string bytes;
    for (int frame = 0; frame < frames; ++frame)
        bytes += role == "mask" ? MaskFrame(frame < maskedFrames) : NoisyFrame(kFrameBytes, role, frame);
    return bytes;
}

/// With odd sides and a word in each frame's line the file has to be walked to learn what it holds.
std::string Y4m(const std::string& role, int frames, bool isOdd) {
    constexpr std::size_t kOddBytes = 31 * 23 + 2 * 16 * 12;
    std::string bytes = isOdd ? "YUV4MPEG2 W31 H23 F25:1\n" : "YUV4MPEG2 W32 H24 F25:1\n";
    for (int frame = 0; frame < frames; ++frame)
        bytes +=
            (isOdd ? "FRAME Xodd\n" : "FRAME\n") + NoisyFrame(isOdd ? kOddBytes : kFrameBytes, role, frame);
    return bytes;
}

rkVideoImage& LoadNoise(rkVideoImage& image, const std::string& role, int frame, int width, int height) {
    image.Create(width, height, RGB24, 0);
    const std::string noise = NoisyFrame(image.PackedFrameBytes(), role, frame);
    image.LoadFrame(reinterpret_cast<const std::uint8_t*>(noise.data()));
    return image;
}

void WriteAvi(const std::string& path, const std::string& role, int frames, bool compressed, bool large) {
    const int width = large ? kLargeWidth : kWidth, height = large ? kLargeHeight : kHeight;
    rkCompressorSettings settings;
    if (compressed) {
        settings.fccType = kFccVideoCodec;
        settings.fccHandler = FourCC('H', 'F', 'Y', 'U');
    }
    rkVideoFile file;
    ASSERT_TRUE(file.OpenWriterWithSettings(FromUtf8(path), width, height, 1, 25, settings));
    rkVideoImage image;
    for (int frame = 0; frame < frames; ++frame)
        ASSERT_TRUE(file.WriteImage(LoadNoise(image, role, frame, width, height)));
    ASSERT_TRUE(file.CloseWriter());
}

}  // namespace

const std::vector<Scenario> kScenarios = {
    {"Raw", Scenario::Raw, true, true,
     "-m psnr:Y -m blurring_metric:Y --bad-frames OUT --bad-frames-count 2"},
    {"Y4m", Scenario::Y4m, true, false, "-m psnr:Y -m mse:L --visualize OUT"},
    {"OddY4m", Scenario::OddY4m, false, false, "-m psnr:V"},
    {"Avi", Scenario::Avi, false, false,
     "-m msad:R -m ssim_fast:Y --bad-frames OUT --bad-frames-count 1 --visualize OUT --codec HFYU"},
    {"CompressedAvi", Scenario::CompressedAvi, false, false, "-m delta:U -m vqm:Y"},
    {"Scripts", Scenario::Scripts, false, false, "-m psnr:B --avs"},
    {"Bitmaps", Scenario::Bitmaps, true, false,
     "-m psnr:G --visualize OUT --bad-frames OUT --bad-frames-count 0"},
};

void WriteInputs(const Scenario& scenario, const std::filesystem::path& directory, int frames,
                 int maskedFrames) {
    const auto inputs = scenario.inputs;
    for (const std::string& role : Roles(scenario)) {
        const std::string path = directory / FileName(scenario, role);
        std::ofstream file(path, std::ios::binary);
        rkVideoImage image;
        if (inputs == Scenario::Raw)
            file << RawFrames(role, frames, maskedFrames);
        else if (inputs == Scenario::Y4m || inputs == Scenario::OddY4m)
            file << Y4m(role, frames, inputs == Scenario::OddY4m);
        else if (inputs == Scenario::Bitmaps)
            file << rkBmpFileBytes(LoadNoise(image, role, 0, kWidth, kHeight));
        else
            WriteAvi(path, role, frames, inputs == Scenario::CompressedAvi, inputs == Scenario::Scripts);
    }
}

std::vector<std::string> Arguments(const Scenario& scenario, const std::filesystem::path& in,
                                   const std::filesystem::path& out) {
    std::vector<std::string> arguments = {"--threads", "1"};
    const auto add = [&](const std::string& option, const std::string& value) {
        arguments.insert(arguments.end(), {option, value});
    };
    for (const std::string& role : Roles(scenario)) add("--" + role, in / FileName(scenario, role));
    if (scenario.inputs == Scenario::Raw) add("--size", "32x24");
    std::istringstream options(scenario.options);
    for (std::string option; options >> option;) arguments.push_back(option == "OUT" ? out.native() : option);
    add("--csv", out);
    add("--csv-naming", "custom");
    add("--csv-name", "values.csv");
    add("--json", out / "results.json");
    add("--log", out / "log.txt");
    return arguments;
}
