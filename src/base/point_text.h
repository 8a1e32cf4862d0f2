#pragma once

#include <QPointF>
#include <optional>
#include <string>
#include <string_view>

namespace tweenery {

/// Points and sizes as archives hold them: "{x, y}".

/// `text` read as two finite numbers in braces, with white space wherever it does no harm;
/// nullopt for anything else.
std::optional<QPointF> pointFromText(std::string_view text);

/// The text of a point: each coordinate by the fewest digits that read back equal (at most 17),
/// with an exponent only for very large and very small ones. The numbers must be finite.
std::string textFromPoint(QPointF point);

}  // namespace tweenery
