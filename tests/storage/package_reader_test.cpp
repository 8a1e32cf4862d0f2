#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "storage/package_fixture.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

class PackageReaderTest : public PackageFixture {};

void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

void makeNested(const std::string& path, int depth) {
    fs::path nested = path;
    for (int i = 0; i < depth; ++i) {
        nested /= "d";
    }
    fs::create_directories(nested);
}

TEST_F(PackageReaderTest, ReadsEverything) {
    const auto root = readPackage(path());
    EXPECT_EQ(root->debugDescriptionWithIndent({}),
              u"Demo.tweenery\n"
              u"|     animations\n"
              u"|     |     A1\n"
              u"|     |     |     E1\n"
              u"|     |     |     |     opacity.data\n"
              u"|     |     |     name.data (Bounce)\n"
              u"|     canvas\n"
              u"|     empty\n"
              u"|     images\n"
              u"|     |     link\n"
              u"|     unknown entry ö\n"
              u"|     version\n"_s);
    EXPECT_EQ(root->child(u"unknown entry ö"_s)->contents(), QByteArray("\0\xff", 2));
    const auto link = root->child(u"images"_s)->child(u"link"_s);
    EXPECT_EQ(link->kind(), FileWrapper::Kind::SymbolicLink);
    EXPECT_EQ(link->contents(), "../outside");
}

TEST_F(PackageReaderTest, NamesTheRootAfterThePath) {
    fs::create_directory_symlink(path().toStdString(), (directory() + u"/Linked"_s).toStdString());
    const std::pair<QString, QString> cases[] = {
        {path(), u"Demo.tweenery"_s},
        {path() + u"//"_s, u"Demo.tweenery"_s},
        {path() + u"/images/.."_s, u"Demo.tweenery"_s},
        {directory() + u"/Linked"_s, u"Linked"_s},
    };
    for (const auto& [opened, name] : cases) {
        EXPECT_EQ(readPackage(opened)->filename(), name);
    }
}

TEST_F(PackageReaderTest, RefusesWhatIsNoPackage) {
    const std::string root = path().toStdString();
    const std::pair<QString, std::string> cases[] = {
        {path() + u"/canvas"_s, root + "/canvas: is not a directory"},
        {path() + u"/none"_s, root + "/none: does not exist"},
        {path() + u"/none/none"_s,
         root + "/none/none: its directory could not be opened: No such file or directory"},
        {u"/dev/null"_s, "/dev/null: is not a directory"},
        {QString(), ": is no path"},
        {path() + QChar(0) + u"x"_s, root + "\\x00x: is no path"},
    };
    for (const auto& [opened, message] : cases) {
        EXPECT_EQ(errorOf([&] { readPackage(opened); }), message);
    }
}

struct HostileEntry {
    const char* what;
    std::function<void(const std::string& package)> make;
    std::string message;  // "" when the package is to be read
};

TEST_F(PackageReaderTest, NeverReadsAnythingButFilesOfThePackage) {
    const std::string deepest = [] {
        std::string text = "deep";
        for (int i = 0; i < 64; ++i) {
            text += "/d";
        }
        return text;
    }();
    const HostileEntry cases[] = {
        {"pipe", [](auto& p) { ::mkfifo((p + "/pipe").c_str(), 0600); },
         "pipe: is a named pipe, which has no place in a package"},
        {"socket", [](auto& p) { makeSocket(p + "/animations/s"); },
         "animations/s: is a socket, which has no place in a package"},
        {"link to a device", [](auto& p) { fs::create_symlink("/dev/zero", p + "/zero"); }, ""},
        {"link to itself", [](auto& p) { fs::create_symlink("loop", p + "/loop"); }, ""},
        {"link up", [](auto& p) { fs::create_directory_symlink("..", p + "/images/up"); }, ""},
        {"huge file",
         [](auto& p) {
             std::ofstream(p + "/huge") << "x";
             fs::resize_file(p + "/huge", (uintmax_t(1) << 30) + 1);
         },
         "huge: bytes of an entry: 1073741825, more than the 1073741824 that are allowed"},
        {"64 deep", [](auto& p) { makeNested(p + "/deep", 63); }, ""},
        {"65 deep", [](auto& p) { makeNested(p + "/deep", 64); },
         deepest + ": is nested more than 64 directories deep"},
        {"name that is not UTF-8", [](auto& p) { std::ofstream(p + "/images/a\xff\xc3.png"); },
         "images/a\\xff\\xc3.png: has a name that is not UTF-8"},
        {"control characters in the name",
         [](auto& p) { ::mkfifo((p + "/a\n\x1b[2J").c_str(), 0600); },
         "a\\x0a\\x1b[2J: is a named pipe, which has no place in a package"},
    };
    for (const HostileEntry& hostile : cases) {
        const QString copy = directory() + u"/Hostile.tweenery"_s;
        fs::remove_all(copy.toStdString());
        fs::copy(path().toStdString(), copy.toStdString(),
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        hostile.make(copy.toStdString());
        EXPECT_EQ(errorOf([&] { readPackage(copy); }),
                  hostile.message.empty() ? "nothing thrown" : hostile.message)
            << hostile.what;
    }
}

TEST_F(PackageReaderTest, NamesWhatCannotBeOpened) {
    const Unprivileged unprivileged;
    const std::string own = (directory() + u"/Own.tweenery"_s).toStdString();
    fs::create_directories(own + "/images");
    std::ofstream(own + "/canvas") << "x";
    fs::permissions(own + "/canvas", fs::perms::none);
    EXPECT_EQ(errorOf([&] { readPackage(QString::fromStdString(own)); }),
              "canvas: could not be opened: Permission denied");
    fs::rename(own + "/canvas", own + "/version");
    fs::permissions(own + "/version", fs::perms::owner_all);
    fs::permissions(own + "/images", fs::perms::none);
    EXPECT_EQ(errorOf([&] { readPackage(QString::fromStdString(own)); }),
              "images: could not be opened: Permission denied");
    fs::permissions(own, fs::perms::none);
    EXPECT_EQ(errorOf([&] { readPackage(QString::fromStdString(own)); }),
              own + ": could not be opened: Permission denied");
    fs::permissions(own, fs::perms::owner_all);
}

// Enough directories for the helper threads to join in.
TEST_F(PackageReaderTest, ReportsAFaultFoundByAnyThread) {
    constexpr int directories = 1000;
    for (int i = 0; i < directories; ++i) {
        const std::string name = "animations/" + std::to_string(i);
        fs::create_directory(inPackage(name));
        write(name + "/xScale.data", std::to_string(i));
    }
    const auto root = readPackage(path());
    const auto& animations = root->child(u"animations"_s)->fileWrappers();
    EXPECT_EQ(animations.size(), directories + 1);
    for (int i = 0; i < directories; ++i) {
        EXPECT_EQ(animations.at(QString::number(i))->child(u"xScale.data"_s)->contents(),
                  QByteArray::number(i));
    }
    ::mkfifo(inPackage("animations/700/pipe").c_str(), 0600);
    EXPECT_EQ(errorOf([&] { readPackage(path()); }),
              "animations/700/pipe: is a named pipe, which has no place in a package");
}

}  // namespace
}  // namespace tweenery::test
