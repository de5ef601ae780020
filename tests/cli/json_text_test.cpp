#include "cli/json_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using Json = nlohmann::ordered_json;

/// As the library writes the same tree.
std::string Expected(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

TEST(JsonText, IsWhatTheLibraryMakesOfTheTree) {
    const std::string texts[] = {"",         "a \"b\" \\ /", "\t\r\n\x01\x7F", "gr\xC3\xBC\xC3\x9F",
                                 "cut \xC3", "\xFF\xFE"};
    const double numbers[] = {0, -0.0, 100, 41.2031021f, 1e-7, 1e20, 123456789.4, 0.1f};
    Json tree = {{"empty", Json::array()},
                 {"none", Json::object()},
                 {"texts", Json::array()},
                 {"numbers", Json::array()}};
    JsonText text;
    text.BeginObject();
    text.Key("empty");
    text.BeginArray();
    text.EndArray();
    text.Key("none");
    text.BeginObject();
    text.EndObject();
    text.Key("texts");
    text.BeginArray();
    for (const std::string& item : texts) {
        tree["texts"].push_back(item);
        text.String(item);
    }
    text.EndArray();
    text.Key("numbers");
    text.BeginArray();
    for (const double number : numbers) {
        // Nine significant digits.
        tree["numbers"].push_back(
            number == 0 ? number : std::stod((std::ostringstream() << std::setprecision(9) << number).str()));
        text.Number(number);
    }
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        tree["numbers"].push_back(nullptr);
        text.Number(number);
    }
    text.EndArray();
    tree["items"] = {{{"flag", true}, {"number", -7}}, {{"nothing", nullptr}}, 3};
    text.Key("items");
    text.BeginArray();
    text.BeginObject();
    text.Key("flag");
    text.Boolean(true);
    text.Key("number");
    text.Integer(-7);
    text.EndObject();
    text.BeginObject();
    text.Key("nothing");
    text.Null();
    text.EndObject();
    text.Integer(3);
    text.EndArray();
    text.EndObject();
    EXPECT_EQ(Expected(tree), text.Take());
}

}  // namespace
