#include "codegen/language/source_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"

namespace tweenery {

namespace {

/// The length in bytes of the control character at the head of `text`: 0 when there is none. Those
/// above ASCII are the two-byte sequences C2 80 to C2 9F.
size_t controlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x20 || first == 0x7f) { return 1; }
    const bool above =
        first == 0xc2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xa0;
    return above ? 2 : 0;
}

void appendEscapedControl(std::string& out, TargetLanguage language, std::string_view control) {
    if (control == "\n") {
        out += "\\n";
    } else if (control == "\r") {
        out += "\\r";
    } else if (control == "\t") {
        out += "\\t";
    } else if (language == TargetLanguage::Swift) {
        const auto code = static_cast<unsigned char>(control.back());  // C2 80 is U+0080
        constexpr std::string_view digits = "0123456789ABCDEF";
        out += "\\u{";
        if (code >= 16) { out += digits[code / 16]; }
        out += digits[code % 16];
        out += '}';
    } else {
        // Octal escapes end after three digits, hexadecimal ones swallow what follows.
        for (const char byte : control) {
            const auto code = static_cast<unsigned char>(byte);
            out += '\\';
            out += static_cast<char>('0' + code / 64);
            out += static_cast<char>('0' + code / 8 % 8);
            out += static_cast<char>('0' + code % 8);
        }
    }
}

/// `name` with its control characters escaped, and each of `marked` behind a backslash.
std::string escaped(TargetLanguage language, std::string_view name, std::string_view marked) {
    const auto isInside = [&](char mark) { return name.find(mark) != std::string_view::npos; };
    const bool isPlain = std::all_of(name.begin(), name.end(),
                                     [](char character) {
                                         const auto byte = static_cast<unsigned char>(character);
                                         return byte >= 0x20 && byte < 0x7f;
                                     }) &&
                         std::none_of(marked.begin(), marked.end(), isInside);
    std::string text;
    if (isPlain) { return text.assign(name); }
    text.reserve(name.size());
    while (!name.empty()) {
        const size_t control = controlLength(name);
        if (control > 0) {
            appendEscapedControl(text, language, name.substr(0, control));
        } else {
            if (marked.find(name.front()) != std::string_view::npos) { text += '\\'; }
            text += name.front();
        }
        name.remove_prefix(std::max<size_t>(control, 1));
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
    return escaped(language, name, "\"\\");
}

std::string commentText(TargetLanguage language, std::string_view name) {
    std::string text = escaped(language, name, "");
    if (language == TargetLanguage::ObjectiveC) {
        // A backslash at the end, or before blanks there, joins the next line to the comment. A
        // second backslash would do no better.
        const size_t last = text.find_last_not_of(' ');
        if (last != std::string::npos && text[last] == '\\') { text.replace(last, 1, "\\134"); }
    }
    return text;
}

}  // namespace tweenery
