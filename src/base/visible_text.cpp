#include "base/visible_text.h"

#include <QChar>
#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

struct Range {
    char32_t first, last;
};

// Unicode's Default_Ignorable_Code_Point, without the categories that isInvisible() asks for and
// without the variation selectors of emoji (U+FE00 to U+FE0F).
constexpr Range kIgnorable[] = {
    {0x034f, 0x034f}, {0x115f, 0x1160}, {0x17b4, 0x17b5}, {0x180b, 0x180f},   {0x2065, 0x2065},
    {0x3164, 0x3164}, {0xffa0, 0xffa0}, {0xfff0, 0xfff8}, {0xe0000, 0xe0fff},
};

QString escaped(char32_t character) {
    // A byte of a name that is no UTF-8 stands as such a half of a surrogate pair.
    const bool isByte = character >= 0xdc80 && character <= 0xdcff;
    if (isByte) { character -= 0xdc00; }
    const QString digits = QString::number(static_cast<uint>(character), 16);
    return character < 0x100 ? u"\\x"_s + digits.rightJustified(2, u'0')
                             : u"\\u{"_s + digits.rightJustified(4, u'0') + u'}';
}

}  // namespace

bool isInvisible(char32_t character) {
    if (character < 0x7f) { return character < 0x20; }
    switch (QChar::category(character)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return true;
        default:
            return std::any_of(std::begin(kIgnorable), std::end(kIgnorable),
                               [&](const Range& range) {
                                   return character >= range.first && character <= range.last;
                               });
    }
}

QString visibleText(const QString& text, QStringView kept) {
    QString visible;
    qsizetype plainFrom = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit >= 0x20 && unit < 0x7f) { continue; }
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : char32_t{unit};
        const qsizetype end = i + (isPair ? 2 : 1);
        if (isInvisible(character) && !kept.contains(text[i])) {
            visible += QStringView(text).sliced(plainFrom, i - plainFrom);
            visible += escaped(character);
            plainFrom = end;
        }
        i = end - 1;
    }
    if (plainFrom == 0) { return text; }
    return visible.append(QStringView(text).sliced(plainFrom));
}

}  // namespace tweenery
