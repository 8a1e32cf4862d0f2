#include "bench/package_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <stdexcept>

namespace tweenery::bench {
namespace {

void require(bool succeeded, const char* what) {
    if (!succeeded) { throw std::runtime_error(what); }
}

QByteArray readFile(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    require(file >= 0, "open");
    struct stat status {};
    require(::fstat(file, &status) == 0, "fstat");
    QByteArray data(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
    require(::read(file, data.data(), static_cast<size_t>(data.size())) == data.size(), "read");
    ::close(file);
    return data;
}

void writeFile(const std::string& path, const QByteArray& data, bool flushes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    require(file >= 0, "open for writing");
    require(::write(file, data.constData(), static_cast<size_t>(data.size())) == data.size(),
            "write");
    if (flushes) { require(::fsync(file) == 0, "fsync"); }
    ::close(file);
}

void readDirectory(const std::string& root, const std::string& relative, PackageFiles& into) {
    DIR* directory = ::opendir((root + relative).c_str());
    require(directory != nullptr, "opendir");
    while (const dirent* entry = ::readdir(directory)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") { continue; }
        const std::string path = relative + "/" + name;
        if (entry->d_type == DT_DIR) {
            into.directories.push_back(path);
            readDirectory(root, path, into);
        } else {
            into.files.push_back({path, readFile(root + path)});
        }
    }
    ::closedir(directory);
}

void makeDirectories(const PackageFiles& package, const std::string& root) {
    require(::mkdir(root.c_str(), 0755) == 0, "mkdir");
    for (const std::string& directory : package.directories) {
        require(::mkdir((root + directory).c_str(), 0755) == 0, "mkdir");
    }
}

}  // namespace

PackageFiles readBytes(const QString& path) {
    PackageFiles package;
    readDirectory(path.toStdString(), "", package);
    return package;
}

size_t byteCount(const PackageFiles& package) {
    size_t bytes = 0;
    for (const PackageFiles::File& file : package.files) {
        bytes += static_cast<size_t>(file.data.size());
    }
    return bytes;
}

void writeBytes(const PackageFiles& package, const QString& path) {
    const std::string root = path.toStdString();
    makeDirectories(package, root);
    for (const PackageFiles::File& file : package.files) {
        writeFile(root + file.path, file.data, false);
    }
}

void linkFiles(const PackageFiles& package, const QString& from, const QString& path) {
    const std::string root = path.toStdString();
    const std::string source = from.toStdString();
    makeDirectories(package, root);
    for (size_t i = 1; i < package.files.size(); ++i) {
        const std::string& file = package.files[i].path;
        require(::link((source + file).c_str(), (root + file).c_str()) == 0, "link");
    }
    writeFile(root + package.files[0].path, package.files[0].data, true);
}

void exchange(const QString& a, const QString& b) {
    const std::string first = a.toStdString();
    const std::string second = b.toStdString();
    require(::renameat2(AT_FDCWD, first.c_str(), AT_FDCWD, second.c_str(), RENAME_EXCHANGE) == 0,
            "renameat2");
}

void removeTree(const QString& path) {
    QDir(path).removeRecursively();
}

}  // namespace tweenery::bench
