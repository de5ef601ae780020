// Pictures and files that are as odd as a user may have them, measured with every metric in every component.

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

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
constexpr double kLeastPsnr = -0.034;
const std::map<std::string, Rule> kRules = {
    {"psnr", {kLeastPsnr, 100, 100}},
    {"psnr_256", {kLeastPsnr, 100, 100}},
    {"apsnr", {kLeastPsnr, 100, 100}},
    {"apsnr_256", {kLeastPsnr, 100, 100}},
    {"roi_psnr", {kLeastPsnr, 100, 100}},
    {"ssim_fast", {-1, 1, 1}},
    {"ssim_precise", {-1, 1, 1}},
    {"3ssim", {-1, 1, 1}},
    {"stssim", {-1, 1, 1}},
    {"msssim_fast", {-1, 1, 1}},
    {"msssim_precise", {-1, 1, 1}},
    {"vqm", {0, 1e5, 0}},
    {"delta", {-256, 256, 0}},
    {"msad", {0, 256, 0}},
    {"mse", {0, 65536, 0}},
    {"ssim_cuda", {-1, 1, 1}},
    {"msssim_cuda", {-1, 1, 1}},
    {"3ssim_cuda", {-1, 1, 1}},
    {"blocking_metric", {0, 1e5, 0}},  // sees one file, as blurring does
    {"blurring_metric", {0, 1e5, 0}},
};

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

/// The results of every metric; none if the run didn't end with `status`.
json Measured(const std::string& arguments, int status = 0) {
    const ProgramRun run = RunProgram(arguments + AllMetrics() + " -q --json -");
    EXPECT_EQ(status, run.status) << run.errors;
    if (run.status != status) return json::array();
    const json results = json::parse(run.output)["results"];
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
    return Measured(RawPair(directory, clip, ClipFile(clip, 0), ClipFile(clip, 1)));
}

bool IsMsssim(const json& result) {
    return result["id"].get<std::string>().starts_with("msssim");
}

/// A value of every frame, and each within its range. `frames` of 32 or less leave nothing for stSSIM.
void ExpectNumbers(const json& results, int frames, bool msssimMayFail = false) {
    for (const json& result : results) {
        SCOPED_TRACE(result["id"].get<std::string>() + " " + result["component"].get<std::string>());
        const Rule& rule = kRules.at(result["id"]);
        const int lag = result["id"] == "stssim" ? 32 : 0;
        EXPECT_EQ(std::max(frames - lag, 0), static_cast<int>(result["values"].size()));
        for (const json& value : result["values"]) {
            if (msssimMayFail && IsMsssim(result) && value.is_null()) continue;
            ASSERT_TRUE(value.is_number()) << value;
            EXPECT_GE(value.get<double>(), rule.least);
            EXPECT_LE(value.get<double>(), rule.greatest + (rule.greatest == 1 ? kRoundingOfSsim : 0));
        }
    }
}

/// One clip twice is as good as can be.
void ExpectEqual(const json& results) {
    for (const json& result : results) {
        if (result["files"].size() < 2) continue;
        const double best = kRules.at(result["id"]).ofEqual;
        for (const json& number : result["values"]) {
            ASSERT_TRUE(number.is_number()) << result["id"] << " " << result["component"];
            double value = number;
            if (result["id"] ==
                "3ssim_cuda") {  // edges, or all but edges, that a frame doesn't have count as 0
                if (value < 0.5) value += 0.7;
                if (value < 0.9) value += 0.3;
            }
            const bool onCard = result["id"].get<std::string>().ends_with("cuda");  // 1 up to rounding
            EXPECT_NEAR(best, value, onCard ? kRoundingOfSsim : 0)
                << result["id"] << " " << result["component"];
        }
    }
}

TEST(ExtremePictures, Sizes) {
    const struct {
        int width, height, frames;
    } kSizes[] = {{1, 1, 34}, {2, 2, 34}, {3, 5, 34}, {8, 8, 34}, {16384, 16, 1}, {16, 16384, 1}};
    for (const auto& size : kSizes) {
        SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
        ExpectNumbers(MeasuredClip({"IYUV", size.width, size.height, size.frames, Scene::Moving}),
                      size.frames);
        const json equal = MeasuredClip({"P416", size.width, size.height, size.frames, Scene::Equal});
        ExpectNumbers(equal, size.frames);
        ExpectEqual(equal);
    }
}

TEST(ExtremePictures, Contents) {
    const struct {
        const char* what;
        Scene scene;
        bool alike = true;  ///< MSSSIM has no value where contrast is inverted, which noise may be by chance
    } kContents[] = {{"noise", Scene::Noise, false},
                     {"black and white noise", Scene::BlackAndWhite, false},
                     {"flat", Scene::Flat},
                     {"equal", Scene::Equal},
                     {"inverted", Scene::Inverted, false}};
    for (const auto& content : kContents) {
        for (const char* form : {"YUV", "P416", "P416_RGB"}) {
            SCOPED_TRACE(testing::Message() << content.what << " " << form);
            const json results = MeasuredClip({form, 40, 24, 34, content.scene});
            ExpectNumbers(results, 34, !content.alike);
            if (content.scene == Scene::Equal) ExpectEqual(results);
        }
    }
}

TEST(ExtremePictures, BlackAndWhite) {
    const struct {
        const char* form;
        int sampleBytes;
        double error;  ///< of Y, between black and white; -1 where Y isn't stored
    } kForms[] = {{"YUV", 1, 255}, {"P416", 2, 65535.0 / 256}, {"P416_RGB", 2, -1}};
    for (const auto& form : kForms) {
        SCOPED_TRACE(form.form);
        const Clip clip{form.form, 24, 40, 1, Scene::Flat};
        const TemporaryDirectory directory;
        const std::string black(static_cast<std::size_t>(24 * 40 * 3 * form.sampleBytes), '\0');
        const std::string white(black.size(), '\xFF');
        ExpectEqual(Measured(RawPair(directory, clip, white, white)));
        const json results = Measured(RawPair(directory, clip, black, white));
        ExpectNumbers(results, 1);
        for (const json& result : results) {
            if (form.error < 0 || result["id"] != "mse" || result["component"] != "YYUV") continue;
            EXPECT_FLOAT_EQ(static_cast<float>(form.error * form.error), result["average"].get<float>());
        }
    }
}

// They are measured as they are, whatever comes of it.
TEST(ExtremePictures, WordsOfMoreBitsThanTheLayoutHas) {
    const TemporaryDirectory directory;
    const Clip clip{"P410", 24, 40, 1, Scene::Flat};
    const std::string black(24 * 40 * 3 * 2, '\0'), full(black.size(), '\xFF');
    for (const json& result : Measured(RawPair(directory, clip, black, full))) {
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
    const struct {
        const char* what;
        const char* form;
        std::string bytes;
    } kFiles[] = {{"raw, no byte", "IYUV", ""},   {"raw, half a frame", "P416", std::string(768, 'a')},
                  {"Y4M, no byte", "C444", ""},   {"Y4M, a head", "C420jpeg", head},
                  {"bitmap, no byte", "BMP", ""}, {"Y4M, half a frame", "C420jpeg", head + "FRAME\nabc"}};
    for (const auto& file : kFiles) {
        SCOPED_TRACE(file.what);
        const TemporaryDirectory directory;
        const Clip clip{file.form, 16, 16, 1, Scene::Moving};
        const std::string good = ClipFile(clip, 0);
        for (const bool first : {true, false}) {
            const ProgramRun run =
                RunProgram(RawPair(directory, clip, first ? file.bytes : good, first ? good : file.bytes) +
                           AllMetrics() + " -q --json -");
            EXPECT_NE(0, run.status);
            EXPECT_LE(run.status, 2) << run.errors;
            const json report = json::parse(run.output);
            for (const json& result : report["results"]) {
                if (result["files"].size() == 1) continue;  // the good file may be measured alone
                EXPECT_EQ(json::array(), result["values"]) << result["id"];
                EXPECT_TRUE(result["average"].is_null()) << result["id"];
            }
        }
    }
}

// A minute and a half, and 4 GB.
TEST(ExtremePictures, DISABLED_EightThousandColumns) {
    Clip clip{"IYUV", 7680, 4320, 1, Scene::Moving};
    ExpectNumbers(MeasuredClip(clip), 1);
    clip.scene = Scene::Equal;
    json results = MeasuredClip(clip);
    ExpectNumbers(results, 1);
    for (json& result : results) {
        if (result["id"] != "ssim_fast") continue;
        // Its sum in float of 33 million ones stands still at 2^24.
        EXPECT_NEAR(0.51, result["average"].get<double>(), 0.005);
        result["values"] = json::array();
    }
    ExpectEqual(results);
}

}  // namespace
