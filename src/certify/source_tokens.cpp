#include "certify/source_tokens.h"

#include <cctype>

namespace tweenery {

namespace {

bool isOfName(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || std::isalnum(byte) || character == '_';
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

void appendUtf8(std::string& out, unsigned long code) {
    const auto add = [&](unsigned long byte) { out += static_cast<char>(byte); };
    if (code < 0x80) {
        add(code);
    } else if (code < 0x800) {
        add(0xC0 | code >> 6);
        add(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
        add(0x80 | (code & 0x3F));
    } else {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
        add(0x80 | (code & 0x3F));
    }
}

class Tokenizer {
 public:
    explicit Tokenizer(std::string_view source) : m_rest(source) {}

    std::vector<SourceToken> take() {
        while (skipBlanks()) {
            m_tokens.push_back(next());
        }
        m_tokens.emplace_back();
        return std::move(m_tokens);
    }

 private:
    std::string_view m_rest;
    std::vector<SourceToken> m_tokens;

    void skipLine() { m_rest.remove_prefix(std::min(m_rest.find('\n'), m_rest.size())); }

    // False at the end.
    bool skipBlanks() {
        while (!m_rest.empty()) {
            if (std::isspace(static_cast<unsigned char>(m_rest.front()))) {
                m_rest.remove_prefix(1);
            } else if (m_rest.starts_with("//") || beginsDirective()) {
                skipLine();
            } else {
                return true;
            }
        }
        return false;
    }
    // In Swift the same mark stands before names.
    bool beginsDirective() const {
        return m_rest.starts_with("#import") || m_rest.starts_with("#pragma");
    }

    SourceToken next() {
        using enum SourceToken::Kind;
        const char first = m_rest.front();
        if (first == '"') { return {String, takeString()}; }
        if (isDigit(first)) { return {Number, takeNumber()}; }
        if (isOfName(first)) { return {Name, takeWhile(isOfName)}; }
        m_rest.remove_prefix(1);
        return {Mark, std::string(1, first)};
    }
    template <class Predicate>
    std::string takeWhile(Predicate predicate) {
        size_t length = 0;
        while (length < m_rest.size() && predicate(m_rest[length])) {
            ++length;
        }
        std::string text(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return text;
    }
    std::string takeNumber() {
        std::string text = takeWhile([](char c) { return isDigit(c) || c == '.' || c == 'e'; });
        // An exponent's sign belongs to it.
        if (text.back() == 'e' && !m_rest.empty()) {
            text += m_rest.front();
            m_rest.remove_prefix(1);
            text += takeWhile(isDigit);
        }
        return text;
    }
    std::string takeString() {
        std::string text;
        m_rest.remove_prefix(1);
        while (!m_rest.empty() && m_rest.front() != '"') {
            const char character = m_rest.front();
            m_rest.remove_prefix(1);
            if (character == '\\') {
                appendEscaped(text);
            } else {
                text += character;
            }
        }
        if (!m_rest.empty()) { m_rest.remove_prefix(1); }
        return text;
    }
    // Octal digits in Objective-C, hexadecimal ones in braces in Swift.
    void appendEscaped(std::string& text) {
        if (m_rest.empty()) { return; }
        const char mark = m_rest.front();
        if (isDigit(mark)) {
            const std::string digits(m_rest.substr(0, 3));
            text += static_cast<char>(std::stoul(digits, nullptr, 8));
            m_rest.remove_prefix(digits.size());
            return;
        }
        m_rest.remove_prefix(1);
        if (mark == 'u' && m_rest.starts_with('{')) {
            const size_t end = m_rest.find('}');
            if (end == std::string_view::npos) { return; }
            appendUtf8(text, std::stoul(std::string(m_rest.substr(1, end - 1)), nullptr, 16));
            m_rest.remove_prefix(end + 1);
        } else {
            text += mark == 'n' ? '\n' : mark == 'r' ? '\r' : mark == 't' ? '\t' : mark;
        }
    }
};

}  // namespace

std::vector<SourceToken> sourceTokens(std::string_view source) {
    return Tokenizer(source).take();
}

}  // namespace tweenery
