#include "tweenc_runner.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>
#include <set>
#include <sstream>

#include "cli/tweenc.h"
#include "support/test_paths.h"

namespace tweenery::test {

using namespace Qt::StringLiterals;

Outcome tweenc(const QStringList& arguments, const char* answer) {
    std::ostringstream out;
    std::ostringstream err;
    std::istringstream in(answer ? answer : "");
    const int code =
        runTweenc(arguments, {.out = out, .err = err, .in = in, .canAsk = answer != nullptr});
    return {code, out.str(), err.str()};
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) { ADD_FAILURE() << "cannot read " << qPrintable(path); }
    return file.readAll();
}

void replaceContents(const QString& path, const QByteArray& contents) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    file.write(contents);
}

std::vector<std::string> differences(const DirectorySnapshot& a, const DirectorySnapshot& b) {
    std::set<std::string> paths;
    const auto compare = [&paths](const DirectorySnapshot& left, const DirectorySnapshot& right) {
        for (const auto& [path, entry] : left) {
            const auto other = right.find(path);
            const bool isEqual = other != right.end() && other->second.kind == entry.kind &&
                                 other->second.content == entry.content;
            if (!isEqual) { paths.insert(path); }
        }
    };
    compare(a, b);
    compare(b, a);
    return {paths.begin(), paths.end()};
}

namespace {

QString templateOfPlaces() {
    const QString memory = u"/dev/shm"_s;
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/tweenc-XXXXXX"_s;
}

}  // namespace

Workshop::Workshop() : m_directory(templateOfPlaces()) {}

QString Workshop::copyOf(const QString& package, const QString& name) {
    QString copy = path(name);
    std::filesystem::remove_all(copy.toStdString());
    std::filesystem::copy(packagePath(package).toStdString(), copy.toStdString(),
                          std::filesystem::copy_options::recursive);
    return copy;
}

namespace {

struct AnyObject : Archivable {
    std::string_view name;
    const std::function<void(KeyedEncoder&)>& encode;

    AnyObject(std::string_view className, const std::function<void(KeyedEncoder&)>& function)
        : name(className), encode(function) {}
    ArchiveClass archiveClass() const override { return {name}; }
    void encodeWithCoder(KeyedEncoder& coder) const override { encode(coder); }
};

}  // namespace

QByteArray archiveOf(std::string_view className, const std::function<void(KeyedEncoder&)>& encode) {
    return KeyedArchiver::archivedDataWithRootObject(AnyObject(className, encode));
}

QByteArray versionArchive(int32_t version) {
    return archiveOf("PCProjectVersion",
                     [version](KeyedEncoder& coder) { coder.encodeInt("modelVersion", version); });
}

}  // namespace tweenery::test
