// Generated Swift, read.

#include <map>

#include "certify/source_reader.h"

namespace tweenery {

namespace {

// Behind a point that nothing stands before.
const std::map<std::string, std::string> kImplicitMembers = {
    {"Normal", "UIControlStateNormal"},
    {"Custom", "UIButtonTypeCustom"},
    {"Center", "UIViewContentModeCenter"},
};
const std::map<std::string, std::string> kNames = {
    {"completionBlock", "completion"},
    {"animationCompletions", "completions"},
};

class SwiftReader final : public SourceReader {
 public:
    using SourceReader::SourceReader;

 protected:
    // "func addHop(#removedOnCompletion: Bool, completion: ((Bool) -> Void)?) {"
    bool beginMethod(std::string& name) override {
        if (!peek().is("func")) { return false; }
        take();
        const std::string first = take().text;
        expect("(");
        Words takes;
        bool isName = true;
        for (int depth = 1; depth > 0 && !isAtEnd();) {
            const SourceToken token = take();
            depth += token.is("(") ? 1 : token.is(")") ? -1 : 0;
            if (token.is(",") && depth == 1) {
                isName = true;
            } else if (isName && token.kind == TokenKind::Name) {
                takes.push_back(token.text);
                isName = false;
            }
        }
        while (!peek().is("{") && !isAtEnd()) {
            take();
        }
        if (!takeIf("{")) { return false; }
        name = call(first, takes);
        return true;
    }

    void readStatement(Words& statements) override {
        if (takeIf(";")) { return; }
        if (takeIf("if")) { return readIf(statements); }
        // An element may be called so, too.
        const bool declares = peek(1).kind == TokenKind::Name && (takeIf("let") || takeIf("var"));
        std::string left = expression();
        if (declares && takeIf(":")) {
            skipType();
            // Without a value it is set later.
            if (!peek().is("=")) { return; }
        }
        if (takeIf("=")) { left += " = " + expression(); }
        takeIf(";");
        statements.push_back(left);
    }

 private:
    std::map<std::string, std::string> m_bound;  // by "if let"

    // What is bound for a path of an image stands in its place; a completion is asked for alone.
    void readIf(Words& statements) {
        expect("let");
        const std::string name = take().text;
        expect("=");
        const std::string value = expression();
        expect("{");
        if (value == "completion") { statements.push_back("if completion"); }
        m_bound[name] = value;
        readBlock(statements);
        m_bound.erase(name);
        if (value == "completion") { statements.push_back("end"); }
    }

    // "[String : CALayer]!" and "NSImage!"
    void skipType() {
        if (takeIf("[")) {
            skipTo("[", "]");
        } else {
            take();
        }
        if (!takeIf("!")) { takeIf("?"); }
    }

    std::string expression() {
        std::string left = operand();
        while (true) {
            if (takeIf("/")) {
                left += " / " + operand();
            } else if (takeIf("as")) {
                skipType();
            } else if (peek().is("?") && !isChaining()) {
                take();
                const std::string yes = expression();
                expect(":");
                left += " ? " + yes + " : " + expression();
            } else {
                return left;
            }
        }
    }

    // "?." and "?[" go on with what stands before; behind other question marks a choice begins.
    bool isChaining() const { return peek(1).is("."); }

    std::string operand() {
        std::string value = primary();
        while (true) {
            if (takeIf("!") || (peek().is("?") && isChaining() && takeIf("?"))) { continue; }
            if (takeIf(".")) {
                value = member(value, nameOf(take().text));
            } else if (takeIf("[")) {
                value += '[' + expression() + ']';
                expect("]");
            } else if (takeIf("(")) {
                value = called(value, argumentsToEnd());
            } else {
                return value;
            }
        }
    }

    std::string nameOf(const std::string& name) const {
        const auto bound = m_bound.find(name);
        if (bound != m_bound.end()) { return bound->second; }
        const auto known = kNames.find(name);
        return known == kNames.end() ? name : known->second;
    }

    // A call without arguments reads as a property, unless it makes an object.
    static std::string called(const std::string& name, const Words& arguments) {
        const bool makes = name.find('.') == std::string::npos;
        return arguments.empty() && !makes ? name : call(name, arguments);
    }

    static bool isGeometry(const std::string& name) {
        return name == "CGRect" || name == "CGPoint";
    }

    // Labelled but for those of rectangles and points, which the other language has in order.
    Words argumentsToEnd() {
        const bool isOfGeometry = isGeometry(m_called);
        Words arguments;
        while (!takeIf(")")) {
            std::string label;
            if (peek().kind == TokenKind::Name && peek(1).is(":")) {
                label = take().text + ": ";
                take();
            }
            const std::string value = expression();
            // The selector of an observer is a string here.
            arguments.push_back(isOfGeometry ? value : label + value);
            if (!peek().is(")")) { expect(","); }
        }
        return arguments;
    }

    std::string primary() {
        m_called.clear();
        if (takeIf("-")) { return '-' + primary(); }
        if (takeIf("[")) { return list(); }
        if (takeIf(".")) { return implicitMember(take().text); }
        if (takeIf("(")) {
            std::string inner = expression();
            expect(")");
            return inner;
        }
        const SourceToken token = take();
        switch (token.kind) {
            case TokenKind::Number:
                return token.text;
            case TokenKind::String:
                return quoted(token.text);
            case TokenKind::Name:
                m_called = token.text;
                return nameOf(token.text);
            default:
                throw UnreadableSource("'" + token.text + "' is no value");
        }
    }

    static std::string implicitMember(const std::string& name) {
        const auto found = kImplicitMembers.find(name);
        return found == kImplicitMembers.end() ? '.' + name : found->second;
    }

    // A list, or the empty dictionary.
    std::string list() {
        if (takeIf(":")) {
            expect("]");
            return "dictionary";
        }
        Words values;
        while (!takeIf("]")) {
            values.push_back(expression());
            if (!peek().is("]")) { expect(","); }
        }
        return call("list", values);
    }

    std::string m_called;  // the name that a call may follow
};

}  // namespace

std::vector<MethodCalls> callsOfSwift(std::string_view source) {
    return SwiftReader(source).read();
}

}  // namespace tweenery
