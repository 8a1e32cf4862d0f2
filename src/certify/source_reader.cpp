#include "certify/source_reader.h"

namespace tweenery {

bool SourceReader::takeIf(std::string_view text) {
    if (!peek().is(text)) { return false; }
    ++m_at;
    return true;
}

void SourceReader::expect(std::string_view text) {
    if (!takeIf(text)) {
        throw UnreadableSource("'" + std::string(text) + "' is missing before '" + peek().text +
                               "'");
    }
}

void SourceReader::skipTo(std::string_view open, std::string_view close) {
    for (int depth = 1; depth > 0 && !isAtEnd();) {
        const SourceToken token = take();
        depth += token.is(open) ? 1 : token.is(close) ? -1 : 0;
    }
}

void SourceReader::readBlock(Words& statements) {
    while (!takeIf("}")) {
        if (isAtEnd()) { throw UnreadableSource("a block has no end"); }
        readStatement(statements);
    }
}

bool SourceReader::dependsOnProject(const std::string& name) {
    return name.starts_with("setupHierarchy") || name.starts_with("add") ||
           (name.starts_with("remove") && name != "removeAllAnimations()");
}

std::vector<MethodCalls> SourceReader::read() {
    std::vector<MethodCalls> methods;
    while (!isAtEnd()) {
        std::string name;
        if (!beginMethod(name)) {
            take();
            continue;
        }
        if (!dependsOnProject(name)) {
            skipTo("{", "}");
            continue;
        }
        MethodCalls& method = methods.emplace_back(MethodCalls{name, {}});
        const size_t start = m_at;
        try {
            readBlock(method.statements);
        } catch (const UnreadableSource& error) {
            method.statements.push_back(std::string("cannot be read: ") + error.what());
            m_at = start;
            skipTo("{", "}");
        }
    }
    return methods;
}

std::string SourceReader::call(const std::string& name, const Words& arguments) {
    std::string text = name + '(';
    for (size_t i = 0; i < arguments.size(); ++i) {
        text += (i > 0 ? ", " : "") + arguments[i];
    }
    return text + ')';
}

std::string SourceReader::member(const std::string& object, const std::string& name) {
    return object == "self" ? name : object + '.' + name;
}

}  // namespace tweenery
