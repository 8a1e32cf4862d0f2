// Snapshots of a package's tree: what they share, and what is on disk after they are written while
// the tree is edited.

#include <deque>
#include <random>

#include "storage/package_fixture.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// By path; directories end in a slash.
using Contents = std::map<std::string, std::string>;

void collect(const FileWrapper& directory, const std::string& path, Contents& into) {
    for (const auto& [name, node] : directory.fileWrappers()) {
        const std::string place = path + name.toStdString();
        if (!node->isDirectory()) {
            into[place] = node->contents().toStdString();
            continue;
        }
        into[place + '/'];
        collect(*node, place + '/', into);
    }
}

Contents contentsOf(const FileWrapper& directory) {
    Contents contents;
    collect(directory, {}, contents);
    return contents;
}

class PackageSnapshot : public PackageFixture {
 protected:
    FileWrapper::Ptr root = readPackage(path());
};

TEST_F(PackageSnapshot, SharesWhatDidNotChange) {
    const auto first = root->snapshot();
    EXPECT_EQ(root->snapshot(), first);
    const auto animation = root->child(u"animations"_s)->child(u"A1"_s);
    const auto gone = animation->child(u"E1"_s);
    animation->pc_replaceSubFileWrapperNamed(u"name.data"_s, "Slide");
    animation->removeFileWrapper(gone);
    const Contents before = contentsOf(*first);
    const auto second = root->snapshot();
    EXPECT_EQ(contentsOf(*first), before);
    EXPECT_EQ(contentsOf(*second), contentsOf(*root));
    EXPECT_EQ(second->child(u"images"_s), first->child(u"images"_s));
    EXPECT_EQ(second->child(u"canvas"_s), root->child(u"canvas"_s));
    EXPECT_NE(second->child(u"animations"_s), first->child(u"animations"_s));

    // A directory that has left the tree is no part of it any more.
    gone->pc_replaceSubFileWrapperNamed(u"xScale.data"_s, "late");
    EXPECT_EQ(root->snapshot(), second);
    root.reset();
    animation->pc_replaceSubFileWrapperNamed(u"name.data"_s, "an orphan");
    EXPECT_EQ(contentsOf(*second).at("animations/A1/name.data"), "Slide");
}

TEST_F(PackageSnapshot, MakesLateBytesOnceAndOnlyForWhoAsks) {
    int count = 0;
    root->addFileWrapper(FileWrapper::regularFileMadeLater(
        [&count] { return QByteArray::number(++count); }, u"late"_s));
    const auto snapshot = root->snapshot();
    root->pc_deleteSubFileWrapperNamed(u"late"_s);
    savePackage(*root, path());
    EXPECT_EQ(count, 0);
    for (const auto& copy : {u"a.tweenery"_s, u"b.tweenery"_s}) {
        writePackageCopy(*snapshot, directory() + u'/' + copy);
        EXPECT_EQ(readPackage(directory() + u'/' + copy)->child(u"late"_s)->contents(), "1");
    }
}

void replaceLater(FileWrapper& directory, const QString& name, const QByteArray& bytes) {
    directory.pc_deleteSubFileWrapperNamed(name);
    directory.addFileWrapper(FileWrapper::regularFileMadeLater([bytes] { return bytes; }, name));
}

// What was replaced by the same bytes, or came back to them, is not written again.
TEST_F(PackageSnapshot, LinksWhatComesOutAsItIsOnDisk) {
    const QByteArray before = root->child(u"canvas"_s)->contents();
    const auto inode = [this] { return readPackage(path())->child(u"canvas"_s)->origin()->inode; };
    const auto replace = [&](const QByteArray& bytes, bool later) {
        later ? replaceLater(*root, u"canvas"_s, bytes)
              : root->pc_replaceSubFileWrapperNamed(u"canvas"_s, bytes);
    };
    const uint64_t first = inode();
    for (const bool later : {false, true}) {
        replace("passing", later);
        const auto givenUp = root->snapshot();
        EXPECT_THROW(writeSnapshot(givenUp, directory() + u"/gone/Demo.tweenery"_s), InputError);
        replace(before, later);
        savePackage(*root, path());
        EXPECT_EQ(inode(), first) << later;
        EXPECT_TRUE(entriesChangedOnDisk(*root, path()).isEmpty()) << later;
    }
    replace("other bytes", true);
    savePackage(*root, path());
    EXPECT_NE(inode(), first);
    EXPECT_EQ(readPackage(path())->child(u"canvas"_s)->contents(), "other bytes");

    replaceLater(*root, u"canvas"_s, "other bytes");
    write("canvas", "somebody else's");
    EXPECT_THAT(errorOf([&] { savePackage(*root, path()); }),
                testing::HasSubstr("was changed on disk"));
}

/// Edits a tree, takes snapshots and writes them in turn, some in vain, all at random.
class RandomWalk {
 public:
    RandomWalk(const FileWrapper::Ptr& root, QString path, unsigned seed)
        : m_root(root), m_path(std::move(path)), m_random(seed) {}

    void step() {
        switch (below(8)) {
            case 0:
                m_waiting.push_back({m_root->snapshot(), contentsOf(*m_root)});
                break;
            case 1:
                write();
                break;
            case 2:
                refuse();
                break;
            default:
                edit();
        }
    }
    /// Writes all snapshots, then the tree itself.
    void finish() {
        while (!m_waiting.empty()) {
            write();
        }
        savePackage(*m_root, m_path);
        EXPECT_EQ(contentsOf(*readPackage(m_path)), contentsOf(*m_root));
        EXPECT_TRUE(entriesChangedOnDisk(*m_root, m_path).isEmpty());
    }

 private:
    struct Waiting {
        FileWrapper::Snapshot snapshot;
        Contents contents;
    };
    FileWrapper::Ptr m_root;
    QString m_path;
    std::mt19937 m_random;
    std::deque<Waiting> m_waiting;
    std::vector<FileWrapper::Ptr> m_removed;

    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    FileWrapper::Ptr anyDirectory() {
        FileWrapper::Ptr directory = m_root;
        while (below(3) > 0) {
            std::vector<FileWrapper::Ptr> inside;
            for (const auto& [name, node] : directory->fileWrappers()) {
                if (node->isDirectory()) { inside.push_back(node); }
            }
            if (inside.empty()) { break; }
            directory = inside[below(static_cast<unsigned>(inside.size()))];
        }
        return directory;
    }

    void edit() {
        const FileWrapper::Ptr directory = anyDirectory();
        const QString name = QString(QChar(u'a' + below(3)));
        const FileWrapper::Ptr present = directory->child(name);
        switch (below(5)) {
            case 0:
                if (present) {
                    m_removed.push_back(present);
                    directory->removeFileWrapper(present);
                }
                break;
            case 1:
                if (!present || present->isDirectory()) {
                    directory->pc_ensureSubfileWrapperDirectoryExistsWithName(name);
                }
                break;
            case 2:
                if (!m_removed.empty()) {  // back again, maybe elsewhere
                    directory->addFileWrapper(m_removed.back());
                    m_removed.pop_back();
                }
                break;
            case 3:
                replaceLater(*directory, name, QByteArray::number(below(4)));
                break;
            default:
                directory->pc_replaceSubFileWrapperNamed(name, QByteArray::number(below(4)));
        }
    }

    void write() {
        if (m_waiting.empty()) { return; }
        writeSnapshot(m_waiting.front().snapshot, m_path).becomeStored();
        EXPECT_EQ(contentsOf(*readPackage(m_path)), m_waiting.front().contents);
        m_waiting.pop_front();
    }

    // A snapshot that cannot be written is given up.
    void refuse() {
        const QString name(300, u'n');
        m_root->pc_replaceSubFileWrapperNamed(name, {});
        EXPECT_THROW(writeSnapshot(m_root->snapshot(), m_path), InputError);
        m_root->pc_deleteSubFileWrapperNamed(name);
    }
};

TEST_F(PackageSnapshot, WritesEachStateWhateverIsEditedMeanwhile) {
    for (unsigned seed = 0; seed < 30 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const QString package = directory() + u"/Walk%1.tweenery"_s.arg(seed);
        writePackageCopy(*root, package);
        RandomWalk walk(readPackage(package), package, seed);
        for (int i = 0; i < 80; ++i) {
            walk.step();
        }
        walk.finish();
    }
}

}  // namespace
}  // namespace tweenery::test
