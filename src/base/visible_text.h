#pragma once

#include <QString>

namespace tweenery {

/// True for a character that shows nothing, or that changes how the text around it shows: controls,
/// marks of direction, joiners, line separators, letters without a glyph. Whether a blank or a
/// variant of an emoji, which have their place in names, is not for this to say.
bool isInvisible(char32_t character);

/// `text` with its invisible characters, but for those in `kept`, as \xNN or \u{NNNN}.
QString visibleText(const QString& text, QStringView kept = {});

}  // namespace tweenery
