#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "platform/program_directory.h"
#include "platform/script_host/clip.h"
#include "platform/text.h"
#include "tests/platform/media/container_file.h"
#include "tests/temporary_directory.h"

namespace {

namespace fs = std::filesystem;

const std::string kDss2 = "loadplugin(\"avs_plugins\\avss.dll\")\n";
const std::string kFFVideoSource = "loadplugin(\"avs_plugins\\FFMpegSource.dll\")\n";
const std::string kQTInput = "loadplugin(\"avs_plugins/QTSource.dll\")\n";
const std::string kRawSource = "loadplugin(\"avs_plugins\\rawsource.dll\")\n";

struct RunScriptTest : testing::Test {
    /// Runs a script that lies beside the files it names.
    ScriptResult Run(const std::string& text) {
        return RunScript(FromUtf8(directory.Write("script.avs", text)));
    }

    TemporaryDirectory directory;
};

std::vector<std::uint8_t> Frame(Clip& clip, int number) {
    const Clip::Properties& properties = clip.GetProperties();
    std::vector<std::uint8_t> bytes(SurfaceBytes(properties.surface, properties.width, properties.height));
    return clip.ReadFrame(number, bytes.data()) ? bytes : std::vector<std::uint8_t>{};
}

/// The sample picture as planes Y, V, U.
std::vector<std::uint8_t> SampleYv12(int number, int width, int height) {
    const FramePtr picture = SamplePicture(number, width, height);
    std::vector<std::uint8_t> bytes;
    for (const int plane : {0, 2, 1}) {
        const int shift = plane == 0 ? 0 : 1;
        for (int y = 0; y < height >> shift; ++y) {
            const std::uint8_t* row = picture->data[plane] + y * picture->linesize[plane];
            bytes.insert(bytes.end(), row, row + (width >> shift));
        }
    }
    return bytes;
}

TEST_F(RunScriptTest, TheDescriptionTellsThatAFileIsCutOff) {
    const ContainerFile file = {"matroska", "ffv1", "", 6};
    ASSERT_TRUE(WriteContainerFile(file, directory.Path("clip.mkv")));
    const std::string script = kQTInput + "QTInput(\"clip.mkv\", 0)";
    ASSERT_NE(nullptr, Run(script).clip);
    EXPECT_EQ("4:2:0 converted to RGB", Run(script).clip->GetProperties().description);

    fs::resize_file(directory.Path("clip.mkv"), fs::file_size(directory.Path("clip.mkv")) / 2);
    const ScriptResult cut = Run(script);
    ASSERT_NE(nullptr, cut.clip) << cut.error;
    EXPECT_LT(cut.clip->GetProperties().frameCount, file.pictures);
    EXPECT_EQ("the file is cut off, 4:2:0 converted to RGB", cut.clip->GetProperties().description);
}

TEST_F(RunScriptTest, EveryFunctionOpensItsFiles) {
    ASSERT_TRUE(WriteContainerFile({"avi", "ffv1", "", 5}, directory.Path("a b.avi")));
    ASSERT_TRUE(WriteContainerFile({"matroska", "ffv1", "", 5}, directory.Path("\xC3\xA9.mkv")));
    fs::create_directory(directory.Path("sub"));
    fs::copy(directory.Path("a b.avi"), directory.Path("sub/c.avi"));
    const struct {
        std::string script;
        Surface surface;
        const char* description;
    } kCases[] = {
        {"AviSource(\"a b.avi\")", Surface::YV12, ""},
        {"AviSource(\"" + directory.Path("a b.avi") + "\", true, \"yv12\")", Surface::YV12, ""},
        {"AviSource(\"a b.avi\", audio = false, pixel_type = \"RGB24\")", Surface::RGB24,
         "4:2:0 converted to RGB"},
        {"OpenDMLSource(\"sub\\c.avi\", audio = false, pixel_type = \"RGB24\")", Surface::RGB24,
         "4:2:0 converted to RGB"},
        {"avifilesource(FILE = \"sub/c.avi\")", Surface::YV12, ""},
        {"DirectShowSource(\"\xC3\xA9.mkv\", audio = false, pixel_type = \"RGB24\")", Surface::RGB24,
         "4:2:0 converted to RGB"},
        {kDss2 + "dss2(\"\xC3\xA9.mkv\")", Surface::YV12, ""},
        {kFFVideoSource + "FFVideoSource(\"a b.avi\")", Surface::YV12, ""},
        {kQTInput + "QTInput(\"\xC3\xA9.mkv\", color = 2, quality = 100, audio = false, mode = 0)",
         Surface::YV12, ""},
        {kQTInput + "QTInput(\"\xC3\xA9.mkv\", 0)", Surface::RGB24, "4:2:0 converted to RGB"},
        {kDss2 + kQTInput + kDss2 + "dss2(\"a b.avi\")", Surface::YV12, ""},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.script);
        const ScriptResult result = Run(c.script);
        ASSERT_NE(nullptr, result.clip) << result.error;
        EXPECT_EQ("", result.error);
        const Clip::Properties& properties = result.clip->GetProperties();
        EXPECT_EQ(c.surface, properties.surface);
        EXPECT_EQ(c.description, properties.description);
        EXPECT_EQ(64, properties.width);
        EXPECT_EQ(48, properties.height);
        EXPECT_EQ(5, properties.frameCount);
        EXPECT_EQ(25u, properties.rate);
        EXPECT_EQ(1u, properties.scale);
        EXPECT_TRUE(Frame(*result.clip, 5).empty());
        if (c.surface != Surface::YV12) continue;
        for (const int number : {4, 0, 2}) EXPECT_EQ(SampleYv12(number, 64, 48), Frame(*result.clip, number));
    }
}

// Two frames of two by two pixels, numbered bytes; the surfaces are worked out by hand.
TEST_F(RunScriptTest, RawFormats) {
    const struct {
        const char* format;
        std::string file;
        Surface surface;
        std::vector<std::uint8_t> second;
    } kCases[] = {
        {"YV12", "------ABCDVU", Surface::YV12, {'A', 'B', 'C', 'D', 'V', 'U'}},
        {"i420", "------ABCDUV+", Surface::YV12, {'A', 'B', 'C', 'D', 'V', 'U'}},
        {"Y8", "----ABCD", Surface::YV12, {'A', 'B', 'C', 'D', 128, 128}},
        {"YUYV", "--------AUBVCuDv", Surface::YUY2, {'A', 'U', 'B', 'V', 'C', 'u', 'D', 'v'}},
        {"YVYU", "--------AVBUCvDu", Surface::YUY2, {'A', 'U', 'B', 'V', 'C', 'u', 'D', 'v'}},
        {"UYVY", "--------UAVBuCvD", Surface::YUY2, {'A', 'U', 'B', 'V', 'C', 'u', 'D', 'v'}},
        {"VYUY", "--------VAUBvCuD---", Surface::YUY2, {'A', 'U', 'B', 'V', 'C', 'u', 'D', 'v'}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.format);
        directory.Write("a.raw", c.file);
        const ScriptResult result = Run(kRawSource + "RawSource(\"a.raw\", 2, 2, \"" + c.format + "\")");
        ASSERT_NE(nullptr, result.clip) << result.error;
        EXPECT_EQ(c.surface, result.clip->GetProperties().surface);
        EXPECT_EQ(2, result.clip->GetProperties().frameCount) << "a partial frame doesn't count";
        EXPECT_EQ(c.second, Frame(*result.clip, 1));
    }
}

TEST_F(RunScriptTest, SaysWhatIsWrong) {
    ASSERT_TRUE(WriteContainerFile({}, directory.Path("a.mkv")));
    directory.Write("a.raw", std::string(12, 'x'));
    const struct {
        std::string script, error;
    } kCases[] = {
        {"AviSource(\"a.mkv\")", "line 1: AviSource: the file is no AVI file"},
        {"AviSource(\"gone.avi\")", "line 1: AviSource: the file can't be read"},
        {"DirectShowSource(\"script.avs\")",
         "line 1: DirectShowSource: the file is no video file of a known kind"},
        {"Blur(\"a.mkv\")", "line 1: there is no function \"Blur\""},
        {"dss2(\"a.mkv\")", "line 1: there is no function \"dss2\""},
        {"AviSource()", "line 1: AviSource misses its argument \"file\""},
        {"AviSource(3)", "line 1: the argument \"file\" of AviSource takes a file's name in quotes"},
        {"AviSource(\"a\", \"yes\")", "line 1: the argument \"audio\" of AviSource takes true or false"},
        {"AviSource(\"a\", colour = 1)", "line 1: AviSource has no argument \"colour\""},
        {"AviSource(\"a\", file = \"b\")", "line 1: AviSource gets its argument \"file\" twice"},
        {"AviSource(audio = true, \"a\")",
         "line 1: an argument without a name stands behind one with a name"},
        {"AviSource(\"a\", true, \"YV12\", 1)", "line 1: AviSource has too many arguments"},
        {"DirectShowSource(\"a.mkv\", pixel_type = \"RGB32\")",
         "line 1: DirectShowSource: pixel_type takes \"RGB24\", \"YV12\" or \"YUY2\"; it got \"RGB32\""},
        {"DirectShowSource(\"a.mkv\", pixel_type = \"YUY2\")",
         "line 1: DirectShowSource: the pictures can't be handed over as YUY2 without loss, only as YV12 or "
         "RGB24"},
        {kQTInput + "QTInput(\"a.mkv\", color = 3)",
         "line 2: QTInput: color takes 0 (RGB24), 1 (YUY2) or 2 (as stored)"},
        {kQTInput + "QTInput(\"a.mkv\", quality = 2147483648)",
         "line 2: the argument \"quality\" of QTInput takes a whole number"},
        {kQTInput + "QTInput(\"a.mkv\", quality = 101)", "line 2: QTInput: quality takes 0 to 100"},
        {kRawSource + "RawSource(\"a.raw\", 2, 2)", "line 2: RawSource misses its argument \"format\""},
        {kRawSource + "RawSource(\"a.raw\", 2, 2, \"unknown format\")",
         "line 2: RawSource: format takes YV12, I420, Y8, UYVY, YUYV, VYUY or YVYU; it got \"unknown "
         "format\""},
        {kRawSource + "RawSource(\"a.raw\", 3, 2, \"YUYV\")", "line 2: RawSource: YUYV takes an even width"},
        {kRawSource + "RawSource(\"a.raw\", 2, 1, \"Y8\")",
         "line 2: RawSource: Y8 takes an even width and height"},
        {kRawSource + "RawSource(\"a.raw\", 0, 2, \"Y8\")",
         "line 2: RawSource: Y8 takes an even width and height"},
        {kRawSource + "RawSource(\"a.raw\", 65536, 65536, \"Y8\")",
         "line 2: RawSource: a frame takes less than 2 GiB"},
        {kRawSource + "RawSource(\"a.raw\", 4, 4, \"I420\")",
         "line 2: RawSource: the file is shorter than one frame"},
        {std::string(70000, '\n'), "line 1: the script is longer than 65536 bytes"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.script.substr(0, 100));
        const ScriptResult result = Run(c.script);
        EXPECT_EQ(nullptr, result.clip);
        EXPECT_EQ(c.error, result.error);
    }
    EXPECT_EQ("line 1: the script can't be read", RunScript(L"/nonexistent/a.avs").error);
}

// Code is loaded from beside the program and from nowhere else, whole or not at all.
TEST_F(RunScriptTest, Plugins) {
    const fs::path good = fs::path(ToUtf8(ProgramDirectory())) / "avs_plugins/avss.dll";
    ASSERT_TRUE(fs::exists(good));
    ASSERT_TRUE(WriteContainerFile({}, directory.Path("a.mkv")));
    fs::create_directory(directory.Path("avs_plugins"));
    fs::copy(good, directory.Path("avs_plugins/here.dll"));
    const fs::path cut = good.parent_path() / "cut.dll", text = good.parent_path() / "text.dll";
    const std::string bytes = ReadWhole(good);
    std::ofstream(cut, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    std::ofstream(text) << "no library";
    const fs::path old = fs::current_path();
    fs::current_path(directory.Root());

    const struct {
        std::string file;
        const char* error;
    } kCases[] = {
        {"avs_plugins\\avss.dll", ""},
        {".\\avs_plugins//avss.dll", ""},
        {"avs_plugins\\here.dll", "there is no such file beside the program"},
        {"avs_plugins\\cut.dll", "the plug-in can't be loaded"},
        {"avs_plugins\\text.dll", "the plug-in can't be loaded"},
        {"avs_plugins", "there is no such file beside the program"},
        {"", "there is no such file beside the program"},
        {good.native(), "there is no such file beside the program"},
        {directory.Path("avs_plugins/here.dll"), "there is no such file beside the program"},
        {"plugins\\..\\avs_plugins\\avss.dll", "there is no such file beside the program"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.file);
        const ScriptResult result = Run("loadplugin(\"" + c.file + "\")\ndss2(\"a.mkv\")");
        EXPECT_EQ(*c.error == 0, result.clip != nullptr);
        const std::string expected =
            *c.error == 0 ? "" : "line 1: loadplugin of \"" + c.file + "\": " + c.error;
        EXPECT_EQ(expected, result.error);
    }
    fs::current_path(old);
    fs::remove(cut);
    fs::remove(text);
}

}  // namespace
