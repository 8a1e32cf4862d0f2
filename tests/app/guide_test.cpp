#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QKeySequence>
#include <QRegularExpression>
#include <QUrl>

#include "app/about.h"
#include "editor/commands.h"
#include "editor/pointer_hints.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QString kBegin = u"<!-- keys -->\n"_s;
const QString kEnd = u"<!-- end of keys -->\n"_s;

QString guidePath() {
    return sourcePath(u"docs/guide/index.html"_s);
}

QString guideText() {
    QFile file(guidePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString row(const QString& effect, const QStringList& inputs) {
    QStringList keys;
    for (const QString& input : inputs) {
        keys << u"<kbd>%1</kbd>"_s.arg(input.toHtmlEscaped());
    }
    return u"<tr><td>%1</td><td>%2</td></tr>\n"_s.arg(effect.toHtmlEscaped(), keys.join(u" or "_s));
}

QString table(const QString& title, const QString& rows) {
    return u"<h3>%1</h3>\n<table>\n%2</table>\n"_s.arg(title.toHtmlEscaped(), rows);
}

QString tablesOfKeys() {
    QString tables;
    for (const QString& menu : menuTitles()) {
        QString rows;
        for (const Command& command : allCommands()) {
            if (command.menu != menu || command.shortcuts.isEmpty()) { continue; }
            const QString group = command.submenu.isEmpty() ? QString() : command.submenu + u": "_s;
            rows +=
                row(group + QString(command.title).remove(u'…'), command.shortcuts.split(u"; "_s));
        }
        if (!rows.isEmpty()) { tables += table(menu, rows); }
    }
    QString rows;
    for (const PointerHint& hint : pointerHints()) {
        rows += row(hint.effect, {hint.input});
    }
    return tables + table(u"Pointer and keys on the canvas"_s, rows);
}

TEST(Guide, ListsTheKeysThatTheProgramHas) {
    QString text = guideText();
    const qsizetype begin = text.indexOf(kBegin) + kBegin.size();
    const qsizetype end = text.indexOf(kEnd);
    ASSERT_GT(end, begin - 1);
    if (updateGoldens) {
        QFile file(guidePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.replace(begin, end - begin, tablesOfKeys()).toUtf8());
        return;
    }
    EXPECT_EQ(text.mid(begin, end - begin).toStdString(), tablesOfKeys().toStdString());
}

// What the text says between the lists: keys and names of commands in bold.
TEST(Guide, NamesOnlyCommandsAndKeysThatThereAre) {
    const QString text = guideText().section(kBegin, 0, 0);
    for (const QString& title :
         {u"Save As"_s, u"Save a Copy"_s, u"Revert to Saved"_s, u"Import Images"_s,
          u"Show Guidelines"_s, u"Place Anchor Point"_s, u"Group"_s, u"Customize Toolbar"_s,
          u"Keyboard Shortcuts"_s, u"At the Last Keyframe"_s, u"Key All"_s, u"Stretch to Length"_s,
          u"Reverse"_s, u"Time and Value"_s, u"Insert Time"_s, u"Remove Time"_s}) {
        EXPECT_TRUE(text.simplified().contains(u"<b>%1</b>"_s.arg(title))) << qPrintable(title);
        const bool isThere = std::any_of(
            allCommands().begin(), allCommands().end(), [&title](const Command& command) {
                return QString(command.title).remove(u'…') == title || command.submenu == title;
            });
        EXPECT_TRUE(isThere) << qPrintable(title);
    }
}

TEST(Guide, LinksLeadToPlacesInIt) {
    const QString text = guideText();
    static const QRegularExpression link(u"href=\"([^\"]*)\""_s);
    for (const auto& match : link.globalMatch(text)) {
        const QString target = match.captured(1);
        ASSERT_TRUE(target.startsWith(u'#')) << qPrintable(target);
        EXPECT_TRUE(text.contains(u"id=\"%1\""_s.arg(target.mid(1)))) << qPrintable(target);
    }
}

TEST(Guide, IsFoundFromTheProgramsOwnFolder) {
    const QUrl url(helpUrl(), QUrl::StrictMode);
    EXPECT_TRUE(url.isLocalFile());
    EXPECT_EQ(QFileInfo(url.toLocalFile()).canonicalFilePath(),
              QFileInfo(guidePath()).canonicalFilePath());
}

}  // namespace
}  // namespace tweenery::test
