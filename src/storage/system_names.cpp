#include "storage/system_names.h"

#include <sys/stat.h>

#include <algorithm>

#include "base/errors.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QString textOfSystemName(const QByteArray& name) {
    QString text;
    for (qsizetype at = 0; at < name.size();) {
        // The longest piece that is UTF-8, found by trying: names are short.
        qsizetype length = std::min<qsizetype>(4, name.size() - at);
        while (length > 0 && !name.sliced(at, length).isValidUtf8()) {
            --length;
        }
        if (length == 0) {
            text += QChar(char16_t(kByteOfName + static_cast<unsigned char>(name[at++])));
        } else {
            text += QString::fromUtf8(name.sliced(at, length));
            at += length;
        }
    }
    return text;
}

namespace {

bool isByteOfName(char16_t unit) {
    return unit >= kByteOfName + 0x80 && unit <= kByteOfName + 0xff;
}

}  // namespace

QByteArray systemPath(const QString& path) {
    const auto fail = [&] { throw InputError(printableName(path), u"is no path"_s); };
    if (path.isEmpty() || path.contains(QChar(0))) { fail(); }
    if (path.isValidUtf16()) { return path.toUtf8(); }
    QByteArray bytes;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const QChar unit = path[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < path.size() && path[i + 1].isLowSurrogate();
        if (isPair) {
            bytes += QStringView(path).sliced(i++, 2).toUtf8();
        } else if (isByteOfName(unit.unicode())) {
            bytes += static_cast<char>(unit.unicode() - kByteOfName);
        } else if (unit.isSurrogate()) {
            fail();
        } else {
            bytes += QString(unit).toUtf8();
        }
    }
    return bytes;
}

namespace {

QString escaped(uint unit) {
    return u"\\x"_s + QString::number(unit, 16).rightJustified(2, u'0');
}

}  // namespace

QString printableName(const QString& name) {
    return visibleText(name);
}

QString printableName(std::string_view name) {
    const QByteArray bytes = QByteArray::fromRawData(name.data(), qsizetype(name.size()));
    if (const QString text = QString::fromUtf8(bytes); text.toUtf8() == bytes) {
        return printableName(text);
    }
    QString text;
    for (const char c : name) {
        const auto unit = static_cast<unsigned char>(c);
        text += isInvisible(unit) || unit > 0x7f ? escaped(unit) : QString(QLatin1Char(c));
    }
    return text;
}

PathKind kindOfPath(const QString& path) {
    const QByteArray bytes = systemPath(path);
    struct stat status;
    if (::stat(bytes.constData(), &status) != 0) {
        return ::lstat(bytes.constData(), &status) == 0 ? PathKind::Other : PathKind::Nothing;
    }
    if (S_ISDIR(status.st_mode)) { return PathKind::Directory; }
    return S_ISREG(status.st_mode) ? PathKind::File : PathKind::Other;
}

}  // namespace tweenery
