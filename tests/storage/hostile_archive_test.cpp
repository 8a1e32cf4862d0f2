// What a damaged or malicious archive can do to the reader: nothing but an InputError.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "base/errors.h"
#include "storage/keyed_unarchiver.h"
#include "support/archive_exercise.h"
#include "support/raw_plist.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QString Entry = u"hostile"_s;

class HostileArchive : public testing::TestWithParam<const char*> {
 protected:
    static QByteArray sound() {
        QFile file(packagePath(u"Bounce"_s) + u'/' + QString::fromLatin1(GetParam()));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return file.readAll();
    }
};

TEST_P(HostileArchive, EveryTruncationIsRefused) {
    const QByteArray bytes = sound();
    ASSERT_TRUE(ArchiveExercise::run(bytes));
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(ArchiveExercise::run(bytes.first(size))) << size;
    }
}

TEST_P(HostileArchive, EveryByteFlippedIsReadOrRefused) {
    const QByteArray bytes = sound();
    int refused = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        for (const int mask : {0x01, 0x10, 0xFF}) {
            QByteArray damaged = bytes;
            damaged[i] = static_cast<char>(damaged[i] ^ mask);
            if (!ArchiveExercise::run(damaged)) { ++refused; }
        }
    }
    EXPECT_GT(refused, bytes.size());
}

INSTANTIATE_TEST_SUITE_P(Packages, HostileArchive,
                         testing::Values("canvas", "version",
                                         "animations/6E5DD218-3E41-4086-8EB9-22670A476421/"
                                         "1AD391AD-CE1F-4D2D-9151-A84EB5CBF531/xScale.data"));

TEST(HostileArchives, WhatTheFuzzerFoundIsReadOrRefused) {
    for (const auto& folder : {u"fuzz/corpus/fuzz_archive"_s, u"fuzz/regressions/fuzz_archive"_s}) {
        const QDir directory(sourcePath(folder));
        for (const QFileInfo& info : directory.entryInfoList(QDir::Files)) {
            SCOPED_TRACE(info.fileName().toStdString());
            QFile file(info.filePath());
            ASSERT_TRUE(file.open(QFile::ReadOnly));
            EXPECT_NO_THROW(ArchiveExercise::run(file.readAll()));
        }
    }
}

TEST(HostileArchives, OutlineThatIsNoArchiveIsRefused) {
    const auto refused = [](RawPlist& plist, RawPlist::Ref top) {
        try {
            KeyedUnarchiver(plist.finish(top), Entry).root();
        } catch (const InputError&) { return true; }
        return false;
    };
    RawPlist plist;
    const auto null = plist.ascii("$null");
    const auto thing = plist.dictionary({});
    const auto archiver = plist.ascii("$archiver");
    const auto topKey = plist.ascii("$top");
    const auto objectsKey = plist.ascii("$objects");
    const auto root = plist.ascii("root");
    const auto objects = plist.array({null, thing});
    const auto roots = plist.dictionary({{root, plist.uid(1)}});
    const auto top = [&](RawPlist::Ref rootTable) {
        return plist.dictionary({{objectsKey, objects}, {topKey, rootTable}});
    };
    EXPECT_FALSE(refused(plist, top(roots)));
    EXPECT_TRUE(refused(plist, plist.dictionary({{objectsKey, objects}})));
    EXPECT_TRUE(refused(plist, plist.dictionary({{topKey, roots}})));
    EXPECT_TRUE(refused(plist, plist.dictionary({{objectsKey, roots}, {topKey, roots}})));
    EXPECT_TRUE(refused(plist, plist.dictionary({{objectsKey, objects}, {topKey, objects}})));
    EXPECT_TRUE(refused(
        plist, plist.dictionary(
                   {{objectsKey, objects}, {topKey, roots}, {archiver, plist.ascii("Other")}})));
    EXPECT_TRUE(refused(plist, objects));
    for (const uint64_t number : {0ULL, 2ULL, 0xFFFFULL}) {
        EXPECT_TRUE(refused(plist, top(plist.dictionary({{root, plist.uid(number)}})))) << number;
    }
    EXPECT_TRUE(refused(plist, top(plist.dictionary({{root, thing}}))));
    EXPECT_TRUE(refused(plist, top(plist.dictionary({}))));
    EXPECT_TRUE(
        refused(plist, top(plist.dictionary({{null, plist.uid(1)}, {topKey, plist.uid(1)}}))));
}

/// An archive of `count` arrays in which each holds the next one twice, so that a reader that
/// follows every reference never ends.
QByteArray doublingReferences(uint32_t count, bool cyclic) {
    RawArchive raw(4, 4);
    auto& plist = raw.plist;
    const uint32_t first = raw.file(plist.array({}));
    uint32_t last = first;
    for (uint32_t i = 0; i < count; ++i) {
        const auto reference = plist.uid(last);
        last = raw.file(plist.array({reference, reference}));
    }
    if (cyclic) { raw.fill(first, plist.array({plist.uid(last)})); }
    return raw.finish(raw.file(raw.object("Thing", {{"array", plist.uid(last)}})));
}

TEST(HostileArchives, DoublingReferencesAndCyclesAreWalkedOnce) {
    for (const bool cyclic : {false, true}) {
        // Each array costs itself and one reference.
        const KeyedUnarchiver archive(doublingReferences(1000, cyclic), Entry);
        EXPECT_LT(archive.verifyEverything(), 2 * 1000 + 50U);
    }
    const KeyedUnarchiver deep(doublingReferences(1000000, true), Entry);
    EXPECT_GT(deep.verifyEverything(), 2 * 1000000U);
}

TEST(HostileArchives, ObjectsThatOverlapAreRefused) {
    // A hundred thousand entries of the offset table that lead to one long array.
    constexpr uint32_t Count = 100000;
    RawArchive raw(4, 4);
    std::vector<RawPlist::Ref> items(Count);
    for (uint32_t i = 0; i < Count; ++i) {
        items[i] = raw.plist.add({});
    }
    const auto array = raw.plist.array(items);
    const auto root = raw.file(raw.object("Thing", {{"array", array}}));
    const KeyedUnarchiver archive(raw.finish(root), Entry);
    EXPECT_THROW(archive.verifyEverything(), InputError);
}

TEST(HostileArchives, SharedTextsAreDecodedOnce) {
    // References to the longest text and to a list of 2,000 names.
    RawArchive raw(4, 4);
    auto& plist = raw.plist;
    const auto text = plist.uid(raw.file(plist.ascii(std::string(500, 'x'))));
    const auto list = plist.array(std::vector<RawPlist::Ref>(2000, plist.ascii("name")));
    std::vector<RawPlist::Ref> items;
    for (int i = 0; i < 3; ++i) {
        items.push_back(plist.uid(raw.file(
            plist.dictionary({{plist.ascii("text"), text}, {plist.ascii("list"), list}}))));
    }
    const auto root = raw.file(raw.object("Thing", {{"items", plist.array(items)}}));
    const KeyedUnarchiver archive(raw.finish(root), Entry);
    const ArchivedArray array = archive.root().decodeArray("items");
    const QString first = array.object(0).decodeString("text");
    const QStringList names = array.object(0).decodeStrings("list");
    ASSERT_EQ(first.size(), 500);
    ASSERT_EQ(names.size(), 2000);
    for (size_t i = 1; i < array.size(); ++i) {
        ASSERT_EQ(array.object(i).decodeString("text").constData(), first.constData());
        ASSERT_EQ(array.object(i).decodeStrings("list").constData(), names.constData());
    }
}

TEST(HostileArchives, WhatIsSharedCannotBeLong) {
    const std::string longText(100000, 'x');
    RawArchive raw(4, 4);
    auto& plist = raw.plist;
    const auto reference = [&](RawPlist::Ref object) { return plist.uid(raw.file(object)); };
    const std::vector<RawPlist::Pair> keys(1000, {plist.ascii("k"), plist.ascii("v")});
    const auto root =
        raw.object("Thing", {{"keys", reference(plist.dictionary(keys))},
                             {"class", reference(raw.object(longText, {}))},
                             {"point", plist.ascii('{' + std::string(100000, ' ') + "1, 2}")},
                             {"text", plist.ascii(longText)}});
    const KeyedUnarchiver archive(raw.finish(raw.file(root)), Entry);
    const KeyedDecoder decoder = archive.root();
    EXPECT_THROW(decoder.decodeObject("keys"), InputError);
    EXPECT_THROW(decoder.decodeObject("class"), InputError);
    EXPECT_THROW(decoder.decodePoint("point"), InputError);
    EXPECT_EQ(decoder.decodeAscii("text"), std::nullopt);
    EXPECT_THROW(decoder.decodeString("text"), InputError);
}

TEST(HostileArchives, BadClassEntriesAreRefused) {
    using Ref = RawPlist::Ref;
    using MakeClass = std::function<Ref(RawArchive&)>;
    const MakeClass classes[] = {
        [](RawArchive& raw) { return raw.plist.ascii("Thing"); },
        [](RawArchive& raw) { return raw.plist.uid(0xFFFF); },
        [](RawArchive& raw) { return raw.plist.uid(0); },
        [](RawArchive& raw) { return raw.plist.uid(raw.file(raw.plist.dictionary({}))); },
        [](RawArchive& raw) {
            const auto name = std::pair(raw.plist.ascii("$classname"), raw.plist.add("\x09"));
            return raw.plist.uid(raw.file(raw.plist.dictionary({name})));
        },
        [](RawArchive& raw) {
            const auto reference = raw.plist.uid(raw.reserve());
            return raw.plist.uid(raw.file(reference));
        },
    };
    for (const auto& makeClass : classes) {
        RawArchive raw;
        const Ref badClass = makeClass(raw);
        const Ref object = raw.plist.dictionary({{raw.plist.ascii("$class"), badClass}});
        const auto reference = raw.plist.uid(raw.file(object));
        const auto root = raw.file(raw.object("Thing", {{"k", reference}}));
        const KeyedUnarchiver archive(raw.finish(root), Entry);
        EXPECT_THROW(archive.root().decodeObject("k"), InputError);
        EXPECT_THROW(archive.verifyEverything(), InputError);
    }
}

}  // namespace
}  // namespace tweenery::test
