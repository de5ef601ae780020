#include "video/sources/y4m_header.h"

#include <charconv>

namespace {

/// Takes the number at the start of `text` off it. False if there is none or it's too large; `number` stays.
bool TakeNumber(std::string_view& text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc{};
}

bool ParseSide(std::string_view text, int& side) {
    return TakeNumber(text, side) && text.empty();
}

/// "30000:1001"; a number that isn't there or doesn't fit is left as it was.
void ParseRatio(std::string_view text, int& numerator, int& denominator) {
    if (!TakeNumber(text, numerator) || !text.starts_with(':')) return;
    text.remove_prefix(1);
    TakeNumber(text, denominator);
}

bool ParseInterlacing(std::string_view text, int& interlacing) {
    constexpr std::string_view kProgressive = "p?", kFieldsFirst = "tb";  // top and bottom field
    if (text.size() != 1) return false;
    const auto field = kFieldsFirst.find(text[0]);
    if (field != kFieldsFirst.npos) interlacing = static_cast<int>(field) + 1;
    return field != kFieldsFirst.npos || kProgressive.find(text[0]) != kProgressive.npos;
}

/// The depth behind the three digits of a colour word, as in "420p10"; 8 for any other text ("420paldv").
int ParseDepth(std::string_view word) {
    word.remove_prefix(3);
    if (!word.starts_with('p')) return 8;
    word.remove_prefix(1);
    int bits = 0;
    return TakeNumber(word, bits) && word.empty() && bits >= 9 && bits <= 16 ? bits : 8;
}

/// A colour word is known by its start: "420jpeg", "420mpeg2" and "420paldv" differ in chroma's siting only.
bool ParseColor(std::string_view word, Y4mHeader& header) {
    constexpr struct {
        std::string_view start;
        int colorSpace;
    } kWords[] = {{"420", IYUV}, {"422", YV16}, {"444", YUV}};
    if (word.starts_with("444alpha")) return false;
    for (const auto& known : kWords) {
        if (!word.starts_with(known.start)) continue;
        header.colorSpace = known.colorSpace;
        header.sampleBits = ParseDepth(word);
        return true;
    }
    return false;
}

std::wstring Comment(std::string_view text) {
    std::wstring comment;
    for (const char c : text.substr(0, kY4mMaxComment))
        comment += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return comment;
}

struct Token {
    char letter = 0;
    std::string_view text;
};

/// Takes the next token off the line; false if the line doesn't go on with a space and another character.
bool TakeToken(std::string_view& line, Token& token) {
    if (line.size() < 2 || line[0] != ' ') return false;
    token.letter = line[1];
    line.remove_prefix(2);
    token.text = line.substr(0, line.find(' '));
    line.remove_prefix(token.text.size());
    return true;
}

bool ParseToken(const Token& token, Y4mHeader& header) {
    switch (token.letter) {
        case 'W':
            return ParseSide(token.text, header.width);
        case 'H':
            return ParseSide(token.text, header.height);
        case 'F':
            ParseRatio(token.text, header.rateNumerator, header.rateDenominator);
            return true;
        case 'A':
            ParseRatio(token.text, header.aspectNumerator, header.aspectDenominator);
            return true;
        case 'I':
            return ParseInterlacing(token.text, header.interlacing);
        case 'C':
            return ParseColor(token.text, header);
        case 'X':
            header.comment = Comment(token.text);
            return true;
        default:
            return false;
    }
}

/// Every number of the header passes here before it is used.
bool CheckNumbers(Y4mHeader& header) {
    if (header.aspectNumerator < 1 || header.aspectDenominator < 1) {
        header.aspectNumerator = header.aspectDenominator = 1;
    }
    if (header.rateNumerator < 1 && header.rateDenominator < 1) {
        header.rateNumerator = 25;
        header.rateDenominator = 1;
    }
    return header.width >= 1 && header.height >= 1;
}

}  // namespace

std::optional<Y4mHeader> ParseY4mParameters(std::string_view parameters) {
    Y4mHeader header;
    while (!parameters.empty()) {
        Token token;
        if (!TakeToken(parameters, token) || !ParseToken(token, header)) return std::nullopt;
    }
    if (!CheckNumbers(header)) return std::nullopt;
    return header;
}

Y4mFrameLine FindY4mFrameLine(std::string_view start) {
    const std::size_t mark = kY4mFrameMark.size();
    if (!start.starts_with(kY4mFrameMark)) return {mark, {}};

    const std::string_view line = start.substr(mark);
    const auto end = line.find('\n');
    if (end == line.npos) return {mark + line.size(), line};
    return {mark + end + 1, line.substr(0, end)};
}

void TakeY4mComment(std::string_view parameters, std::wstring& comment) {
    Token token;
    while (TakeToken(parameters, token)) {
        if (token.letter == 'X') comment = Comment(token.text);
    }
}
