#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <vector>

namespace tweenery {

/// Writes JSON text, value by value, without a tree in memory, so that numbers come out with the
/// digits that are wanted and whole projects in one go. Lists and objects go over several lines
/// unless asked for otherwise; inside one on a line everything stays on that line.
class JsonWriter {
 public:
    enum class Layout { Lines, OneLine };
    enum class Keys { AsGiven, Sorted };  // Sorted: AssertionFailure unless they come sorted

    /// What is written will stand `depth` levels deep in another text.
    explicit JsonWriter(Keys keys = Keys::AsGiven, size_t depth = 0)
        : m_keys(keys), m_depth(depth) {}

    JsonWriter& beginObject(Layout layout = Layout::Lines) { return begin('{', layout); }
    JsonWriter& endObject() { return end('}'); }
    JsonWriter& beginArray(Layout layout = Layout::Lines) { return begin('[', layout); }
    JsonWriter& endArray() { return end(']'); }
    JsonWriter& key(std::string_view name);

    JsonWriter& string(const QString& value);  // null strings as null
    JsonWriter& boolean(bool value) { return raw(value ? "true" : "false"); }
    JsonWriter& integer(int64_t value);
    /// Nine significant digits, which tell all 32-bit numbers apart; null if not finite.
    JsonWriter& single(float value);
    /// Seventeen significant digits, which tell all 64-bit numbers apart; null if not finite.
    JsonWriter& real(double value);
    JsonWriter& null() { return raw("null"); }
    /// Two reals in a list.
    JsonWriter& pair(double x, double y);

    /// A whole value that was written for this depth.
    JsonWriter& value(std::string_view json) { return raw(json); }

    /// The text. Everything begun must have ended.
    std::string takeValue();
    /// The same with a line break at its end.
    std::string take() { return takeValue() + '\n'; }

 private:
    struct Level {
        Layout layout;
        bool isEmpty = true;
        std::string lastKey;
    };

    Keys m_keys;
    size_t m_depth;
    std::string m_text;
    std::vector<Level> m_levels;
    bool m_followsKey = false;

    JsonWriter& begin(char bracket, Layout layout);
    JsonWriter& end(char bracket);
    JsonWriter& raw(std::string_view text);
    JsonWriter& number(double value, int digits);
    void beginValue();
    void breakLine();
};

}  // namespace tweenery
