#include "tweenc_runner.h"

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

Workshop::Workshop() : m_directory(templateOfFastPlaces()) {}

QString Workshop::copyOf(const QString& package, const QString& name) {
    QString copy = path(name);
    std::filesystem::remove_all(copy.toStdString());
    std::filesystem::copy(packagePath(package).toStdString(), copy.toStdString(),
                          std::filesystem::copy_options::recursive);
    return copy;
}

std::vector<QStringList> readingCommands(const Workshop& shop, const QString& package,
                                         const QStringList& moreOfValues) {
    return {{u"check"_s, package},
            {u"info"_s, package},
            {u"describe"_s, package},
            {u"dump"_s, package},
            QStringList{u"values"_s, package, u"--at"_s, u"0,100"_s, u"--json"_s} + moreOfValues,
            {u"copy"_s, package, shop.path(u"Copy.tweenery"_s), u"--force"_s},
            {u"export"_s, package, u"--out"_s, shop.path(u"out"_s)}};
}

}  // namespace tweenery::test
