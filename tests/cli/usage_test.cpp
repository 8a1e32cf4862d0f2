// Wrong usage, and what the program says to it.

#include <gtest/gtest.h>

#include <filesystem>

#include <QDir>
#include <QProcess>
#include <sstream>

#include "cli/tweenc.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

TEST(Usage, WrongOnesAreToldApart) {
    struct Case {
        QStringList arguments;
        const char* firstErrorLine;
    };
    const std::vector<Case> cases = {
        {{u"frobnicate"_s}, "tweenc: frobnicate: is no verb; tweenc --help lists them"},
        {{u"info"_s}, "tweenc: info: needs PKG..."},
        {{u"info"_s, u""_s}, "tweenc: info: got an empty path"},
        {{u"info"_s, u"--yaml"_s, u"P"_s}, "tweenc: info: Unknown option 'yaml'."},
        {{u"dump"_s, u"P"_s, u"Q"_s}, "tweenc: dump: takes only PKG"},
        {{u"values"_s, u"P"_s, u"--json"_s}, "tweenc: values: needs --at MS[,MS...]"},
        {{u"values"_s, u"P"_s, u"--at"_s, u"0,x"_s, u"--json"_s},
         "tweenc: values: --at takes whole milliseconds, 0 or later, not 'x'"},
        {{u"values"_s, u"P"_s, u"--at=-1"_s, u"--json"_s},
         "tweenc: values: --at takes whole milliseconds, 0 or later, not '-1'"},
        {{u"values"_s, u"P"_s, u"--at"_s, u"2147483648"_s, u"--json"_s},
         "tweenc: values: --at takes whole milliseconds, 0 or later, not '2147483648'"},
        {{u"values"_s, u"P"_s, u"--at"_s, u"1,"_s, u"--json"_s},
         "tweenc: values: --at takes whole milliseconds, 0 or later, not ''"},
        {{u"export"_s, u"P"_s}, "tweenc: export: needs --out DIR"},
        {{u"export"_s, u"P"_s, u"--out"_s, u"d"_s, u"--lang"_s, u"c"_s},
         "tweenc: export: --lang takes objc or swift, not 'c'"},
        {{u"export"_s, u"P"_s, u"--out"_s, u"d"_s, u"--platform"_s, u"tv"_s},
         "tweenc: export: --platform takes ios or mac, not 'tv'"},
        {{u"export"_s, u"P"_s, u"--out"_s, u"d"_s, u"--date"_s, u"a\nb"_s},
         "tweenc: export: --date takes one line of text"},
        {{u"export"_s, u"P"_s, u"--out"_s, u"--json"_s},
         "tweenc: export: --out takes a value, not --json; one that begins with a dash is given as "
         "--out=..."},
        {{u"export"_s, u"P"_s, u"--out"_s},
         "tweenc: export: --out takes a value; one that begins with a dash is given as --out=..."},
        {{u"info"_s, u"-x.tweenery"_s},
         "tweenc: info: -x.tweenery is no option; a name that begins with a dash goes behind --"},
        {{u"export"_s, u"P"_s, u"--out=d"_s, u"--clip"_s, u"--no-clip"_s},
         "tweenc: export: takes --clip or --no-clip, not both"},
        {{u"export"_s, u"P"_s, u"--out=d"_s, u"--no-images"_s, u"--clean-images"_s},
         "tweenc: export: takes --clean-images or --no-images, not both"},
        {{u"export"_s, u"P"_s, u"--out=d"_s, u"--lang=objc"_s, u"--swift=first"_s},
         "tweenc: export: --swift cannot be combined with --lang objc"},
        {{u"export"_s, u"P"_s, u"--out=d"_s, u"--lang=objc"_s, u"--lang=swift"_s},
         "tweenc: export: takes --lang once"},
        {{u"check"_s, u"P"_s, u"--quiet"_s, u"--verbose"_s},
         "tweenc: check: takes --quiet or --verbose, not both"},
        {{u"update"_s, u"P"_s, u"--backup="_s}, "tweenc: update: --backup takes a directory"},
        {{u"copy"_s, u"P"_s, u"Q"_s},
         "tweenc: copy: writes packages, named like Name.tweenery, not 'Q'"},
        {{u"new"_s, u"Q.tweenery"_s, u"--canvas"_s, u"0x10"_s},
         "tweenc: new: --canvas takes a width and a height from 1 to 16384, such as 320x480"},
        {{u"new"_s, u"Q.tweenery"_s, u"--canvas"_s, u"99999x1"_s},
         "tweenc: new: --canvas takes a width and a height from 1 to 16384, such as 320x480"},
    };
    for (const Case& c : cases) {
        const Outcome run = tweenc(c.arguments);
        EXPECT_EQ(run.code, 2) << c.firstErrorLine;
        EXPECT_EQ(run.firstErrorLine(), c.firstErrorLine);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'),
                  c.arguments.front() == u"frobnicate" ? 1 : 2);
    }
    EXPECT_EQ(tweenc({}).code, 2);
    EXPECT_EQ(tweenc({u"--version"_s}).out, "tweenc " TWEENERY_VERSION "\n");
}

TEST(Usage, AnAnimationThatIsNotThereIsAnsweredWithThoseThatAre) {
    const Outcome run = tweenc({u"values"_s, packagePath(u"Bounce"_s), u"--animation"_s, u"Nod"_s,
                                u"--at"_s, u"0"_s, u"--json"_s});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err,
              "tweenc: " + packagePath(u"Bounce"_s).toStdString() +
                  "/animations: there is none named 'Nod'; there are 'Bounce', 'Easing Parade', "
                  "'Idle Loop'\n");
}

TEST(Output, ThatCannotBeWrittenIsAnError) {
    std::ostream full(nullptr);
    std::ostringstream err;
    std::istringstream in;
    EXPECT_EQ(runTweenc({u"info"_s, packagePath(u"Card"_s)}, {.out = full, .err = err, .in = in}),
              1);
    EXPECT_EQ(err.str(), "tweenc: standard output: could not be written\n");
}

TEST(Program, TakesNamesAsTheyAre) {
    QTemporaryDir place;
    const std::string package = place.path().toStdString() + "/b\xff.tweenery";
    std::filesystem::copy(packagePath(u"Bounce"_s).toStdString(), package,
                          std::filesystem::copy_options::recursive);
    QProcess shell;
    shell.setWorkingDirectory(place.path());
    shell.start(u"sh"_s,
                {u"-c"_s,
                 u"p=$(printf 'b\\377.tweenery'); q=$(printf '\\376.tweenery'); "
                 "\"$0\" check \"$p\" && \"$0\" copy \"$p\" \"$q\" && "
                 "\"$0\" export --quiet \"$q\" --out \"${p%.*}\" && \"$0\" info \"$q.gone\""_s,
                 QStringLiteral(TWEENERY_TWEENC)});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.exitCode(), 1);
    EXPECT_EQ(shell.readAllStandardError().toStdString(),
              "tweenc: \\xfe.tweenery.gone: does not exist\n");
    EXPECT_TRUE(std::filesystem::exists(place.path().toStdString() + "/\xfe.tweenery/version"));
    EXPECT_TRUE(std::filesystem::exists(place.path().toStdString() + "/b\xff/images"));
    std::filesystem::remove_all(place.path().toStdString());  // names that Qt cannot spell
}

TEST(Program, IsQuietAndLeavesTheUsersHomeAlone) {
    QTemporaryDir home;
    QProcess program;
    QProcessEnvironment environment;
    environment.insert(u"HOME"_s, home.path());
    environment.insert(u"LC_ALL"_s, u"C"_s);  // the libraries complain of it
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(TWEENERY_TWEENC), {u"info"_s, packagePath(u"Tags"_s)});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardError().toStdString(), "");
    EXPECT_EQ(program.readAllStandardOutput().toStdString(),
              tweenc({u"info"_s, packagePath(u"Tags"_s)}).out);
    EXPECT_TRUE(QDir(home.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

}  // namespace
}  // namespace tweenery::test
