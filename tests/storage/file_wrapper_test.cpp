#include "storage/file_wrapper.h"

#include <gmock/gmock.h>

#include "base/errors.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

QStringList namesOf(const FileWrapper::Children& children) {
    QStringList names;
    for (const auto& [name, node] : children) {
        names.append(name);
    }
    return names;
}

FileWrapper::Ptr file(const QString& name, const QByteArray& contents = "bytes") {
    return FileWrapper::regularFile(contents, name);
}

// A small tree that passes for one that was read from disk.
FileWrapper::Ptr storedTree() {
    const auto root = FileWrapper::directory(u"Demo.tweenery"_s);
    root->setFilename(u"Demo.tweenery"_s);
    root->addFileWrapper(file(u"canvas"_s));
    const auto sub = root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"animations"_s);
    sub->addFileWrapper(file(u"name.data"_s, "Größe"));
    sub->addFileWrapper(FileWrapper::symbolicLink("../canvas", u"link"_s));
    uint64_t inode = 0;
    for (const auto& node :
         {root, root->child(u"canvas"_s), sub, sub->child(u"link"_s), sub->child(u"name.data"_s)}) {
        node->setOrigin(FileWrapper::Origin{.device = 1, .inode = ++inode});
    }
    return root;
}

TEST(FileWrapper, NumbersNamesThatAreTaken) {
    const auto directory = FileWrapper::directory();
    const std::pair<QString, QString> cases[] = {
        {u"logo.png"_s, u"logo.png"_s},     {u"logo.png"_s, u"logo 2.png"_s},
        {u"logo.png"_s, u"logo 3.png"_s},   {u"version"_s, u"version"_s},
        {u"version"_s, u"version 2"_s},     {u".hidden"_s, u".hidden"_s},
        {u".hidden"_s, u".hidden 2"_s},     {u"a.b.png"_s, u"a.b.png"_s},
        {u"a.b.png"_s, u"a.b 2.png"_s},     {u"Größe.png"_s, u"Größe.png"_s},
        {u"Größe.png"_s, u"Größe 2.png"_s},
    };
    for (const auto& [wanted, filed] : cases) {
        const auto node = file(wanted);
        EXPECT_EQ(directory->addFileWrapper(node), filed);
        EXPECT_EQ(node->filename(), filed);
        EXPECT_EQ(directory->child(filed), node);
    }
}

TEST(FileWrapper, TellsWhichNamesAreSafe) {
    const std::pair<QString, bool> cases[] = {
        {u"canvas"_s, true},
        {u"..."_s, true},
        {u"a b\n"_s, true},
        {QString(255, u'a'), true},
        {QString(), false},
        {u"."_s, false},
        {u".."_s, false},
        {u"a/b"_s, false},
        {u"/"_s, false},
        {u"a\0b"_s, false},
        {QString(256, u'a'), false},
        {QString(128, u'ö'), false},
        {QString(QChar(0xd800)), false},
    };
    for (const auto& [name, safe] : cases) {
        EXPECT_EQ(isSafeFilename(name), safe) << name.toStdString();
    }
    const auto directory = FileWrapper::directory();
    for (const QString& name : {u""_s, u"."_s, u".."_s, u"../x"_s, u"a\0b"_s}) {
        EXPECT_THROW(directory->addFileWrapper(file(name)), AssertionFailure) << name.toStdString();
    }
    EXPECT_THROW(file(u"a"_s)->addFileWrapper(file(u"b"_s)), AssertionFailure);
    EXPECT_THROW(directory->removeFileWrapper(file(u"b"_s)), AssertionFailure);
}

TEST(FileWrapper, KeepsAnEntryThatIsReplacedByItsOwnBytes) {
    const auto root = storedTree();
    const auto before = root->child(u"canvas"_s);
    root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "bytes");
    EXPECT_EQ(root->child(u"canvas"_s), before);
    root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "other");
    EXPECT_EQ(root->child(u"canvas"_s)->contents(), "other");
    EXPECT_FALSE(root->child(u"canvas"_s)->origin());
    root->pc_replaceSubFileWrapperNamed(u"animations"_s, "a file now");
    EXPECT_TRUE(root->child(u"animations"_s)->isRegularFile());
}

TEST(FileWrapper, EnsuresDirectories) {
    const auto root = storedTree();
    EXPECT_EQ(root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"animations"_s),
              root->child(u"animations"_s));
    try {
        root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"canvas"_s);
        FAIL() << "a file passed for a directory";
    } catch (const InputError& error) {
        EXPECT_EQ(error.entry(), u"canvas"_s);
        EXPECT_EQ(error.reason(), u"is not a directory"_s);
    }
}

TEST(FileWrapper, RemembersWhatLeavesTheTreeUntilItIsSaved) {
    const auto root = storedTree();
    const auto sub = root->child(u"animations"_s);
    const auto name = sub->child(u"name.data"_s);
    sub->pc_deleteSubFileWrapperNamed(u"name.data"_s);
    sub->addFileWrapper(name);  // an undo: back at its place, yet to be written anew
    EXPECT_FALSE(sub->child(u"name.data"_s)->origin());
    EXPECT_EQ(sub->child(u"name.data"_s)->contents(), "Größe");
    EXPECT_THAT(namesOf(sub->removedEntries()), ElementsAre(u"name.data"_s));

    root->removeFileWrapper(sub);
    EXPECT_FALSE(sub->origin());
    EXPECT_FALSE(sub->child(u"link"_s)->origin());
    ASSERT_THAT(namesOf(root->removedEntries()), ElementsAre(u"animations"_s));
    const auto stored = root->removedEntries().at(u"animations"_s);
    EXPECT_EQ(stored->origin()->inode, 3);
    EXPECT_THAT(namesOf(stored->fileWrappers()), ElementsAre(u"link"_s));
    EXPECT_EQ(stored->removedEntries().at(u"name.data"_s)->origin()->inode, 5);

    root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"animations"_s);
    root->pc_deleteSubFileWrapperNamed(u"animations"_s);
    EXPECT_EQ(root->removedEntries().at(u"animations"_s), stored);
    root->setOrigin(FileWrapper::Origin{});
    EXPECT_TRUE(root->removedEntries().empty());
}

TEST(FileWrapper, CopiesDeeply) {
    const auto root = storedTree();
    const auto copy = FileWrapper::directory();
    copy->addFileWrapper(file(u"canvas"_s, "here before"));
    const auto present = copy->pc_ensureSubfileWrapperDirectoryExistsWithName(u"animations"_s);
    root->pc_copySubFileWrappersToFileWrapper(*copy);
    EXPECT_THAT(namesOf(copy->fileWrappers()),
                ElementsAre(u"animations"_s, u"canvas"_s, u"canvas 2"_s));
    EXPECT_EQ(copy->child(u"animations"_s), present);
    EXPECT_THAT(namesOf(present->fileWrappers()), ElementsAre(u"name.data"_s));
    EXPECT_EQ(present->child(u"name.data"_s)->contents(), "Größe");
    EXPECT_FALSE(present->child(u"name.data"_s)->origin());
    EXPECT_TRUE(root->child(u"canvas"_s)->origin());
}

TEST(FileWrapper, DescribesTheTree) {
    EXPECT_EQ(storedTree()->debugDescriptionWithIndent(u"> "_s),
              u"> Demo.tweenery\n"
              u"> |     animations\n"
              u"> |     |     link\n"
              u"> |     |     name.data (Größe)\n"
              u"> |     canvas\n"_s);
}

}  // namespace
}  // namespace tweenery::test
