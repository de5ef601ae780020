#include "platform/script_host/script_text.h"

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

}  // namespace
