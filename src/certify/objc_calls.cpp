// Generated Objective-C, read.

#include <map>

#include "certify/source_reader.h"

namespace tweenery {

namespace {

const std::map<std::string, std::string> kWords = {
    {"YES", "true"},
    {"NO", "false"},
    {"NULL", "nil"},
    {"HUGE_VALF", "HUGE"},
    {"completionBlock", "completion"},
    {"animationCompletions", "completions"},
    {"CGRectMake", "CGRect"},
    {"CGPointMake", "CGPoint"},
};

// Labels of arguments that the other language calls otherwise.
const std::map<std::string, std::string> kLabels = {
    {"andFillMode", "fillMode"},
    {"andRemoveOnCompletion", "removedOnCompletion"},
    {"completion", ""},
};

// Class methods that are initializers there: by their first keyword, the first argument's label.
const std::map<std::string, std::string> kInitializers = {
    {"animationWithKeyPath", "keyPath"},
    {"functionWithName", "name"},
    {"functionWithControlPoints", "controlPoints"},
    {"bundleForClass", "forClass"},
    {"imageWithContentsOfFile", "contentsOfFile"},
    {"initWithContentsOfFile", "contentsOfFile"},
    {"imageNamed", "named"},
};

std::string lowered(std::string text) {
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

class ObjectiveCReader final : public SourceReader {
 public:
    using SourceReader::SourceReader;

 protected:
    // "- (void)addHopWithBeginTime:(CFTimeInterval)beginTime andFillMode:..." up to the brace.
    bool beginMethod(std::string& name) override {
        if (!peek().is("-") || !peek(1).is("(")) { return false; }
        take();
        take();
        skipTo("(", ")");
        std::vector<std::string> keywords;
        bool takesArguments = false;
        while (!peek().is("{") && !peek().is(";") && !isAtEnd()) {
            keywords.push_back(take().text);
            if (!takeIf(":")) { continue; }
            takesArguments = true;
            if (takeIf("(")) { skipTo("(", ")"); }
            take();
        }
        if (!takeIf("{")) { return false; }
        name = nameOf(keywords, takesArguments);
        return true;
    }

    void readStatement(Words& statements) override {
        if (takeIf(";")) { return; }
        if (takeIf("if")) {
            expect("(");
            const std::string condition = expression();
            expect(")");
            expect("{");
            statements.push_back("if " + condition);
            readBlock(statements);
            statements.push_back("end");
            return;
        }
        skipDeclaredType();
        std::string left = expression();
        if (takeIf("=")) { left += " = " + expression(); }
        expect(";");
        // Swift makes that table where it declares it.
        if (left.find("NSMapTable") == std::string::npos) { statements.push_back(left); }
    }

 private:
    static std::string nameOf(const std::vector<std::string>& keywords, bool takesArguments) {
        std::string first = keywords.front();
        const auto cut = [&](std::string_view tail) {
            if (!takesArguments || !first.ends_with(tail)) { return false; }
            first.resize(first.size() - tail.size());
            return true;
        };
        Words takes;
        if (cut("WithCompletion")) { takes.push_back("completion"); }
        if (cut("AndRemoveOnCompletion")) { takes.push_back("removedOnCompletion"); }
        if (takesArguments && first.ends_with("WithBeginTime")) { takes.push_back("beginTime"); }
        for (size_t i = 1; i < keywords.size(); ++i) {
            const auto found = kLabels.find(keywords[i]);
            if (found == kLabels.end()) { continue; }
            takes.push_back(found->second.empty() ? found->first : found->second);
        }
        return call(first, takes);
    }

    // "UIView *view = ..." and "float x = ...".
    void skipDeclaredType() {
        if (peek().kind != TokenKind::Name) { return; }
        const bool isPointer = peek(1).is("*") && peek(2).kind == TokenKind::Name;
        const bool isPlain = peek(1).kind == TokenKind::Name;
        if (isPointer || isPlain) { take(); }
        if (isPointer) { take(); }
    }

    std::string expression() {
        std::string left = operand();
        while (true) {
            if (takeIf("/")) {
                left += " / " + operand();
            } else if (takeIf("?")) {
                const std::string yes = expression();
                expect(":");
                left += " ? " + yes + " : " + expression();
            } else {
                return left;
            }
        }
    }

    std::string operand() {
        std::string value = primary();
        while (true) {
            if (takeIf(".")) {
                value = member(value, take().text);
            } else if (peek().is("[")) {
                take();
                value += '[' + expression() + ']';
                expect("]");
            } else {
                return value;
            }
        }
    }

    std::string primary() {
        if (takeIf("[")) { return message(); }
        if (takeIf("@")) { return literal(); }
        if (takeIf("-")) { return '-' + primary(); }
        if (takeIf("(")) {
            // A cast: (id) or (__bridge id).
            skipTo("(", ")");
            return operand();
        }
        const SourceToken token = take();
        if (token.kind == TokenKind::Number) { return token.text; }
        if (token.kind != TokenKind::Name) {
            throw UnreadableSource("'" + token.text + "' is no value");
        }
        const auto known = kWords.find(token.text);
        const std::string name = known == kWords.end() ? token.text : known->second;
        return takeIf("(") ? call(name, expressionsTo(")")) : name;
    }

    Words expressionsTo(std::string_view end) {
        Words values;
        while (!takeIf(end)) {
            values.push_back(expression());
            if (!peek().is(end)) { expect(","); }
        }
        return values;
    }

    // Behind an "@": a string, a list, a boxed number or a selector.
    std::string literal() {
        if (peek().kind == TokenKind::String) { return quoted(take().text); }
        if (takeIf("[")) { return call("list", expressionsTo("]")); }
        if (takeIf("selector")) {
            expect("(");
            std::string name;
            while (!takeIf(")")) {
                name += take().text;
            }
            return quoted(name);
        }
        expect("(");
        std::string number = expression();
        expect(")");
        return number;
    }

    // Behind the bracket that opens it.
    std::string message() {
        const std::string receiver = operand();
        const std::string first = peek().is(":") ? std::string() : take().text;
        if (takeIf("]")) { return unaryMessage(receiver, first); }
        std::vector<std::string> labels{first};
        Words values;
        while (!takeIf("]")) {
            if (!values.empty()) { labels.push_back(peek().is(":") ? std::string() : take().text); }
            expect(":");
            values.push_back(expression());
        }
        return keywordMessage(receiver, labels, values);
    }

    static bool isClass(const std::string& name) {
        return name.find('.') == std::string::npos && name.find('(') == std::string::npos &&
               name.size() > 2 && std::isupper(static_cast<unsigned char>(name[0])) &&
               std::isupper(static_cast<unsigned char>(name[1]));
    }

    static std::string unaryMessage(const std::string& receiver, const std::string& name) {
        if (name == "class") { return member(receiver, "dynamicType"); }
        if (name == "dictionary") { return "dictionary"; }
        if (name == "alloc") { return receiver; }
        const bool makes = name == "new" || name == "layer";
        if (makes && isClass(receiver)) { return receiver + "()"; }
        return member(receiver, name);
    }

    static std::string keywordMessage(const std::string& receiver,
                                      const std::vector<std::string>& labels, const Words& values) {
        const std::string& first = labels.front();
        if (first.starts_with("set") && labels.size() == 1) {
            return member(receiver, lowered(first.substr(3))) + " = " + values.front();
        }
        if (receiver == "completionBlocksByAnimation" && first == "setObject") {
            return "completions[" + values[1] + "] = " + values[0];
        }
        const auto initializer = kInitializers.find(first);
        const bool makes = initializer != kInitializers.end() && isClass(receiver);
        Words arguments;
        for (size_t i = 0; i < values.size(); ++i) {
            std::string label = i > 0 ? labels[i] : makes ? initializer->second : std::string();
            const auto known = kLabels.find(label);
            if (known != kLabels.end()) { label = known->second; }
            arguments.push_back(label.empty() ? values[i] : label + ": " + values[i]);
        }
        return call(makes ? receiver : member(receiver, first), arguments);
    }
};

}  // namespace

std::vector<MethodCalls> callsOfObjectiveC(std::string_view source) {
    return ObjectiveCReader(source).read();
}

}  // namespace tweenery
