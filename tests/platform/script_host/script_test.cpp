#include "platform/program_directory.h"
#include "platform/script_host/clip.h"
#include "platform/script_host/script_text.h"
#include "platform/text.h"
#include "tests/platform/media/container_file.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

/// A script as one line, to be compared: "plug-in|function name=value value".
std::string Told(const Script& script) {
    std::string told;
    for (const auto& plugin : script.plugins) told += plugin.path + "|";
    told += script.source.function;
    for (const ScriptArgument& argument : script.source.arguments) {
        told += " " + (argument.name.empty() ? "" : argument.name + "=");
        if (const auto* text = std::get_if<std::string>(&argument.value)) told += "'" + *text + "'";
        if (const auto* whole = std::get_if<std::int64_t>(&argument.value)) told += std::to_string(*whole);
        if (const auto* real = std::get_if<double>(&argument.value)) told += std::to_string(*real);
        if (const auto* flag = std::get_if<bool>(&argument.value)) told += *flag ? "yes" : "no";
    }
    return told;
}

TEST(ScriptText, Reads) {
    const std::pair<const char*, const char*> kCases[] = {
        {"AviSource(\"C:\\v\\a.avi\", audio = false, pixel_type = \"RGB24\")",
         "AviSource 'C:\\v\\a.avi' audio=no pixel_type='RGB24'"},
        {"loadplugin(\"avs_plugins\\rawsource.dll\")\nRawSource(\"a b.yuv\", 352, 288, \"I420\")",
         "avs_plugins\\rawsource.dll|RawSource 'a b.yuv' 352 288 'I420'"},
        {"\xEF\xBB\xBF# a comment\r\n\r\n\tLoadPlugin ( \"x\" ) # with \"this\"\r\nF()\r\n\r\n# end", "x|F"},
        {"F(\"#,)(\", a=-12,b=+1.5 , c=TRUE,_d1=-.25)", "F '#,)(' a=-12 b=1.500000 c=yes _d1=-0.250000"},
        {"F(\"two\nlines\")", "F 'two\nlines'"},
        {"F(true, 9223372036854775807)", "F yes 9223372036854775807"},
    };
    for (const auto& [text, told] : kCases) EXPECT_EQ(told, Told(ParseScript(text)));
}

TEST(ScriptText, NamesTheLineAndWhatIsWrong) {
    const std::pair<std::string, const char*> kCases[] = {
        {"", "line 1: the script calls no source function"},
        {"\n# nothing\nloadplugin(\"x\")\n", "line 4: the script calls no source function"},
        {"F(\"a\")\nF(\"b\")", "line 2: a script ends with its one source"},
        {"F(\"a\")\nloadplugin(\"b\")", "line 2: a script ends with its one source"},
        {"loadplugin()\nF()", "line 1: loadplugin takes one text, the plug-in's file"},
        {"loadplugin(1)", "line 1: loadplugin takes one text, the plug-in's file"},
        {"a = F(\"x\")", "line 1: \"=\" stands after \"a\" instead of \"(\""},
        {"F(\"x\").Crop(2)", "line 1: \".\" stands behind the call"},
        {"\n1", "line 2: \"1\" stands instead of a function's name"},
        {"\"x\"", "line 1: \"\"\" stands instead of a function's name"},
        {"F(\"x\"", "line 1: the script ends after an argument instead of \")\""},
        {"F(\"x\",\n1)", "line 1: the line ends instead of a value"},
        {"F(,1)", "line 1: \",\" stands instead of a value"},
        {"F(1 2)", "line 1: \"2\" stands after an argument instead of \")\""},
        {"F(\"x)\n\n", "line 1: a text has no closing quote"},
        {"F(\"x\ny\")\nG()", "line 3: a script ends with its one source"},
        {"F(yes)", "line 1: \"yes\" is no value: texts stand in quotes, flags are true and false"},
        {"F(a=b=c)", "line 1: \"b\" is no value: texts stand in quotes, flags are true and false"},
        {"F(1e5)", "line 1: \"1e5\" is no number, or one that is too large"},
        {"F(-)", "line 1: \"-\" is no number, or one that is too large"},
        {"F(1-2)", "line 1: \"1-2\" is no number, or one that is too large"},
        {"F(9223372036854775808)", "line 1: \"9223372036854775808\" is no number, or one that is too large"},
        {"F(\xC3\xA9)", "line 1: a character of code 195 stands instead of a value"},
        {std::string("F(\"a\0b\")", 9), "line 1: a text holds a zero byte"},
        {std::string("F()\0", 4), "line 1: a character of code 0 stands behind the call"},
    };
    for (const auto& [text, expected] : kCases) {
        try {
            ParseScript(text);
            ADD_FAILURE() << "it is accepted: " << text;
        } catch (const ScriptError& error) {
            EXPECT_STREQ(expected, error.what()) << text;
        }
    }
}

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

TEST_F(RunScriptTest, TheDescriptionTellsThatAFileIsCutOff) {
    ASSERT_TRUE(WriteContainerFile({"matroska", "ffv1", "", 6}, directory.Path("clip.mkv")));
    fs::resize_file(directory.Path("clip.mkv"), fs::file_size(directory.Path("clip.mkv")) / 2);
    const ScriptResult cut = Run(kQTInput + "QTInput(\"clip.mkv\", 0)");
    ASSERT_NE(nullptr, cut.clip) << cut.error;
    EXPECT_LT(cut.clip->GetProperties().frameCount, 6);
    EXPECT_EQ("the file is cut off, 4:2:0 converted to RGB", cut.clip->GetProperties().description);
}

TEST_F(RunScriptTest, EveryFunctionOpensItsFiles) {
    ASSERT_TRUE(WriteContainerFile({"avi", "ffv1", "", 5}, directory.Path("a b.avi")));
    ASSERT_TRUE(WriteContainerFile({"matroska", "ffv1", "", 5}, directory.Path("\xC3\xA9.mkv")));
    fs::create_directory(directory.Path("sub"));
    fs::copy(directory.Path("a b.avi"), directory.Path("sub/c.avi"));
    const std::string kWhole = "AviSource(\"" + directory.Path("a b.avi") + "\", true, \"yv12\")";
    const std::pair<std::string, bool> kCases[] = {
        // whether they convert
        {"AviSource(\"a b.avi\")", false},
        {kWhole, false},
        {R"(AviSource("a b.avi", audio = false, pixel_type = "RGB24"))", true},
        {R"(OpenDMLSource("sub\c.avi", audio = false, pixel_type = "RGB24"))", true},
        {R"(avifilesource(FILE = "sub/c.avi"))", false},
        {"DirectShowSource(\"\xC3\xA9.mkv\", audio = false, pixel_type = \"RGB24\")", true},
        {kDss2 + "dss2(\"\xC3\xA9.mkv\")", false},
        {kFFVideoSource + R"(FFVideoSource("a b.avi"))", false},
        {kQTInput + "QTInput(\"\xC3\xA9.mkv\", color = 2, quality = 100, audio = false, mode = 0)", false},
        {kQTInput + "QTInput(\"\xC3\xA9.mkv\", 0)", true},
        {kDss2 + kQTInput + kDss2 + R"(dss2("a b.avi"))", false},
    };
    for (const auto& [script, converts] : kCases) {
        SCOPED_TRACE(script);
        const ScriptResult result = Run(script);
        ASSERT_NE(nullptr, result.clip) << result.error;
        EXPECT_EQ("", result.error);
        const Clip::Properties& properties = result.clip->GetProperties();
        EXPECT_EQ(converts ? Surface::RGB24 : Surface::YV12, properties.surface);
        EXPECT_EQ(converts ? "4:2:0 converted to RGB" : "", properties.description);
        EXPECT_EQ(64, properties.width);
        EXPECT_EQ(48, properties.height);
        EXPECT_EQ(5, properties.frameCount);
        EXPECT_EQ(25u, properties.rate);
        EXPECT_EQ(1u, properties.scale);
        EXPECT_TRUE(Frame(*result.clip, 5).empty());
        for (const int number : {4, 0, 2})
            EXPECT_TRUE(converts || ToYv12(*SamplePicture(number, 64, 48)) == Frame(*result.clip, number));
    }
}

// Two frames of two by two pixels, numbered bytes; the surfaces are worked out by hand.
TEST_F(RunScriptTest, RawFormats) {
    const std::tuple<const char*, std::string, Surface, std::string> kCases[] = {
        {"YV12", "------ABCDVU", Surface::YV12, "ABCDVU"},
        {"i420", "------ABCDUV+", Surface::YV12, "ABCDVU"},
        {"Y8", "----ABCD", Surface::YV12, "ABCD\x80\x80"},
        {"YUYV", "--------AUBVCuDv", Surface::YUY2, "AUBVCuDv"},
        {"YVYU", "--------AVBUCvDu", Surface::YUY2, "AUBVCuDv"},
        {"UYVY", "--------UAVBuCvD", Surface::YUY2, "AUBVCuDv"},
        {"VYUY", "--------VAUBvCuD---", Surface::YUY2, "AUBVCuDv"},
    };
    for (const auto& [format, file, surface, expected] : kCases) {
        SCOPED_TRACE(format);
        directory.Write("a.raw", file);
        const ScriptResult result = Run(kRawSource + "RawSource(\"a.raw\", 2, 2, \"" + format + "\")");
        ASSERT_NE(nullptr, result.clip) << result.error;
        EXPECT_EQ(surface, result.clip->GetProperties().surface);
        EXPECT_EQ(2, result.clip->GetProperties().frameCount) << "a partial frame doesn't count";
        const std::vector<std::uint8_t> second = Frame(*result.clip, 1);
        EXPECT_EQ(expected, std::string(second.begin(), second.end()));
    }
}

TEST_F(RunScriptTest, SaysWhatIsWrong) {
    ASSERT_TRUE(WriteContainerFile({}, directory.Path("a.mkv")));
    directory.Write("a.raw", std::string(12, 'x'));
    const std::pair<std::string, std::string> kCases[] = {
        {R"(AviSource("a.mkv"))", "AviSource: the file is no AVI file"},
        {R"(AviSource("gone.avi"))", "AviSource: the file can't be read"},
        {R"(DirectShowSource("script.avs"))", "DirectShowSource: the file is no video file of a known kind"},
        {R"(Blur("a.mkv"))", R"(there is no function "Blur")"},
        {R"(dss2("a.mkv"))", R"(there is no function "dss2")"},
        {"AviSource()", R"(AviSource misses its argument "file")"},
        {"AviSource(3)", R"(the argument "file" of AviSource takes a file's name in quotes)"},
        {R"(AviSource("a", "yes"))", R"(the argument "audio" of AviSource takes true or false)"},
        {R"(AviSource("a", colour = 1))", R"(AviSource has no argument "colour")"},
        {R"(AviSource("a", file = "b"))", R"(AviSource gets its argument "file" twice)"},
        {R"(AviSource(audio = true, "a"))", "an argument without a name stands behind one with a name"},
        {R"(AviSource("a", true, "YV12", 1))", "AviSource has too many arguments"},
        {R"(DirectShowSource("a.mkv", pixel_type = "RGB32"))",
         R"(DirectShowSource: pixel_type takes "RGB24", "YV12" or "YUY2"; it got "RGB32")"},
        {R"(DirectShowSource("a.mkv", pixel_type = "YUY2"))",
         "DirectShowSource: the pictures can't be handed over as YUY2 without loss, only as YV12 or RGB24"},
        {kQTInput + R"(QTInput("a.mkv", color = 3))",
         "QTInput: color takes 0 (RGB24), 1 (YUY2) or 2 (as stored)"},
        {kQTInput + R"(QTInput("a.mkv", quality = 2147483648))",
         R"(the argument "quality" of QTInput takes a whole number)"},
        {kQTInput + R"(QTInput("a.mkv", quality = 101))", "QTInput: quality takes 0 to 100"},
        {kRawSource + R"(RawSource("a.raw", 2, 2))", R"(RawSource misses its argument "format")"},
        {kRawSource + R"(RawSource("a.raw", 2, 2, "Y9"))",
         R"(RawSource: format takes YV12, I420, Y8, UYVY, YUYV, VYUY or YVYU; it got "Y9")"},
        {kRawSource + R"(RawSource("a.raw", 3, 2, "YUYV"))", "RawSource: YUYV takes an even width"},
        {kRawSource + R"(RawSource("a.raw", 2, 1, "Y8"))", "RawSource: Y8 takes an even width and height"},
        {kRawSource + R"(RawSource("a.raw", 0, 2, "Y8"))", "RawSource: Y8 takes an even width and height"},
        {kRawSource + R"(RawSource("a.raw", 65536, 65536, "Y8"))",
         "RawSource: a frame takes less than 2 GiB"},
        {kRawSource + R"(RawSource("a.raw", 4, 4, "I420"))", "RawSource: the file is shorter than one frame"},
        {std::string(70000, '\n'), "the script is longer than 65536 bytes"},
    };
    for (const auto& [script, error] : kCases) {
        SCOPED_TRACE(script.substr(0, 100));
        const ScriptResult result = Run(script);
        EXPECT_EQ(nullptr, result.clip);
        EXPECT_EQ((script.starts_with("loadplugin") ? "line 2: " : "line 1: ") + error, result.error);
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

    const std::string kAbsent = "there is no such file beside the program";
    const std::string kDamaged = "the plug-in can't be loaded";
    const std::pair<std::string, std::string> kCases[] = {
        {"avs_plugins\\avss.dll", ""},
        {".\\avs_plugins//avss.dll", ""},
        {"avs_plugins\\here.dll", kAbsent},
        {"avs_plugins\\cut.dll", kDamaged},
        {"avs_plugins\\text.dll", kDamaged},
        {"avs_plugins", kAbsent},
        {"", kAbsent},
        {good.native(), kAbsent},
        {directory.Path("avs_plugins/here.dll"), kAbsent},
        {"plugins\\..\\avs_plugins\\avss.dll", kAbsent},
    };
    for (const auto& [file, error] : kCases) {
        const ScriptResult result = Run("loadplugin(\"" + file + "\")\ndss2(\"a.mkv\")");
        EXPECT_EQ(error.empty(), result.clip != nullptr) << file;
        EXPECT_EQ(error.empty() ? "" : "line 1: loadplugin of \"" + file + "\": " + error, result.error);
    }
    fs::current_path(old);
    fs::remove(cut);
    fs::remove(text);
}

}  // namespace
