#pragma once

#include <stdexcept>

#include "certify/source_calls.h"
#include "certify/source_tokens.h"

namespace tweenery {

/// Thrown where generated source is written otherwise than we read it.
struct UnreadableSource : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What the readers of both languages share: tokens, and how expressions are written so that both
/// come out alike. Optionals, casts and "self" are left out.
class SourceReader {
 public:
    explicit SourceReader(std::string_view source) : m_tokens(sourceTokens(source)) {}
    virtual ~SourceReader() = default;

    std::vector<MethodCalls> read();

 protected:
    using TokenKind = SourceToken::Kind;
    using Words = std::vector<std::string>;

    /// Whether a method begins here; then it is read up to the mark that opens its body, and
    /// `name` says what it is called.
    virtual bool beginMethod(std::string& name) = 0;
    /// Reads one statement into the list; several of one language may be one of the other.
    virtual void readStatement(Words& statements) = 0;

    const SourceToken& peek(size_t ahead = 0) const {
        return m_tokens[std::min(m_at + ahead, m_tokens.size() - 1)];
    }
    SourceToken take() { return m_tokens[std::min(m_at++, m_tokens.size() - 1)]; }
    bool takeIf(std::string_view text);
    void expect(std::string_view text);
    bool isAtEnd() const { return peek().kind == SourceToken::Kind::End; }
    void readBlock(Words& statements);
    /// Past the bracket that closes the one just taken.
    void skipTo(std::string_view open, std::string_view close);

    static std::string quoted(const std::string& text) { return '"' + text + '"'; }
    static std::string call(const std::string& name, const Words& arguments);
    static std::string member(const std::string& object, const std::string& name);

 private:
    std::vector<SourceToken> m_tokens;
    size_t m_at = 0;

    static bool dependsOnProject(const std::string& name);
};

}  // namespace tweenery
