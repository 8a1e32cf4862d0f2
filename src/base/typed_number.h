#pragma once

#include <QString>
#include <optional>

namespace tweenery {

/// What a field counts in.
enum class NumberUnit { Points, Percent, Degrees };

/// What a text in a field means: a number, or why it is none.
struct TypedNumber {
    std::optional<double> number;  // in the field's unit, to two decimals
    QString reason;                // a sentence for the user; empty with a number
};

/// Understands numbers with a point or a comma, the field's own unit behind them, and arithmetic
/// with + - * / and parentheses. In a field of another unit "%" is of what the field holds, which
/// is `present`; none where it holds several values.
TypedNumber typedNumber(const QString& text, NumberUnit unit, std::optional<double> present);

/// At most two decimals, without those that are zero.
QString typedNumberText(double number);

}  // namespace tweenery
