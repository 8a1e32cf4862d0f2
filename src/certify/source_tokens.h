#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tweenery {

/// A word of generated source text, in Objective-C or in Swift.
struct SourceToken {
    enum class Kind { Name, Number, String, Mark, End };
    Kind kind = Kind::End;
    /// Of a string its bytes, escapes resolved; of a mark its one character.
    std::string text;

    bool is(std::string_view expected) const { return kind != Kind::String && text == expected; }
};

/// Without comments and lines for the preprocessor; ends with an End.
std::vector<SourceToken> sourceTokens(std::string_view source);

}  // namespace tweenery
