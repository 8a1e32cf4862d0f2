#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace tweenery {

/// The language that a run writes. The first Swift is that of 2014, which no compiler of today
/// takes; the current one is for Swift 5 and 6.
enum class TargetLanguage { ObjectiveC, FirstSwift, CurrentSwift };

/// What a placeholder of a source template takes.
using SourceArgument = std::variant<std::string_view, int32_t, double>;

namespace source_text_detail {

enum class Placeholder { Text, Integer, Number };

template <class T>
constexpr Placeholder placeholderFor() {
    if constexpr (std::is_convertible_v<T, std::string_view>) {
        return Placeholder::Text;
    } else if constexpr (std::is_same_v<T, int32_t>) {
        return Placeholder::Integer;
    } else {
        static_assert(std::is_floating_point_v<T>, "text, int32_t or a floating-point number");
        return Placeholder::Number;
    }
}

template <class T>
SourceArgument toArgument(const T& value) {
    if constexpr (placeholderFor<T>() == Placeholder::Text) {
        return std::string_view(value);
    } else if constexpr (placeholderFor<T>() == Placeholder::Integer) {
        return value;
    } else {
        return static_cast<double>(value);
    }
}

// Not constexpr on purpose: reaching it while a template is checked stops the compilation.
inline void placeholdersDoNotMatchTheArguments() {}

}  // namespace source_text_detail

/// A template of generated text: "%@" takes UTF-8 text, "%d" an int32_t, "%0.1f" to "%0.9f" a
/// number with that many decimals, "%%" is a percent sign. Checked against its arguments when it is
/// compiled.
template <class... Args>
class SourceTemplate {
 public:
    template <std::convertible_to<std::string_view> Text>
    consteval SourceTemplate(const Text& text) : m_text(text) {
        using namespace source_text_detail;
        const Placeholder expected[] = {placeholderFor<Args>()..., Placeholder::Text};
        size_t used = 0;
        for (size_t i = 0; i < m_text.size(); ++i) {
            if (m_text[i] != '%') { continue; }
            ++i;
            if (m_text.substr(i, 1) == "%") { continue; }
            Placeholder found = Placeholder::Text;
            if (m_text.substr(i, 1) == "d") {
                found = Placeholder::Integer;
            } else if (m_text.substr(i, 2) == "0." && m_text.substr(i + 3, 1) == "f") {
                found = Placeholder::Number;
                i += 3;
            } else if (m_text.substr(i, 1) != "@") {
                placeholdersDoNotMatchTheArguments();
            }
            if (used == sizeof...(Args) || found != expected[used]) {
                placeholdersDoNotMatchTheArguments();
            }
            ++used;
        }
        if (used != sizeof...(Args)) { placeholdersDoNotMatchTheArguments(); }
    }

    std::string_view text() const { return m_text; }

 private:
    std::string_view m_text;
};

/// Appends `text` with its placeholders replaced by `arguments`, in order.
void appendFilled(std::string& out, std::string_view text,
                  std::initializer_list<SourceArgument> arguments);

/// Appends the template, filled. Floats are widened before they are printed.
template <class... Args>
void append(std::string& out, SourceTemplate<std::type_identity_t<Args>...> text,
            const Args&... arguments) {
    appendFilled(out, text.text(), {source_text_detail::toArgument(arguments)...});
}

/// A length as the templates' "%d" prints it: cut toward zero, and held within 32 bits.
int32_t cutToInt32(double value);

/// `name` as it stands between the quotes of a string literal: quotes, backslashes and control
/// characters are escaped as the language has it, and so is all that would not show.
std::string literalText(TargetLanguage language, std::string_view name);
/// `name` as it stands behind "//" or in a section mark: what would end the line, or would
/// not show, is escaped.
std::string commentText(TargetLanguage language, std::string_view name);

}  // namespace tweenery
