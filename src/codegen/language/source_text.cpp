#include "codegen/language/source_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/visible_text.h"

namespace tweenery {

namespace {

struct Character {
    char32_t code = 0;
    size_t length = 1;  // in bytes
};

// The character at the head of well-formed UTF-8.
Character firstCharacter(std::string_view text) {
    const auto byteAt = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byteAt(0);
    const size_t length = first < 0xc0 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    if (length == 1 || length > text.size()) { return {first, 1}; }
    char32_t code = first & (0xff >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        code = code << 6 | (byteAt(i) & 0x3f);
    }
    return {code, length};
}

void appendHexadecimal(std::string& out, char32_t code) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    if (code >= 16) { appendHexadecimal(out, code / 16); }
    out += digits[code % 16];
}

// `bytes` are those of the character `code`.
void appendEscaped(std::string& out, TargetLanguage language, char32_t code,
                   std::string_view bytes) {
    if (code == U'\n') {
        out += "\\n";
    } else if (code == U'\r') {
        out += "\\r";
    } else if (code == U'\t') {
        out += "\\t";
    } else if (language != TargetLanguage::ObjectiveC) {
        out += "\\u{";
        appendHexadecimal(out, code);
        out += '}';
    } else {
        // Octal escapes end after three digits, hexadecimal ones swallow what follows.
        for (const char byte : bytes) {
            const auto octet = static_cast<unsigned char>(byte);
            out += '\\';
            out += static_cast<char>('0' + octet / 64);
            out += static_cast<char>('0' + octet / 8 % 8);
            out += static_cast<char>('0' + octet % 8);
        }
    }
}

// Two question marks and one of these are another character to a compiler that keeps to the older
// standards of C.
bool beginsTrigraph(std::string_view text) {
    return text.size() >= 3 && text.starts_with("??") &&
           std::string_view("=/'()!<>-").find(text[2]) != std::string_view::npos;
}

// `name` with what would not show escaped, each of `marked` behind a backslash, and `breaker`
// between the question marks of a trigraph.
std::string escaped(TargetLanguage language, std::string_view name, std::string_view marked,
                    char breaker) {
    const auto isInside = [&](char mark) { return name.find(mark) != std::string_view::npos; };
    const bool isPlain = std::all_of(name.begin(), name.end(),
                                     [](char character) {
                                         const auto byte = static_cast<unsigned char>(character);
                                         return byte >= 0x20 && byte < 0x7f && byte != '?';
                                     }) &&
                         std::none_of(marked.begin(), marked.end(), isInside);
    std::string text;
    if (isPlain) { return text.assign(name); }
    text.reserve(name.size());
    while (!name.empty()) {
        const auto [code, length] = firstCharacter(name);
        const std::string_view bytes = name.substr(0, length);
        if (isInvisible(code)) {
            appendEscaped(text, language, code, bytes);
        } else {
            if (marked.find(name.front()) != std::string_view::npos) { text += '\\'; }
            text += bytes;
            if (language == TargetLanguage::ObjectiveC && beginsTrigraph(name)) { text += breaker; }
        }
        name.remove_prefix(length);
    }
    return text;
}

}  // namespace

void appendFilled(std::string& out, std::string_view text,
                  std::initializer_list<SourceArgument> arguments) {
    auto argument = arguments.begin();
    while (true) {
        const size_t percent = text.find('%');
        out.append(text.substr(0, percent));
        if (percent == std::string_view::npos) { return; }
        text.remove_prefix(percent + 1);
        switch (text.front()) {
            case '%':
                out += '%';
                text.remove_prefix(1);
                break;
            case '@':
                out.append(std::get<std::string_view>(*argument++));
                text.remove_prefix(1);
                break;
            case 'd':
                out += std::to_string(std::get<int32_t>(*argument++));
                text.remove_prefix(1);
                break;
            default:
                appendFixed(out, std::get<double>(*argument++), text[2] - '0');
                text.remove_prefix(std::string_view("0.1f").size());
        }
    }
}

int32_t cutToInt32(double value) {
    if (std::isnan(value)) { return 0; }
    return static_cast<int32_t>(std::clamp<double>(value, std::numeric_limits<int32_t>::min(),
                                                   std::numeric_limits<int32_t>::max()));
}

std::string literalText(TargetLanguage language, std::string_view name) {
    return escaped(language, name, "\"\\", '\\');
}

std::string commentText(TargetLanguage language, std::string_view name) {
    std::string text = escaped(language, name, "", ' ');
    if (language == TargetLanguage::ObjectiveC) {
        // A backslash at the end, or before blanks there, joins the next line to the comment. A
        // second backslash would do no better.
        const size_t last = text.find_last_not_of(' ');
        if (last != std::string::npos && text[last] == '\\') { text.replace(last, 1, "\\134"); }
    }
    return text;
}

}  // namespace tweenery
