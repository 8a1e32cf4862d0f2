#include "base/point_text.h"

#include <charconv>
#include <cmath>

#include "base/number_text.h"

namespace tweenery {
namespace {

class Scanner {
 public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool take(char expected) {
        skipSpace();
        if (m_rest.empty() || m_rest.front() != expected) { return false; }
        m_rest.remove_prefix(1);
        return true;
    }

    bool takeNumber(double& number) {
        skipSpace();
        if (m_rest.size() > 1 && m_rest[0] == '+' && m_rest[1] != '-') { m_rest.remove_prefix(1); }
        const auto [end, error] =
            std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), number);
        if (error != std::errc() || !std::isfinite(number)) { return false; }
        m_rest.remove_prefix(static_cast<size_t>(end - m_rest.data()));
        return true;
    }

    bool atEnd() {
        skipSpace();
        return m_rest.empty();
    }

 private:
    std::string_view m_rest;

    void skipSpace() {
        const size_t first = m_rest.find_first_not_of(" \t\r\n");
        m_rest.remove_prefix(std::min(first, m_rest.size()));
    }
};

}  // namespace

std::optional<QPointF> pointFromText(std::string_view text) {
    Scanner scanner(text);
    double x = 0;
    double y = 0;
    if (scanner.take('{') && scanner.takeNumber(x) && scanner.take(',') && scanner.takeNumber(y) &&
        scanner.take('}') && scanner.atEnd()) {
        return QPointF(x, y);
    }
    return std::nullopt;
}

std::string textFromPoint(QPointF point) {
    return '{' + shortestText(point.x()) + ", " + shortestText(point.y()) + '}';
}

}  // namespace tweenery
