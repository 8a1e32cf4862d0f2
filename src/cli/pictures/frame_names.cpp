#include "cli/pictures/frame_names.h"

#include <QRegularExpression>
#include <algorithm>

#include "base/visible_text.h"
#include "cli/pictures/movie_format.h"
#include "cli/support/verb.h"

using namespace Qt::StringLiterals;

namespace tweenery {

FrameNames::FrameNames(const QString& pattern) {
    if (!pattern.endsWith(u".png"_s, Qt::CaseInsensitive) && !isMoviePath(pattern)) {
        throw UsageError{
            u"--out takes the name of a PNG, APNG or GIF file, not '%1'"_s.arg(pattern)};
    }
    static const QRegularExpression placeholder(u"%(?:0?([0-9]))?(.?)"_s);
    qsizetype end = 0;
    for (auto matches = placeholder.globalMatch(pattern); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString kind = match.captured(2);
        const bool hasDigits = match.capturedLength() > 2;
        if (kind != u"d"_s && (hasDigits || !u"ta%"_s.contains(kind) || kind.isEmpty())) {
            throw UsageError{
                u"--out knows %d, %04d, %t, %a and %%, not '%1'"_s.arg(match.captured())};
        }
        m_pieces.push_back({pattern.mid(end, match.capturedStart() - end), kind.front(),
                            match.captured(1).toLongLong()});
        end = match.capturedEnd();
    }
    m_pieces.push_back({pattern.mid(end), QChar(), 0});
}

bool FrameNames::tellsFramesApart() const {
    return std::any_of(m_pieces.begin(), m_pieces.end(), [](const Piece& piece) {
        return piece.placeholder == u'd' || piece.placeholder == u't';
    });
}

QString FrameNames::pathOf(size_t number, int32_t timeInMS, const QString& name) const {
    QString path;
    for (const Piece& piece : m_pieces) {
        path += piece.text;
        if (piece.placeholder == u'd') {
            path += QString::number(number).rightJustified(piece.fewestDigits, u'0');
        } else if (piece.placeholder == u't') {
            path += QString::number(timeInMS);
        } else if (piece.placeholder == u'a') {
            path += name;
        } else if (piece.placeholder == u'%') {
            path += u'%';
        }
    }
    return path;
}

QString nameForFile(const QString& name) {
    constexpr qsizetype longest = 80;
    QString fit;
    for (const QChar c : name.left(longest)) {
        const bool isUnfit =
            c == u'/' || c == u'\\' || (!c.isSurrogate() && isInvisible(c.unicode()));
        fit += isUnfit ? u'_' : c;
    }
    if (!fit.isEmpty() && fit.back().isHighSurrogate()) { fit.chop(1); }
    if (fit.isEmpty()) { return u"_"_s; }
    if (fit.front() == u'.' || fit.front() == u'-') { fit.front() = u'_'; }
    return fit;
}

}  // namespace tweenery
