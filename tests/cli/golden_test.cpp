// What the verbs print for the packages in tests/packages, compared with the files in goldens/.
// --update-goldens rewrites them.

#include <gtest/gtest.h>

#include <QDir>

#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct GoldenCase {
    const char* golden;     // file name
    const char* arguments;  // separated by blanks; '+' stands for one inside
};

constexpr GoldenCase cases[] = {
    {"info_all.txt", "info Bounce.tweenery Card.tweenery Minimal.tweenery Tags.tweenery"},
    {"info_card.json", "info --json Card.tweenery/"},
    {"describe_minimal.txt", "describe Minimal.tweenery"},
    {"hierarchy_card.txt", "describe --hierarchy Card.tweenery"},
    {"dump_minimal.json", "dump Minimal.tweenery"},
    {"dump_card.json", "dump Card.tweenery"},
    {"dump_version.json", "dump Card.tweenery/version"},
    {"dump_preferences.json", "dump Minimal.tweenery/preferences"},
    {"dump_canvas.json", "dump Minimal.tweenery/canvas"},
    {"dump_timeline.json",
     "dump "
     "Bounce.tweenery/animations/945446F1-364A-4CD6-8B4D-89A18B770D34/"
     "77375579-B3C0-4DF6-947D-BC939720E7EB/xScale.data"},
    {"values_setup_card.json", "values Card.tweenery --at 0 --json"},
    {"values_bounce.json", "values Bounce.tweenery --animation Bounce --at 0,250,1600 --json"},
    {"values_idle_loop.json",
     "values Bounce.tweenery --animation Idle+Loop --at 1000,2000,2500,5000 --json"},
    {"values_flip.json", "values Card.tweenery --animation Flip --at 599,600 --json"},
    {"values_shuffle.json",
     "values Card.tweenery --animation 867761D7-6D15-4632-B14C-00D93A69DC83 --at 100,900 --json"},
    {"check_all.txt", "check Bounce.tweenery Tags.tweenery"},
    {"check_tags.json", "check --json Tags.tweenery"},
    {"help.txt", "--help"},
    {"help_export.txt", "export --help"},
};

QString goldenPath(const QString& name) {
    return sourcePath(u"tests/cli/goldens/"_s + name);
}

class Golden : public testing::TestWithParam<GoldenCase> {};

TEST_P(Golden, IsWhatIsPrinted) {
    const GoldenCase& c = GetParam();
    QDir::setCurrent(sourcePath(u"tests/packages"_s));
    QStringList arguments = QString::fromLatin1(c.arguments).split(u' ');
    arguments.replaceInStrings(u"+"_s, u" "_s);
    const Outcome run = tweenc(arguments);
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    const QString path = goldenPath(QString::fromLatin1(c.golden));
    if (updateGoldens) { replaceContents(path, QByteArray::fromStdString(run.out)); }
    EXPECT_EQ(run.out, contentsOf(path).toStdString());
}

std::string caseName(const testing::TestParamInfo<GoldenCase>& info) {
    return QString::fromLatin1(info.param.golden).replace(u'.', u'_').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Verbs, Golden, testing::ValuesIn(cases), caseName);

TEST(Goldens, HaveACaseEach) {
    QStringList expected;
    for (const GoldenCase& c : cases) {
        expected << QString::fromLatin1(c.golden);
    }
    QStringList present = QDir(goldenPath({})).entryList(QDir::Files);
    expected.sort();
    present.sort();
    EXPECT_EQ(present, expected);
}

}  // namespace
}  // namespace tweenery::test
