#include "app/recent_projects.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include "app/bookmark_file.h"
#include "base/errors.h"
#include "base/user_defaults.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// What another program keeps: a comment, entities, its own spelling, groups, and a folder that it
// shares with us.
const QByteArray kOfOthers = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info"
><!-- kept -->
  <bookmark href='file:///home/ada/a%20%26%20b.txt' visited="2020-01-01T00:00:00Z" >
    <title>a &amp; b &#x1F600; 😀</title><info><metadata owner="http://freedesktop.org"
      ><mime:mime-type type="text/plain"/><bookmark:applications><bookmark:application name="Editor" exec="&apos;editor %u&apos;" count="3"/></bookmark:applications></metadata></info>
  </bookmark><bookmark href="file:///home/ada/Shared.tweenery">
    <info><metadata owner="http://freedesktop.org"><bookmark:applications>
      <bookmark:application name="Files" exec="&apos;files %u&apos;" count="1"/>
    </bookmark:applications></metadata></info></bookmark>
</xbel>
)";

class RecentProjects : public testing::Test {
 protected:
    const QString m_file = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           u"/recently-used.xbel"_s;

    void SetUp() override {
        QFile::remove(m_file);
        UserDefaults::useMemory();
    }
    void TearDown() override { SetUp(); }

    void write(const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(m_file).path());
        QFile file(m_file);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray bytes() const {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(RecentProjects, TheNewestComesFirstAndOnce) {
    addRecentProject(u"/p/One.tweenery"_s);
    addRecentProject(u"/p/Two.tweenery"_s);
    addRecentProject(u"/p/One.tweenery"_s);
    EXPECT_EQ(recentProjects(), (QStringList{u"/p/One.tweenery"_s, u"/p/Two.tweenery"_s}));
    EXPECT_FALSE(QFile::permissions(m_file) & (QFile::ReadGroup | QFile::ReadOther));
    for (int i = 0; i < 25; ++i) {
        addRecentProject(u"/p/%1.tweenery"_s.arg(i));
    }
    const QStringList paths = recentProjects();
    EXPECT_EQ(paths.size(), 20);
    EXPECT_EQ(paths.first(), u"/p/24.tweenery");
    EXPECT_EQ(paths.last(), u"/p/5.tweenery");
    EXPECT_EQ(bytes().count("<bookmark "), 20) << "older ones are to leave the list";
}

TEST_F(RecentProjects, NamesKeepAllTheirBytes) {
    const QStringList names = {
        u"/p/a b & <c> \"d\" 'e' %20 #f ?.tweenery"_s,
        u"/p/Ägypten 😀 日本.tweenery"_s,
        u"/p/]]> &amp; \\ new\nline\ttab.tweenery"_s,
        u"/p/bytes "_s + QChar(0xdc80) + QChar(0xdcff) + u".tweenery"_s,
    };
    for (const QString& name : names) {
        addRecentProject(name);
        EXPECT_EQ(recentProjects().first(), name);
    }
    EXPECT_EQ(recentProjects().size(), names.size());
    EXPECT_TRUE(bytes().contains("bytes%20%80%FF.tweenery")) << bytes().constData();
}

TEST_F(RecentProjects, WhatOtherProgramsKeptStaysToTheByte) {
    write(kOfOthers);
    EXPECT_TRUE(recentProjects().isEmpty()) << "entries of others are not ours";
    addRecentProject(u"/home/ada/Own.tweenery"_s);
    addRecentProject(u"/home/ada/Shared.tweenery"_s);
    EXPECT_EQ(recentProjects(),
              (QStringList{u"/home/ada/Shared.tweenery"_s, u"/home/ada/Own.tweenery"_s}));
    EXPECT_EQ(bytes().count("href=\"file:///home/ada/Shared.tweenery\""), 1)
        << "one entry, with two registrations";
    QXmlStreamReader reader(bytes());
    while (!reader.atEnd()) {
        reader.readNext();
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());

    clearRecentProjects();
    EXPECT_TRUE(recentProjects().isEmpty());
    EXPECT_EQ(bytes().toStdString(), kOfOthers.toStdString());
}

TEST_F(RecentProjects, AListThatIsDamagedIsLeftAloneAndOursKeptElsewhere) {
    QByteArray otherPrefix = kOfOthers;
    otherPrefix.replace("bookmark:", "b:");
    const QByteArrayList damaged = {
        "garbage",
        "<html/>",
        kOfOthers.first(kOfOthers.size() - 10),
        otherPrefix,
        QByteArray(kOfOthers).replace("kept", "\xff\xfe"),
        "<!DOCTYPE x [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d "
        "\"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\">]><xbel>&d;</xbel>",
    };
    for (const QByteArray& text : damaged) {
        clearRecentProjects();
        write(text);
        addRecentProject(u"/p/One.tweenery"_s);
        addRecentProject(u"/p/Two \n😀.tweenery"_s);
        EXPECT_EQ(bytes().toStdString(), text.toStdString());
        EXPECT_EQ(recentProjects(), (QStringList{u"/p/Two \n😀.tweenery"_s, u"/p/One.tweenery"_s}))
            << text.constData();
    }
    write(kOfOthers);
    addRecentProject(u"/p/Three.tweenery"_s);
    EXPECT_EQ(recentProjects(),
              (QStringList{u"/p/Three.tweenery"_s, u"/p/Two \n😀.tweenery"_s, u"/p/One.tweenery"_s}))
        << "once it is whole again, what waited goes into the list";
    EXPECT_EQ(bytes().count("tweenery %u"), 3);
}

TEST(BookmarkFile, EntriesOfOtherPlacesAreNoPaths) {
    BookmarkFile list;
    list.add(u"/p/One.tweenery"_s, QDateTime::currentDateTimeUtc());
    for (const QByteArray& address :
         {QByteArray("http://host/One.tweenery"), QByteArray("file://host/One.tweenery"),
          QByteArray("file:///p/%00One.tweenery"), QByteArray("")}) {
        const QByteArray text = list.text().replace("file:///p/One.tweenery", address);
        EXPECT_TRUE(BookmarkFile(text, u"list"_s).paths().isEmpty()) << address.constData();
    }
    const QByteArray text =
        list.text().replace("file:///p/One.tweenery", "file://localhost/p/%4fne.tweenery");
    EXPECT_EQ(BookmarkFile(text, u"list"_s).paths(), QStringList{u"/p/One.tweenery"_s});
}

}  // namespace
}  // namespace tweenery::test
