#include "app/bookmark_file.h"

#include <QStringDecoder>
#include <QXmlStreamReader>
#include <algorithm>

#include "base/errors.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr QStringView kProgram = u"Tweenery";
constexpr QStringView kBookmarks = u"http://www.freedesktop.org/standards/desktop-bookmarks";
constexpr QStringView kMimeTypes = u"http://www.freedesktop.org/standards/shared-mime-info";
const QString kEmptyList =
    u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<xbel version=\"1.0\"\n"
    "      xmlns:bookmark=\"%1\"\n"
    "      xmlns:mime=\"%2\">\n"
    "</xbel>\n"_s.arg(kBookmarks, kMimeTypes);
const QString kFileScheme = u"file://"_s;

// Bytes and not text, since a name need not be UTF-8.
QString addressOf(const QString& path) {
    return kFileScheme + QString::fromLatin1(systemPath(path).toPercentEncoding("/"));
}

// Null for what lies on another machine, or is no file.
QString pathOfAddress(QString address) {
    const QString local = kFileScheme + u"localhost/"_s;
    if (address.startsWith(local)) { address.remove(kFileScheme.size(), u"localhost"_s.size()); }
    if (!address.startsWith(kFileScheme + u'/')) { return {}; }
    const QByteArray bytes =
        QByteArray::fromPercentEncoding(address.mid(kFileScheme.size()).toUtf8());
    return bytes.contains('\0') ? QString() : textOfSystemName(bytes);
}

QString timeText(const QDateTime& time) {
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QString registration(const QDateTime& time) {
    return u"<bookmark:application name=\"%1\" exec=\"&apos;tweenery %u&apos;\" modified=\"%2\" "
           "count=\"1\"/>"_s.arg(kProgram, timeText(time));
}

QString newEntry(const QString& path, const QDateTime& time) {
    return uR"(  <bookmark href="%1" added="%2" modified="%2" visited="%2">
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="inode/directory"/>
        <bookmark:applications>
          %3
        </bookmark:applications>
      </metadata>
    </info>
  </bookmark>
)"_s.arg(addressOf(path), timeText(time), registration(time));
}

}  // namespace

// Finds where the entries and registrations of a text stand.
class BookmarkFile::Parser {
 public:
    Parser(BookmarkFile& file, const QString& entry)
        : m_file(file), m_entry(entry), m_reader(file.m_text) {}

    void run() {
        while (!m_reader.atEnd()) {
            const auto token = m_reader.readNext();
            if (token == QXmlStreamReader::StartElement) { startElement(); }
            if (token == QXmlStreamReader::EndElement) { endElement(); }
        }
        if (m_reader.hasError()) { fail(m_reader.errorString()); }
    }

 private:
    BookmarkFile& m_file;
    const QString& m_entry;
    QXmlStreamReader m_reader;
    int m_depth = 0;
    Entry* m_current = nullptr;
    bool m_isOurs = false;

    [[noreturn]] void fail(const QString& reason) const {
        throw InputError(m_entry, u"is no list of recent files: "_s + reason);
    }
    // No attribute holds a "<".
    qsizetype startOfTag() const {
        return m_file.m_text.lastIndexOf(u'<', m_reader.characterOffset() - 1);
    }
    QString attribute(const QString& name) const {
        return m_reader.attributes().value(name).toString();
    }
    bool isRegistration() const {
        return m_current && m_reader.name() == u"application" &&
               m_reader.namespaceUri() == kBookmarks;
    }

    void checkRoot() const {
        const auto declares = [this](QStringView prefix, QStringView uri) {
            const auto declared = m_reader.namespaceDeclarations();
            return std::any_of(declared.begin(), declared.end(), [&](const auto& each) {
                return each.prefix() == prefix && each.namespaceUri() == uri;
            });
        };
        if (m_reader.name() != u"xbel" || !declares(u"bookmark", kBookmarks) ||
            !declares(u"mime", kMimeTypes)) {
            fail(u"it begins like another file"_s);
        }
    }

    void startElement() {
        ++m_depth;
        if (m_depth == 1) { checkRoot(); }
        if (m_depth == 2 && m_reader.name() == u"bookmark") {
            m_file.m_entries.push_back({{startOfTag(), 0}, pathOfAddress(attribute(u"href"_s))});
            m_current = &m_file.m_entries.back();
        } else if (isRegistration()) {
            ++m_current->registrations;
            m_isOurs = attribute(u"name"_s) == kProgram;
            if (m_isOurs) {
                m_current->ours = Span{startOfTag(), 0};
                m_current->modified =
                    QDateTime::fromString(attribute(u"modified"_s), Qt::ISODateWithMs);
            }
        }
    }

    void endElement() {
        const qsizetype end = m_reader.characterOffset();
        if (isRegistration()) {
            m_current->endOfOthers = end;
            if (std::exchange(m_isOurs, false)) { m_current->ours->end = end; }
        }
        if (m_depth == 2 && m_current) {
            m_current->span.end = end;
            m_current = nullptr;
        }
        if (m_depth == 1) {
            m_file.m_end = m_file.m_text.lastIndexOf(u"</", end);
            if (m_file.m_end < 0) { fail(u"it has no end"_s); }
        }
        --m_depth;
    }
};

BookmarkFile::BookmarkFile() : m_text(kEmptyList) {
    parse({});
}

BookmarkFile::BookmarkFile(const QByteArray& text, const QString& entry) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    m_text = decoder(text);
    if (decoder.hasError()) { throw InputError(entry, u"is not UTF-8"_s); }
    parse(entry);
}

void BookmarkFile::parse(const QString& entry) {
    m_entries.clear();
    Parser(*this, entry).run();
}

QStringList BookmarkFile::paths() const {
    std::vector<const Entry*> ours;
    for (auto entry = m_entries.rbegin(); entry != m_entries.rend(); ++entry) {
        if (entry->ours && !entry->path.isEmpty()) { ours.push_back(&*entry); }
    }
    std::stable_sort(ours.begin(), ours.end(),
                     [](const Entry* a, const Entry* b) { return a->modified > b->modified; });
    QStringList paths;
    for (const Entry* entry : ours) {
        paths << entry->path;
    }
    return paths;
}

const BookmarkFile::Entry* BookmarkFile::find(const QString& path) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&path](const Entry& entry) { return entry.path == path; });
    return found == m_entries.end() ? nullptr : &*found;
}

// With the blanks before it, and the line that they leave empty.
void BookmarkFile::cut(Span span) {
    while (span.start > 0 && m_text[span.start - 1].isSpace()) {
        --span.start;
    }
    m_text.remove(span.start, span.end - span.start);
    parse({});
}

void BookmarkFile::remove(const QString& path) {
    const Entry* entry = find(path);
    if (!entry || !entry->ours) { return; }
    cut(entry->registrations == 1 ? entry->span : *entry->ours);
}

void BookmarkFile::add(const QString& path, const QDateTime& now) {
    remove(path);
    // Two may come within one millisecond, and clocks go back.
    QDateTime time = now;
    for (const Entry& entry : m_entries) {
        if (entry.ours && entry.modified >= time) { time = entry.modified.addMSecs(1); }
    }
    if (const Entry* entry = find(path); entry && entry->endOfOthers > 0) {
        m_text.insert(entry->endOfOthers, u"\n          "_s + registration(time));
    } else {
        m_text.insert(m_end, newEntry(path, time));
    }
    parse({});
}

}  // namespace tweenery
