// Compares our archives with other implementations of the format, where the machine has them.

#include <gtest/gtest.h>

#include <QProcess>
#include <QStandardPaths>

#include "base/errors.h"
#include "storage/keyed_archiver.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class Sample : public Archivable {
 public:
    ArchiveClass archiveClass() const override { return {"PCSample", "PCBase"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override {
        coder.encodeInt("int", -70000);
        coder.encodeInt("small", 200);
        coder.encodeFloat("float", 0.5F);
        coder.encodeBool("bool", true);
        coder.encodeString("text", u"Größe 😀"_s);
        coder.encodeString("null", {});
        coder.encodePoint("point", {0.1, -2});
        coder.encodeObject("self", this);
        coder.encodeStrings("strings", {u"a"_s, QString(300, u'b')});
    }
};

/// What the program prints for `input`; nullopt when it is not installed.
std::optional<QByteArray> outputOf(const QString& program, const QStringList& arguments,
                                   const QByteArray& input) {
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) { return std::nullopt; }
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(path, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(60000);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

TEST(ArchiveOracle, PythonReadsOurArchive) {
    const auto output = outputOf(u"python3"_s,
                                 {u"-c"_s,
                                  uR"py(
import plistlib, sys
archive = plistlib.loads(sys.stdin.buffer.read())
objects = archive['$objects']
follow = lambda value: objects[value.data]
root = follow(archive['$top']['root'])
print(archive['$archiver'], archive['$version'], objects[0], root['self'] == archive['$top']['root'])
print(follow(root['$class'])['$classes'], root['int'], root['small'], root['float'], root['bool'])
print(ascii(follow(root['text'])), root['null'].data, follow(root['point']))
strings = follow(root['strings'])
print(follow(strings['$class'])['$classname'], [len(follow(s)) for s in strings['NS.objects']])
)py"_s},
                                 KeyedArchiver::archivedDataWithRootObject(Sample()));
    if (!output) { GTEST_SKIP() << "python3 is not installed"; }
    EXPECT_EQ(output->toStdString(),
              "NSKeyedArchiver 100000 $null True\n"
              "['PCSample', 'PCBase', 'NSObject'] -70000 200 0.5 True\n"
              "'Gr\\xf6\\xdfe \\U0001f600' 0 {0.1, -2}\n"
              "NSArray [1, 300]\n");
}

TEST(ArchiveOracle, WeReadPythonsArchive) {
    const auto output = outputOf(u"python3"_s,
                                 {u"-c"_s,
                                  uR"py(
import plistlib, sys
uid = plistlib.UID
objects = ['$null',
    {'$class': uid(2), 'int': -5, 'big': 2**40, 'float': 0.1, 'text': uid(3), 'null': uid(0),
     'array': uid(4), 'data': b'xyz'},
    {'$classname': 'PCSample', '$classes': ['PCSample', 'NSObject']},
    'Gr\u00f6\u00dfe', {'$class': uid(5), 'NS.objects': [uid(3)] * 300},
    {'$classname': 'NSArray', '$classes': ['NSArray', 'NSObject']}]
sys.stdout.buffer.write(plistlib.dumps({'$archiver': 'NSKeyedArchiver', '$version': 100000,
    '$top': {'root': uid(1)}, '$objects': objects}, fmt=plistlib.FMT_BINARY))
)py"_s},
                                 {});
    if (!output) { GTEST_SKIP() << "python3 is not installed"; }
    const KeyedUnarchiver archive(*output, u"python"_s);
    archive.verifyEverything();
    const KeyedDecoder root = archive.root();
    root.requireClass("PCSample");
    EXPECT_EQ(root.decodeInt("int"), -5);
    EXPECT_EQ(root.decodeDouble("big"), 0x1p40);
    EXPECT_THROW(root.decodeInt("big"), InputError);
    EXPECT_EQ(root.decodeDouble("float"), 0.1);
    EXPECT_EQ(root.decodeString("text"), u"Größe"_s);
    EXPECT_EQ(root.kindOfKey("null"), ArchivedKind::Null);
    EXPECT_EQ(root.kindOfKey("data"), ArchivedKind::Data);
    EXPECT_EQ(root.decodeStrings("array").size(), 300);
}

TEST(ArchiveOracle, PlistutilReadsOurArchive) {
    const auto xml = outputOf(u"plistutil"_s, {u"-i"_s, u"-"_s, u"-f"_s, u"xml"_s},
                              KeyedArchiver::archivedDataWithRootObject(Sample()));
    if (!xml) { GTEST_SKIP() << "plistutil is not installed"; }
    const QString text = QString::fromUtf8(*xml);
    for (const auto* part : {u"<integer>-70000</integer>", u"<string>Größe 😀</string>",
                             u"<string>{0.1, -2}</string>", u"<key>CF$UID</key>"}) {
        EXPECT_TRUE(text.contains(QStringView(part))) << text.toStdString();
    }
}

}  // namespace
}  // namespace tweenery::test
