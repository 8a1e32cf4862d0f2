#include <gtest/gtest.h>

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "cli/shell_documents.h"
#include "cli/verbs.h"
#include "support/files.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// What the program says on the text: its standard output, and its error output where it fails.
QString answerOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished()) { return u"did not end"_s; }
    const QString output = QString::fromUtf8(process.readAll()).trimmed();
    return process.exitCode() == 0 ? output : u"failed: "_s + output;
}

class ShellDocuments : public testing::Test {
 protected:
    QTemporaryDir folder;
    QString written(const QString& name, const QByteArray& text) {
        const QString path = folder.filePath(name);
        replaceContents(path, text);
        return path;
    }
};

TEST_F(ShellDocuments, BashCompletesVerbsOptionsValuesAndPaths) {
    const QString script = written(u"tweenc"_s, bashCompletion(allVerbs()));
    written(u"Kite.tweenery"_s, {});
    struct Case {
        const char* line;
        const char* completions;
    };
    const Case cases[] = {
        {"tweenc ren", "render"},
        {"tweenc render --an", "--animation"},
        {"tweenc export --lang ", "objc swift"},
        {"tweenc export --lang s", "swift"},
        {"tweenc export --out Ki", "Kite.tweenery"},
        {"tweenc info Ki", "Kite.tweenery"},
        {"tweenc values --at ", ""},
    };
    const QString program =
        u"cd \"$1\"; source \"$2\"; line=$3; COMP_WORDS=($line); "
        u"[[ $line == *' ' ]] && COMP_WORDS+=(''); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
        u"_tweenc; echo \"${COMPREPLY[*]}\""_s;
    for (const Case& item : cases) {
        EXPECT_EQ(answerOf(u"bash"_s, {u"-c"_s, program, u"bash"_s, folder.path(), script,
                                       QString::fromLatin1(item.line)}),
                  QString::fromLatin1(item.completions))
            << item.line;
    }
}

TEST_F(ShellDocuments, AreUnderstoodByTheirReaders) {
    const QString page = written(u"tweenc.1"_s, manualPage(allVerbs(), u"2030-01-31"_s));
    const QString zsh = written(u"_tweenc"_s, zshCompletion(allVerbs()));
    const QString fish = written(u"tweenc.fish"_s, fishCompletion(allVerbs()));
    const QStringList readers[] = {{u"groff"_s, u"-man"_s, u"-ww"_s, u"-z"_s, page},
                                   {u"zsh"_s, u"-n"_s, zsh},
                                   {u"fish"_s, u"-n"_s, fish}};
    for (const QStringList& reader : readers) {
        if (QStandardPaths::findExecutable(reader.first()).isEmpty()) { continue; }
        EXPECT_EQ(answerOf(reader.first(), reader.mid(1)), QString())
            << reader.first().toStdString();
    }
    for (const Verb* verb : allVerbs()) {
        for (const VerbOption& option : verb->options) {
            const QByteArray name(option.name);
            EXPECT_TRUE(contentsOf(zsh).contains("'--" + name + '['));
            EXPECT_TRUE(contentsOf(fish).contains(" -l " + name + " -d "));
            EXPECT_TRUE(contentsOf(page).contains("\\-\\-" + QByteArray(name).replace("-", "\\-")));
        }
    }
}

TEST(CompletionVerb, PrintsWhatItIsAskedForAndRefusesOtherShells) {
    EXPECT_EQ(QByteArray::fromStdString(tweenc({u"completion"_s, u"bash"_s}).out),
              bashCompletion(allVerbs()));
    const Outcome refused = tweenc({u"completion"_s, u"csh"_s});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.firstErrorLine(),
              "tweenc: completion: knows bash, zsh, fish and man, not csh");
}

}  // namespace
}  // namespace tweenery::test
