#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>

#include "storage/interference.h"
#include "storage/package_fixture.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"
#include "support/archived.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

class PackageStoreTest : public PackageFixture {
 protected:
    uintmax_t inodeOf(const std::string& file) const {
        struct stat status {};
        EXPECT_EQ(::lstat(file.c_str(), &status), 0) << file;
        return status.st_ino;
    }
    // Every edit that a save has to carry out.
    static void edit(FileWrapper& root) {
        root.pc_replaceSubFileWrapperNamed(u"canvas"_s, "changed");
        root.pc_deleteSubFileWrapperNamed(u"version"_s);
        root.child(u"animations"_s)
            ->pc_ensureSubfileWrapperDirectoryExistsWithName(u"A2"_s)
            ->pc_replaceSubFileWrapperNamed(u"name.data"_s, "added");
        root.child(u"images"_s)->addFileWrapper(FileWrapper::symbolicLink("nowhere", u"new"_s));
    }
    DirectorySnapshot edited(DirectorySnapshot before) const {
        before["canvas"].content = "changed";
        before.erase("version");
        before["animations/A2"] = before["images"];
        before["animations/A2/name.data"] = {'f', 0644, "added"};
        before["images/new"] = {'l', 0, "nowhere"};
        return before;
    }
};

TEST_F(PackageStoreTest, SavesEditsAndKeepsTheRest) {
    const mode_t mask = ::umask(022);
    const auto before = snapshotOf(path());
    const auto root = readPackage(path());
    edit(*root);
    const uintmax_t unknown = inodeOf(inPackage("unknown entry ö"));
    const uintmax_t link = inodeOf(inPackage("images/link"));
    for (int saves = 0; saves < 2; ++saves) {
        savePackage(*root, path());
        EXPECT_EQ(snapshotOf(path()), edited(before));
        EXPECT_EQ(inodeOf(inPackage("unknown entry ö")), unknown) << "not linked";
        EXPECT_EQ(inodeOf(inPackage("images/link")), link) << "not linked";
        EXPECT_THAT(entriesChangedOnDisk(*root, path()), IsEmpty());
        EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
        EXPECT_EQ(root->child(u"canvas"_s)->origin()->inode, inodeOf(inPackage("canvas")));
        EXPECT_EQ(root->child(u"empty"_s)->origin()->inode, inodeOf(inPackage("empty")));
    }
    ::umask(mask);
}

TEST_F(PackageStoreTest, SavesThroughALinkToThePackage) {
    const QString link = directory() + u"/Link.tweenery"_s;
    fs::create_directory_symlink("Demo.tweenery", link.toStdString());
    const auto root = readPackage(link);
    root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "changed");
    savePackage(*root, link);
    EXPECT_TRUE(fs::is_symlink(link.toStdString()));
    EXPECT_EQ(snapshotOf(path()).at("canvas").content, "changed");
}

TEST_F(PackageStoreTest, SavesToANewPlaceWithoutTouchingTheOldOne) {
    const auto before = snapshotOf(path());
    const auto root = readPackage(path());
    const QString other = directory() + u"/Other.tweenery"_s;
    edit(*root);
    savePackage(*root, other + u"/"_s);
    EXPECT_EQ(snapshotOf(path()), before);
    EXPECT_EQ(snapshotOf(other).at("canvas").content, "changed");
    EXPECT_EQ(snapshotOf(other).size(), snapshotOf(path()).size() + 2);
    EXPECT_THAT(entriesChangedOnDisk(*root, other), IsEmpty());
    EXPECT_EQ(errorOf([&] { savePackage(*root, path()); }),
              "animations/A1/E1/opacity.data: was changed on disk since it was opened");
}

// A name so long that the hidden name beside it cannot hold it.
TEST_F(PackageStoreTest, SavesUnderTheLongestName) {
    const QString longest = directory() + u'/' + QString(255, u'n');
    const auto root = readPackage(path());
    for (int saves = 0; saves < 2; ++saves) {
        savePackage(*root, longest);
    }
    EXPECT_EQ(snapshotOf(longest).size(), snapshotOf(path()).size());
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
}

struct OutsideChange {
    const char* what;
    std::function<void(const std::string& package)> make;
    QStringList changed;
};

TEST_F(PackageStoreTest, NoticesChangesOnDisk) {
    const auto write = [](const std::string& file) { std::ofstream(file) << "outside"; };
    const OutsideChange cases[] = {
        {"nothing", [](auto&) {}, {}},
        {"rewritten", [&](auto& p) { write(p + "/version"); }, {u"version"_s}},
        {"touched",
         [](auto& p) { fs::last_write_time(p + "/canvas", fs::file_time_type::clock::now()); },
         {u"canvas"_s}},
        {"replaced by the same bytes",
         [](auto& p) {
             const auto time = fs::last_write_time(p + "/canvas");
             fs::copy(p + "/canvas", p + "/../copy");
             fs::rename(p + "/../copy", p + "/canvas");
             fs::last_write_time(p + "/canvas", time);
         },
         {u"canvas"_s}},
        {"removed",
         [](auto& p) { fs::remove(p + "/animations/A1/E1/opacity.data"); },
         {u"animations/A1/E1/opacity.data"_s}},
        {"directory removed",
         [](auto& p) { fs::remove_all(p + "/animations"); },
         {u"animations"_s}},
        {"added", [&](auto& p) { write(p + "/empty/file"); }, {u"empty/file"_s}},
        {"directory added", [](auto& p) { fs::create_directories(p + "/a/b"); }, {u"a"_s}},
        {"file became a directory",
         [](auto& p) {
             fs::remove(p + "/canvas");
             fs::create_directory(p + "/canvas");
         },
         {u"canvas"_s}},
        {"directory became a link",
         [](auto& p) {
             fs::rename(p + "/animations", p + "/../elsewhere");
             fs::create_directory_symlink("../elsewhere", p + "/animations");
         },
         {u"animations"_s}},
        {"link points elsewhere",
         [](auto& p) {
             fs::remove(p + "/images/link");
             fs::create_symlink("/etc", p + "/images/link");
         },
         {u"images/link"_s}},
        {"a removed entry rewritten, a replaced directory added to",
         [&](auto& p) {
             write(p + "/gone");
             write(p + "/QuickLook/more");
         },
         {u"QuickLook/more"_s, u"gone"_s}},
    };
    PackageFixture::write("gone", "x");
    fs::create_directory(inPackage("QuickLook"));
    for (const OutsideChange& change : cases) {
        SCOPED_TRACE(change.what);
        const QString copy = directory() + u"/Copy.tweenery"_s;
        fs::remove_all(copy.toStdString());
        fs::remove_all((directory() + u"/elsewhere"_s).toStdString());
        fs::copy(path().toStdString(), copy.toStdString(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        const auto root = readPackage(copy);
        root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "edited here");
        root->pc_deleteSubFileWrapperNamed(u"gone"_s);
        root->pc_deleteSubFileWrapperNamed(u"QuickLook"_s);
        root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"QuickLook"_s);
        change.make(copy.toStdString());

        EXPECT_EQ(entriesChangedOnDisk(*root, copy), change.changed);
        const auto before = snapshotOf(copy);
        if (!change.changed.isEmpty()) {
            EXPECT_EQ(
                errorOf([&] { savePackage(*root, copy); }),
                change.changed.first().toStdString() + ": was changed on disk since it was opened");
            EXPECT_EQ(snapshotOf(copy), before);
            EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
        }
        savePackage(*root, copy, OnDiskChange::Overwrite);
        auto expected = snapshotOf(path());
        expected["canvas"] = {'f', snapshotOf(copy)["canvas"].mode, "edited here"};
        expected.erase("gone");
        auto saved = snapshotOf(copy);
        for (auto& [name, entry] : saved) {
            entry.mode = expected[name].mode;
        }
        EXPECT_EQ(saved, expected);
        EXPECT_THAT(entriesChangedOnDisk(*root, copy), IsEmpty());
    }
}

TEST_F(PackageStoreTest, RefusesWhereNothingCanBeSaved) {
    const auto root = readPackage(path());
    const auto fresh = FileWrapper::directory();
    const std::string base = directory().toStdString();
    std::ofstream(base + "/file") << "x";
    fs::create_symlink("/nowhere", base + "/dangling");
    const auto before = snapshotOf(directory());
    const std::tuple<FileWrapper*, QString, std::string> cases[] = {
        {root.get(), directory() + u"/file"_s, base + "/file: is not a directory"},
        {root.get(), directory() + u"/dangling"_s, base + "/dangling: is not a directory"},
        {root.get(), directory() + u"/none/New"_s,
         base + "/none/New: its directory could not be opened: No such file or directory"},
        {root.get(), u"/"_s, "/: is no place for a package"},
        {root.get(), QString(), ": is no path"},
        {fresh.get(), path(), path().toStdString() + ": already exists"},
    };
    for (const auto& [tree, target, message] : cases) {
        EXPECT_EQ(errorOf([&, &tree = tree, &target = target] { savePackage(*tree, target); }),
                  message);
    }
    EXPECT_EQ(snapshotOf(directory()), before);
}

TEST_F(PackageStoreTest, RefusesNamesThatNoFileCanHave) {
    const auto before = snapshotOf(directory());
    for (const QString& name : {QString(300, u'n'), QString(QChar(0xdc00))}) {
        const auto root = readPackage(path());
        const auto images = root->child(u"images"_s);
        images->pc_replaceSubFileWrapperNamed(name, "x");
        EXPECT_EQ(
            errorOf([&] { savePackage(*root, path()); }),
            "images/" + printableName(name).toStdString() + ": is no name that a file can have");
        EXPECT_EQ(snapshotOf(directory()), before);
    }
}

TEST_F(PackageStoreTest, WritesNodesWhereTheyAreFiledWhateverTheyCallThemselves) {
    const auto before = snapshotOf(directory());
    const auto root = readPackage(path());
    root->child(u"animations"_s)->setFilename(u".."_s);
    root->child(u"animations"_s)->pc_replaceSubFileWrapperNamed(u"evil"_s, "x");
    root->child(u"canvas"_s)->setFilename(u"../canvas"_s);
    savePackage(*root, path());
    auto expected = before;
    expected["Demo.tweenery/animations/evil"] = {'f', before.at("Demo.tweenery/version").mode, "x"};
    EXPECT_EQ(snapshotOf(directory()), expected);
}

// A limit on the size of files stands in for a full disk.
TEST_F(PackageStoreTest, LeavesNothingBehindWhenWritingFails) {
    const auto before = snapshotOf(directory());
    const auto root = readPackage(path());
    edit(*root);
    root->child(u"images"_s)->pc_replaceSubFileWrapperNamed(u"big.png"_s, QByteArray(200'000, 'b'));
    rlimit unlimited{};
    ::getrlimit(RLIMIT_FSIZE, &unlimited);
    const auto onExcess = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limited{150'000, unlimited.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limited);
    const std::string saveError = errorOf([&] { savePackage(*root, path()); });
    const std::string copyError =
        errorOf([&] { writePackageCopy(*root, directory() + u"/Copy.tweenery"_s); });
    const std::string fileError =
        errorOf([&] { writeFileAtomically(path() + u"/canvas"_s, QByteArray(200'000, 'b')); });
    ::setrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, onExcess);

    EXPECT_EQ(saveError, "images/big.png: could not be written: File too large");
    EXPECT_EQ(copyError, saveError);
    EXPECT_EQ(fileError, inPackage("canvas") + ": could not be written: File too large");
    EXPECT_EQ(snapshotOf(directory()), before);
    savePackage(*root, path());
    EXPECT_EQ(snapshotOf(path()).at("images/big.png").content.size(), 200'000);
}

TEST_F(PackageStoreTest, NeedsOnlyTheParentToBeWritable) {
    const auto before = snapshotOf(path());
    const auto root = readPackage(path());
    edit(*root);
    fs::permissions(directory().toStdString(), fs::perms(0555));
    {
        const Unprivileged unprivileged;
        EXPECT_EQ(
            errorOf([&] { savePackage(*root, path()); }),
            path().toStdString() + ": no directory could be made beside it: Permission denied");
        EXPECT_EQ(errorOf([&] { writeFileAtomically(directory() + u"/f"_s, "x"); }),
                  directory().toStdString() + "/f: could not be written: Permission denied");
    }
    EXPECT_EQ(snapshotOf(path()), before);
    fs::permissions(directory().toStdString(), fs::perms::all);
    const Unprivileged unprivileged;
    const QString own = directory() + u"/Own.tweenery"_s;
    writePackageCopy(*root, own);
    for (const auto& entry : fs::recursive_directory_iterator(own.toStdString())) {
        if (entry.is_directory()) { fs::permissions(entry.path(), fs::perms(0555)); }
    }
    fs::permissions(own.toStdString(), fs::perms(0555));
    const auto readOnly = readPackage(own);
    readOnly->child(u"images"_s)->pc_replaceSubFileWrapperNamed(u"new.png"_s, "x");
    savePackage(*readOnly, own);
    EXPECT_EQ(snapshotOf(own).at("images").mode, 0555);
    EXPECT_EQ(snapshotOf(own).at("images/new.png").content, "x");
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
}

/// Saves in a process of its own, which dies at the moment.
void dieWhileSaving(const QString& path, Moment moment) {
    const pid_t process = ::fork();
    if (process == 0) {
        setInterference([moment](Moment now) {
            if (now == moment) { ::_exit(0); }
        });
        const auto root = readPackage(path);
        savePackage(*root, path);
        ::_exit(1);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    ASSERT_EQ(status, 0);
}

TEST_F(PackageStoreTest, RemovesItsLeftoversAndNothingElse) {
    const std::string base = directory().toStdString() + "/";
    for (const char* planted :
         {".Demo.tweenery.saving-deadbeef", ".Demo.tweenery.set-aside-deadbee0",
          ".Demo.tweenery.saving-0123abcd"}) {
        fs::create_directories(base + planted + "/letters");
    }
    // A mark that names another folder.
    std::ofstream(base + ".Demo.tweenery.saving-0123abcd.mark") << "tweenery save 1 2 3\n";
    const auto planted = snapshotOf(directory());
    dieWhileSaving(path(), Moment::PackageIsBuilt);
    EXPECT_EQ(hiddenEntriesIn(directory()).size(), 5U);
    const auto before = snapshotOf(directory());
    const auto root = readPackage(path());
    EXPECT_EQ(snapshotOf(directory()), before) << "reading writes nothing";
    savePackage(*root, path());
    EXPECT_THAT(
        hiddenEntriesIn(directory()),
        UnorderedElementsAre(".Demo.tweenery.saving-deadbeef", ".Demo.tweenery.set-aside-deadbee0",
                             ".Demo.tweenery.saving-0123abcd"));
    EXPECT_TRUE(snapshotOf(directory()).contains(".Demo.tweenery.saving-0123abcd/letters"));
}

TEST_F(PackageStoreTest, KeepsWhatComesIntoThePlaceWhileItSaves) {
    const auto root = readPackage(path());
    root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "changed");
    const std::string foreign = directory().toStdString() + "/foreign";
    fs::create_directories(foreign + "/deep");
    std::ofstream(foreign + "/deep/letter") << "dear";
    const auto expected = snapshotOf(QString::fromStdString(foreign));
    setInterference([&](Moment now) {
        if (now != Moment::PackageIsBuilt) { return; }
        fs::rename(path().toStdString(), path().toStdString() + " moved");
        fs::rename(foreign, path().toStdString());
    });
    EXPECT_EQ(errorOf([&] { savePackage(*root, path()); }),
              path().toStdString() + ": was replaced by another program while it was saved");
    setInterference(nullptr);
    EXPECT_EQ(snapshotOf(path()), expected);
    EXPECT_EQ(snapshotOf(path() + u" moved"_s).at("canvas").content, "the canvas");
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
}

TEST_F(PackageStoreTest, RefusesASaveDuringAnotherOne) {
    const auto root = readPackage(path());
    const int lock = ::open(path().toUtf8(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    EXPECT_EQ(errorOf([&] { savePackage(*root, path()); }),
              path().toStdString() + ": is being saved by another program");
    ::close(lock);
    savePackage(*root, path());
}

// As a save leaves it that dies between its two steps where the file system cannot exchange.
TEST_F(PackageStoreTest, FindsAPackageThatWasSetAsideAndPutsItBackWhenItSaves) {
    const std::string aside = directory().toStdString() + "/.Demo.tweenery.set-aside-00000000";
    const auto before = snapshotOf(path());
    const auto root = readPackage(path());
    struct stat status {};
    ASSERT_EQ(::stat(path().toUtf8(), &status), 0);
    fs::rename(path().toStdString(), aside);
    EXPECT_EQ(errorOf([&] { readPackage(path()); }), path().toStdString() + ": does not exist");
    std::ofstream(directory().toStdString() + "/.Demo.tweenery.saving-00000000.mark")
        << "tweenery save " << status.st_dev << " 1 " << status.st_ino << "\n";
    const auto whole = snapshotOf(directory());
    EXPECT_EQ(readPackage(path())->fileWrappers().size(), root->fileWrappers().size());
    EXPECT_EQ(snapshotOf(directory()), whole) << "reading writes nothing";
    savePackage(*root, path());
    EXPECT_EQ(snapshotOf(path()), before);
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
}

TEST_F(PackageStoreTest, CopiesShareNothingWithThePackage) {
    const auto root = readPackage(path());
    const auto origin = root->child(u"canvas"_s)->origin();
    const QString copy = directory() + u"/Copy.tweenery"_s;
    writePackageCopy(*root, copy);
    EXPECT_EQ(root->child(u"canvas"_s)->origin(), origin);
    EXPECT_NE(inodeOf(inPackage("canvas")), inodeOf((copy + u"/canvas"_s).toStdString()));
    EXPECT_EQ(errorOf([&] { writePackageCopy(*root, copy); }),
              copy.toStdString() + ": already exists");
    root->pc_deleteSubFileWrapperNamed(u"canvas"_s);
    const auto before = snapshotOf(copy);
    EXPECT_EQ(errorOf([&] { writePackageCopy(*root, copy, true); }),
              copy.toStdString() + ": is no package that could be replaced");
    EXPECT_EQ(snapshotOf(copy), before);
    std::ofstream((copy + u"/version"_s).toStdString()) << versionArchive(14).toStdString();
    writePackageCopy(*root, copy, true);
    EXPECT_FALSE(snapshotOf(copy).contains("canvas"));
    EXPECT_EQ(snapshotOf(copy).size() + 1, snapshotOf(path()).size());
    const QString file = path() + u"/version"_s;
    EXPECT_EQ(errorOf([&] { writePackageCopy(*root, file, true); }),
              file.toStdString() + ": is not a directory");
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
}

// Enough directories for the helper threads to join in.
TEST_F(PackageStoreTest, SavesBigPackages) {
    const auto root = readPackage(path());
    const auto animations = root->child(u"animations"_s);
    for (int i = 0; i < 500; ++i) {
        animations->pc_ensureSubfileWrapperDirectoryExistsWithName(QString::number(i))
            ->pc_replaceSubFileWrapperNamed(u"xScale.data"_s, QByteArray::number(i));
    }
    savePackage(*root, path());
    EXPECT_THAT(entriesChangedOnDisk(*root, path()), IsEmpty());
    const auto reread = readPackage(path());
    EXPECT_EQ(reread->debugDescriptionWithIndent({}), root->debugDescriptionWithIndent({}));
    for (const int serial : {1, 2}) {  // the second while the first may still be removing
        root->pc_replaceSubFileWrapperNamed(u"canvas"_s, QByteArray::number(serial));
        savePackage(*root, path());
    }
    for (int tries = 0; tries < 1000 && !hiddenEntriesIn(directory()).empty(); ++tries) {
        ::usleep(10000);
    }
    EXPECT_THAT(hiddenEntriesIn(directory()), IsEmpty());
    std::ofstream(inPackage("animations/321/xScale.data")) << "outside";
    const auto before = snapshotOf(directory());
    EXPECT_EQ(errorOf([&] { savePackage(*root, path()); }),
              "animations/321/xScale.data: was changed on disk since it was opened");
    EXPECT_EQ(snapshotOf(directory()), before);
}

TEST_F(PackageStoreTest, WritesSingleFilesAtomically) {
    const std::string target = inPackage("canvas");
    const auto content = [&](const char* entry) { return snapshotOf(path()).at(entry); };
    writeFileAtomically(path() + u"/canvas"_s, "new");
    EXPECT_EQ(content("canvas"), (EntrySnapshot{'f', 0640, "new"}));
    fs::create_symlink("canvas", inPackage("link"));
    writeFileAtomically(path() + u"/link"_s, "own");
    EXPECT_EQ(content("link").kind, 'f');
    EXPECT_EQ(content("canvas").content, "new");
    writeFileAtomically(path() + u'/' + QString(255, u'n'), "long");
    EXPECT_EQ(content(std::string(255, 'n').c_str()).content, "long");
    const auto before = snapshotOf(path());
    EXPECT_EQ(errorOf([&] { writeFileAtomically(path() + u"/images"_s, "x"); }),
              inPackage("images") + ": could not be written: Is a directory");
    EXPECT_EQ(errorOf([&] { writeFileAtomically(path() + u"/none/x"_s, "x"); }),
              inPackage("none/x") + ": could not be written: No such file or directory");
    EXPECT_EQ(snapshotOf(path()), before);
}

}  // namespace
}  // namespace tweenery::test
