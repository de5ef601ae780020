// Pictures and files that are as odd as a user may have them, measured with every metric in every component.

#include <gtest/gtest.h>

#include <map>

#include "platform/text.h"
#include "tests/cli/program.h"
#include "tests/golden/clip_file.h"
#include "video/color_space.h"

namespace {

using nlohmann::json;

/// What the manual says of a metric's values: docs/metrics.md.
struct Rule {
    double least, greatest;
    double ofEqual;  ///< of equal frames
};
/// White of 16 bits is 255.996, beyond the 255 that PSNR of a region and the 100 of L are reckoned by.
constexpr Rule kPsnr = {-0.034, 100, 100}, kSsim = {-1, 1, 1}, kOther = {0, 1e5, 0};
const std::map<std::string, Rule> kRules = {{"psnr", kPsnr},
                                            {"psnr_256", kPsnr},
                                            {"apsnr", kPsnr},
                                            {"apsnr_256", kPsnr},
                                            {"roi_psnr", kPsnr},
                                            {"ssim_fast", kSsim},
                                            {"ssim_precise", kSsim},
                                            {"ssim_cuda", kSsim},
                                            {"3ssim", kSsim},
                                            {"3ssim_cuda", kSsim},
                                            {"stssim", kSsim},
                                            {"msssim_fast", kSsim},
                                            {"msssim_precise", kSsim},
                                            {"msssim_cuda", kSsim},
                                            {"delta", {-256, 256, 0}},
                                            {"msad", {0, 256, 0}},
                                            {"mse", {0, 65536, 0}},
                                            {"vqm", kOther},
                                            {"blocking_metric", kOther},
                                            {"blurring_metric", kOther}};

/// A variance in float is a difference of sums of squares up to 2^16, each right to 2^-24 of it in a few
/// roundings: 0.01. The variances of a flat window are added to 58.5, so it may score as much above 1.
constexpr double kRoundingOfSsim = 0.01 / 58.5;

const std::string& AllMetrics() {
    static const std::string options = [] {
        std::string text = " --gpu-emulation";
        for (const json& metric : json::parse(RunProgram("--list-metrics --gpu-emulation --json -").output)) {
            for (const std::string component : metric["components"])
                text += " -m " + metric["id"].get<std::string>() + ":" + component[0];
        }
        return text;
    }();
    return options;
}

/// The results of every metric.
json MeasuredByAll(const std::string& arguments) {
    const json results = Measured(arguments + AllMetrics())["results"];
    EXPECT_GE(results.size(), kRules.size());
    return results;
}

std::string RawPair(const TemporaryDirectory& directory, const Clip& clip, const std::string& first,
                    const std::string& second) {
    return "--original " + directory.Write("a" + ClipEnding(clip), first) + " --processed " +
           directory.Write("b" + ClipEnding(clip), second) +
           (IsRaw(clip) ? " --layout " + clip.form + " --size " + std::to_string(clip.width) + "x" +
                              std::to_string(clip.height)
                        : "");
}

json MeasuredClip(const Clip& clip) {
    const TemporaryDirectory directory;
    return MeasuredByAll(RawPair(directory, clip, ClipFile(clip, 0), ClipFile(clip, 1)));
}

/// A value of every frame, and each within its range; of one clip twice it is as good as can be. `frames` of
/// 32 or less leave nothing for stSSIM.
void ExpectNumbers(const json& results, int frames, Scene scene = Scene::Moving) {
    for (const json& result : results) {
        const std::string id = result["id"];
        SCOPED_TRACE(id + " " + result["component"].get<std::string>());
        const Rule& rule = kRules.at(id);
        const int lag = id == "stssim" ? 32 : 0;
        EXPECT_EQ(std::max(frames - lag, 0), static_cast<int>(result["values"].size()));
        const bool isBest = scene == Scene::Equal && result["files"].size() > 1;
        for (const json& number : result["values"]) {
            // MSSSIM has no value where contrast is inverted, which noise may be by chance.
            const bool mayFail =
                scene == Scene::Noise || scene == Scene::BlackAndWhite || scene == Scene::Inverted;
            if (mayFail && id.starts_with("msssim") && number.is_null()) continue;
            ASSERT_TRUE(number.is_number()) << number;
            double value = number;
            EXPECT_GE(value, rule.least);
            EXPECT_LE(value, rule.greatest + (rule.greatest == 1 ? kRoundingOfSsim : 0));
            if (!isBest) continue;
            // Edges, or all but edges, that a frame doesn't have count as 0.
            if (id == "3ssim_cuda" && value < 0.5) value += 0.7;
            if (id == "3ssim_cuda" && value < 0.9) value += 0.3;
            EXPECT_NEAR(rule.ofEqual, value, id.ends_with("cuda") ? kRoundingOfSsim : 0);
        }
    }
}

TEST(ExtremePictures, Sizes) {
    constexpr int kSizes[][3] = {{1, 1, 34}, {2, 2, 34},     {3, 5, 34},
                                 {8, 8, 34}, {16384, 16, 1}, {16, 16384, 1}};
    for (const auto& [width, height, frames] : kSizes) {
        SCOPED_TRACE(testing::Message() << width << "x" << height);
        ExpectNumbers(MeasuredClip({"IYUV", width, height, frames, Scene::Moving}), frames);
        ExpectNumbers(MeasuredClip({"P416", width, height, frames, Scene::Equal}), frames, Scene::Equal);
    }
}

TEST(ExtremePictures, Contents) {
    for (const Scene scene :
         {Scene::Noise, Scene::BlackAndWhite, Scene::Flat, Scene::Equal, Scene::Inverted}) {
        for (const char* form : {"YUV", "P416", "P416_RGB"}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(scene) << " " << form);
            ExpectNumbers(MeasuredClip({form, 40, 24, 34, scene}), 34, scene);
        }
    }
}

TEST(ExtremePictures, BlackAndWhite) {
    for (const auto& [form, peak] : {std::pair("YUV", 255.0), {"P416", 65535 / 256.0}, {"P416_RGB", 0.0}}) {
        SCOPED_TRACE(form);
        const Clip clip{form, 24, 40, 1, Scene::Flat};
        const TemporaryDirectory directory;
        const std::string black(ClipFile(clip, 0).size(), '\0'), white(black.size(), '\xFF');
        ExpectNumbers(MeasuredByAll(RawPair(directory, clip, white, white)), 1, Scene::Equal);
        const json results = MeasuredByAll(RawPair(directory, clip, black, white));
        ExpectNumbers(results, 1);
        for (const json& result : results) {
            // Y isn't stored in RGB.
            if (peak == 0 || result["id"] != "mse" || result["component"] != "YYUV") continue;
            EXPECT_FLOAT_EQ(static_cast<float>(peak * peak), result["average"].get<float>());
        }
    }
}

// They are measured as they are, whatever comes of it.
TEST(ExtremePictures, WordsOfMoreBitsThanTheLayoutHas) {
    const TemporaryDirectory directory;
    const Clip clip{"P410", 24, 40, 1, Scene::Flat};
    const std::string black(24 * 40 * 3 * 2, '\0'), full(black.size(), '\xFF');
    for (const json& result : MeasuredByAll(RawPair(directory, clip, black, full))) {
        EXPECT_LE(result["values"].size(), 1u);
        if (result["id"] == "msad" && result["component"] == "YYUV") {
            EXPECT_EQ(65535.0 / 4, result["average"].get<double>());
        }
    }
}

TEST(ExtremePictures, EveryRawLayout) {
    int layouts = 0;
    for (int tag = 0; tag <= P416_RGB; ++tag) {
        const wchar_t* name = rkColorSpaceName(tag);
        if (rkColorSpaceByName(name) != tag) continue;  // known in memory alone
        ++layouts;
        for (const auto& [width, height] : {std::pair{34, 18}, std::pair{7, 5}, std::pair{1, 1}}) {
            SCOPED_TRACE(testing::Message() << ToUtf8(name) << " " << width << "x" << height);
            ExpectNumbers(MeasuredClip({ToUtf8(name), width, height, 1, Scene::Moving}), 1);
        }
    }
    EXPECT_EQ(20, layouts);
}

// Nothing is measured and nothing is made up, whichever of the files has no frame.
TEST(ExtremePictures, FilesWithoutAFrame) {
    const std::string head = "YUV4MPEG2 W16 H16 F25:1 C420jpeg\n";
    const std::vector<std::pair<const char*, std::string>> files = {
        {"IYUV", ""},       {"P416", std::string(768, 'a')},  {"BMP", ""}, {"C444", ""},
        {"C420jpeg", head}, {"C420jpeg", head + "FRAME\nabc"}};
    for (const auto& [form, bytes] : files) {
        SCOPED_TRACE(form + std::to_string(bytes.size()));
        const TemporaryDirectory directory;
        const Clip clip{form, 16, 16, 1, Scene::Moving};
        const std::string good = ClipFile(clip, 0);
        for (const bool first : {true, false}) {
            const std::string pair = RawPair(directory, clip, first ? bytes : good, first ? good : bytes);
            const ProgramRun run = RunProgram(pair + AllMetrics() + " -q --json -");
            EXPECT_TRUE(run.status == 1 || run.status == 2) << run.errors;
            const json report = json::parse(run.output);
            for (const json& result : report["results"]) {
                if (result["files"].size() == 1) continue;  // the good file may be measured alone
                EXPECT_EQ(json::array(), result["values"]) << result["id"];
                EXPECT_TRUE(result["average"].is_null()) << result["id"];
            }
        }
    }
}

// A minute and a half, and 11 GB of memory: scripts/test-large.
TEST(ExtremePictures, DISABLED_EightThousandColumns) {
    Clip clip{"IYUV", 7680, 4320, 1, Scene::Moving};
    ExpectNumbers(MeasuredClip(clip), 1);
    clip.scene = Scene::Equal;
    json results = MeasuredClip(clip);
    for (json& result : results) {
        if (result["id"] != "ssim_fast") continue;
        // Its sum in float of 33 million ones stands still at 2^24.
        EXPECT_NEAR(0.51, result["average"].get<double>(), 0.005);
        result["values"] = json::array({1});
    }
    ExpectNumbers(results, 1, Scene::Equal);
}

}  // namespace
