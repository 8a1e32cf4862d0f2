#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace tweenery {

/// The text of the list of recent files that the programs of a desktop share (an XBEL file, as
/// freedesktop.org describes it). Reads and changes what this program registered; all else stays to
/// the letter.
class BookmarkFile {
 public:
    /// An empty list.
    BookmarkFile();
    /// Throws InputError, naming `entry`, for anything but such a list in UTF-8.
    BookmarkFile(const QByteArray& text, const QString& entry);

    /// Of the entries that this program registered, the newest first.
    QStringList paths() const;
    /// Registers the file or folder, or makes it the newest, whatever the clock said before.
    void add(const QString& path, const QDateTime& now);
    /// Takes our registration away, and the entry if no other program has one in it.
    void remove(const QString& path);

    QByteArray text() const { return m_text.toUtf8(); }

 private:
    // From the first character to behind the last one.
    struct Span {
        qsizetype start = 0;
        qsizetype end = 0;
    };
    struct Entry {
        Span span;
        QString path;
        QDateTime modified = {};        // when we registered it last
        std::optional<Span> ours = {};  // our registration
        int registrations = 0;          // of all programs
        qsizetype endOfOthers = -1;     // behind the last registration
    };
    class Parser;

    QString m_text;
    std::vector<Entry> m_entries;
    qsizetype m_end = 0;  // where an entry can be added

    void parse(const QString& entry);
    void cut(Span span);
    const Entry* find(const QString& path) const;
};

}  // namespace tweenery
