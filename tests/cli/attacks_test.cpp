// Small packages that were made to cost much: every verb does its work or says which limit they
// break.

#include "attacks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

QStringList commandOn(QStringList command, const QString& package, const Workshop& shop) {
    const QString verb = command.front();
    command.insert(1, package);
    if (verb == u"copy"_s) { command << shop.path(u"Copy.tweenery"_s); }
    if (verb == u"export"_s) { command << u"--out"_s << shop.path(u"out"_s); }
    if (verb == u"render"_s) { command << u"--out"_s << shop.path(u"p%d.png"_s); }
    if (verb == u"values"_s) { command << u"--at"_s << u"0"_s << u"--json"_s; }
    return command;
}

class Attacks : public testing::TestWithParam<Attack> {};

TEST_P(Attacks, EndInWorkOrInALimit) {
    const Attack& attack = GetParam();
    Workshop shop;
    const QString package = shop.copyOf(u"Minimal"_s);
    attack.make(package);
    for (const QStringList& command : attack.commands) {
        const Outcome run = tweenc(commandOn(command, package, shop));
        SCOPED_TRACE(command.front().toStdString());
        EXPECT_THAT(run.err, Not(HasSubstr("internal error")));
        if (attack.message) {
            EXPECT_EQ(run.code, 1) << run.err;
            EXPECT_THAT(run.err + run.out, HasSubstr(attack.message));
        } else {
            EXPECT_THAT(run.err, Not(HasSubstr("allowed")));
        }
    }
    for (const auto& [path, entry] : snapshotOf(shop.path({}))) {
        const bool isExpected = path.starts_with("P.") || path.starts_with("Copy.") ||
                                path.starts_with("out") || path == "p0.png" || path == ".";
        EXPECT_TRUE(isExpected) << path;
    }
    // For measurements: TWEENERY_KEEP_ATTACKS names a folder that gets the packages.
    if (const char* folder = std::getenv("TWEENERY_KEEP_ATTACKS")) {
        std::filesystem::copy(package.toStdString(),
                              std::string(folder) + "/" + attack.name + ".tweenery",
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::copy_symlinks);
    }
}

std::string nameOf(const testing::TestParamInfo<Attack>& info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Each, Attacks, testing::ValuesIn(attacks()), nameOf);

TEST(Folders, ThatAreNoPackagesAreNotRead) {
    Workshop shop;
    const QString folder = shop.path(u"Pictures"_s);
    std::filesystem::create_directories((folder + u"/deep/er"_s).toStdString());
    QFile huge(folder + u"/deep/huge"_s);
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize(qint64{1} << 40));
    for (const char* verb : {"info", "check", "describe", "dump"}) {
        EXPECT_EQ(tweenc({QString::fromLatin1(verb), folder}).err,
                  "tweenc: " + folder.toStdString() + ": is not a Tweenery package\n");
    }
}

}  // namespace
}  // namespace tweenery::test
