// What the command line makes of a certificate; tests/certify has the certificates themselves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "certify/workshop.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Certify : public testing::Test {
 protected:
    void SetUp() override {
        if (tweenery::Workshop::usualCompiler().isEmpty()) { GTEST_SKIP() << "there is no clang"; }
    }
};

QStringList certifyCommand(const QString& package, const QStringList& options = {}) {
    return QStringList{u"certify"_s, packagePath(package)} + options;
}

TEST_F(Certify, TellsEachPartWithItsCausesAndWritesTheSameAsJson) {
    Workshop shop;
    const QString path = shop.path(u"report.json"_s);
    const Outcome run = tweenc(
        certifyCommand(u"Card"_s, {u"--platform=ios"_s, u"--lang=swift"_s, u"--report"_s, path}));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_THAT(run.out, AllOf(HasSubstr("Card.tweenery: certified: "), HasSubstr("  the scene: "),
                               HasSubstr("  animation 'Flip': "),
                               HasSubstr("as the export warns; the animation is not compared"),
                               HasSubstr("steps of a thousandth; "),
                               HasSubstr("  the Swift, call by call: ")));
    const Outcome json =
        tweenc(certifyCommand(u"Card"_s, {u"--platform=ios"_s, u"--lang=swift"_s, u"--json"_s}));
    const auto printed = QJsonDocument::fromJson(QByteArray::fromStdString(json.out));
    const auto written = QJsonDocument::fromJson(contentsOf(path)).object();
    EXPECT_EQ(printed.array().first().toObject()[u"result"_s].toObject(), written);
    EXPECT_TRUE(written[u"certified"_s].toBool());
}

TEST_F(Certify, EndsWithOneAndTheReasonWhenItCertifiesNothing) {
    Workshop shop;
    const QString path = shop.path(u"report.json"_s);
    const Outcome run = tweenc(certifyCommand(u"Tags"_s, {u"--report"_s, path}));
    EXPECT_EQ(run.code, 1);
    EXPECT_THAT(run.err, HasSubstr("Tags.tweenery: not certified: the export does not compile"));
    EXPECT_THAT(run.out, HasSubstr("  the export warns: 'default'"));
    EXPECT_FALSE(QJsonDocument::fromJson(contentsOf(path)).object()[u"certified"_s].toBool(true));
    const QString inside = shop.copyOf(u"Minimal"_s) + u"/report.json"_s;
    EXPECT_EQ(tweenc({u"certify"_s, shop.path(u"P.tweenery"_s), u"--report"_s, inside}).code, 1);
    EXPECT_FALSE(QFile::exists(inside));
}

TEST_F(Certify, IsQuietWhenAllIsWell) {
    const Outcome run = tweenc(certifyCommand(u"Minimal"_s, {u"--quiet"_s}));
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out + run.err, "");
}

TEST(ExactExport, HasAllDigits) {
    Workshop shop;
    for (const QString& language : {u"objc"_s, u"swift"_s}) {
        const auto sourceOf = [&](const QStringList& options) {
            const QString out = shop.path(u"out"_s);
            const Outcome run = tweenc(QStringList{u"export"_s, packagePath(u"Bounce"_s),
                                                   u"--out"_s, out, u"--lang"_s, language} +
                                       options);
            EXPECT_EQ(run.code, 0);
            EXPECT_EQ(run.err.find("decimals") == std::string::npos, !options.isEmpty())
                << "a note on printed key times";
            const QString extension = language == u"swift" ? u"swift"_s : u"m"_s;
            return contentsOf(out + u"/BounceView."_s + extension).toStdString();
        };
        EXPECT_THAT(sourceOf({}), AllOf(HasSubstr("0.062"), Not(HasSubstr("0.0625"))));
        EXPECT_THAT(sourceOf({u"--exact"_s}),
                    AllOf(HasSubstr("0.0625"), HasSubstr("0.5625"), Not(HasSubstr("0.062)"))));
    }
}

}  // namespace
}  // namespace tweenery::test
