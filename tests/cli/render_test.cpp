// Pictures of the packages in tests/packages at several times, compared with the files in
// goldens/pictures (--update-goldens rewrites them), and what the verb refuses.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <csignal>
#include <sstream>

#include "cli/tweenc.h"
#include "editor/layers/tweenery_style.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// What two pictures of the same scene may differ in. The raster engine and the JPEG decoder choose
// their instructions by the processor, and those round differently: most values by one, next to
// hard edges of turned artwork by a step of interpolation, which is a sixteenth.
constexpr double kMeanDifference = 0.25;  // of 255, over all values
constexpr int kLargestStep = 20;          // of 255
constexpr double kShareBeyondStep = 0.001;

struct PictureCase {
    const char* golden;
    const char* arguments;  // separated by blanks; '+' stands for one inside
};

constexpr PictureCase kPictures[] = {
    {"minimal.png", "Minimal.tweenery --scale 0.25 --background checkerboard"},
    {"card.png", "Card.tweenery --scale 2 --clip"},
    {"tags.png", "Tags.tweenery --scale 0.5"},
    {"bounce.png", "Bounce.tweenery --animation Bounce --at 0,200,400,800,1000,1200,1600"},
    {"bounce_parade.png", "Bounce.tweenery --animation Easing+Parade --fps 2"},
    {"bounce_idle.png", "Bounce.tweenery --animation Idle+Loop --from 1000 --to 5000 --fps 1"},
    {"card_flip.png", "Card.tweenery --animation Flip --at 0,300,500,599,600,900,1200"},
    {"card_shuffle.png", "Card.tweenery --animation Shuffle+Stars --at 0,200,400,600 --clip"},
    {"card_throw.png",
     "Card.tweenery --animation Throw --at 0,300,600,900 --background #ffeecc --columns 2"},
    {"tags_walk.png", "Tags.tweenery --animation walk --at 0,250,500,1000"},
    {"tags_pngs.png", "Tags.tweenery --pngs --clip"},
};

QString goldenPath(const QString& name) {
    return sourcePath(u"tests/cli/goldens/pictures/"_s + name);
}

QImage imageAt(const QString& path) {
    return QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void expectAlike(const QImage& found, const QImage& expected) {
    ASSERT_EQ(found.size(), expected.size());
    double sum = 0;
    double beyond = 0;
    for (int y = 0; y < found.height(); ++y) {
        const uchar* left = found.constScanLine(y);
        const uchar* right = expected.constScanLine(y);
        for (int x = 0; x < found.width() * 4; ++x) {
            const int step = std::abs(left[x] - right[x]);
            sum += step;
            beyond += step > kLargestStep ? 1 : 0;
        }
    }
    const double values = 4.0 * found.width() * found.height();
    EXPECT_LE(sum / values, kMeanDifference);
    EXPECT_LE(beyond / values, kShareBeyondStep);
}

class RenderGolden : public testing::TestWithParam<PictureCase> {};

TEST_P(RenderGolden, LooksAsItDid) {
    const PictureCase& row = GetParam();
    const Workshop workshop;
    const QString path = workshop.path(u"sheet.png"_s);
    QDir::setCurrent(sourcePath(u"tests/packages"_s));
    QStringList arguments = u"render "_s.append(QString::fromLatin1(row.arguments)).split(u' ');
    arguments.replaceInStrings(u"+"_s, u" "_s);
    if (!arguments.contains(u"--scale"_s)) { arguments << u"--scale"_s << u"0.25"_s; }
    const Outcome run = tweenc(arguments << u"--sheet"_s << path);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const QString golden = goldenPath(QString::fromLatin1(row.golden));
    if (updateGoldens) { replaceContents(golden, contentsOf(path)); }
    expectAlike(imageAt(path), imageAt(golden));
}

std::string caseName(const testing::TestParamInfo<PictureCase>& info) {
    return QString::fromLatin1(info.param.golden).replace(u'.', u'_').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Packages, RenderGolden, testing::ValuesIn(kPictures), caseName);

TEST(RenderGoldens, HaveACaseEach) {
    QStringList expected;
    for (const PictureCase& row : kPictures) {
        expected << QString::fromLatin1(row.golden);
    }
    expected.sort();
    EXPECT_EQ(QDir(goldenPath({})).entryList(QDir::Files, QDir::Name), expected);
}

class Render : public testing::Test {
 protected:
    Outcome render(const QString& package, const QString& options) {
        return tweenc(QStringList{u"render"_s, packagePath(package)} + options.split(u' '));
    }
    QString out(const QString& name) const { return u"--out "_s + m_workshop.path(name); }
    QStringList files() const {
        return QDir(m_workshop.path(u"."_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    Workshop m_workshop;
};

TEST_F(Render, RefusesWhatMakesNoSense) {
    struct Case {
        const char* options;
        const char* reason;
    };
    const Case cases[] = {
        {"--scale 1", "needs --out PATTERN or --sheet FILE.png"},
        {"--out a.jpg", "--out takes the name of a PNG, APNG or GIF file, not 'a.jpg'"},
        {"--out a%x.png", "--out knows %d, %04d, %t, %a and %%, not '%x'"},
        {"--out a%04t.png", "--out knows %d, %04d, %t, %a and %%, not '%04t'"},
        {"--sheet a.json", "--sheet takes the name of a PNG file, not 'a.json'"},
        {"--out a.png --columns 2", "--columns needs --sheet"},
        {"--sheet a.png --columns 1.5", "--columns takes a whole number"},
        {"--sheet a.png --columns 0", "--columns takes a number above 0, at most 10000, not '0'"},
        {"--out a.png --scale nan", "--scale takes a number above 0, at most 100, not 'nan'"},
        {"--out a.png --scale -1", "--scale takes a number above 0, at most 100, not '-1'"},
        {"--out a.png --background red",
         "--background takes transparent, checkerboard or #rrggbb, not 'red'"},
        {"--out a.png --at 5", "--at needs --animation: the setup state has no time"},
        {"--out a.png --fps 5", "--fps needs --animation: the setup state has no time"},
        {"--out a.png --animation x --at 5 --to 7", "takes --at or --to, not both"},
        {"--out a.png --animation x --pngs", "takes --pngs or --animation, not both"},
        {"--out a.png --animation x --at 1.5",
         "--at takes whole milliseconds, 0 or later, not '1.5'"},
        {"--out a.png --animation x --from -1",
         "--from takes whole milliseconds, 0 or later, not '-1'"},
        {"--out a.png --animation x --from 9 --to 8", "--to lies before --from"},
        {"--out a.png --animation x --fps 0",
         "--fps takes a number above 0, at most 1000, not '0'"},
    };
    for (const Case& row : cases) {
        const Outcome run = render(u"Card"_s, QString::fromLatin1(row.options));
        EXPECT_EQ(run.code, 2) << row.options;
        EXPECT_EQ(run.firstErrorLine(), std::string("tweenc: render: ") + row.reason);
    }
}

TEST_F(Render, NamesWhatCannotBeDone) {
    struct Case {
        QString package;
        QString options;
        QString error;
    };
    m_workshop.copyOf(u"Card"_s);
    QFile(m_workshop.path(u"there.png"_s)).open(QIODevice::WriteOnly);
    const QString inPackage = m_workshop.path(u"P.tweenery/a.png"_s);
    const QString there = m_workshop.path(u"there.png"_s);
    const Case cases[] = {
        {u"Bounce"_s, out(u"a.png"_s) + u" --animation Nod"_s,
         packagePath(u"Bounce"_s) +
             u"/animations: there is none named 'Nod'; there are 'Bounce', 'Easing Parade', 'Idle Loop'"_s},
        {u"Bounce"_s, out(u"a.png"_s) + u" --pngs"_s,
         packagePath(u"Bounce"_s) + u"/animations: there is none whose name ends in \"pngs\" and a "
                                    u"number of milliseconds, "
                                    u"such as walk_pngs_40"_s},
        {u"Bounce"_s, out(u"there.png"_s), there + u": is already there; --force replaces it"_s},
        {u"Bounce"_s, out(u"a.png"_s) + u" --animation Bounce --at 0,100"_s,
         m_workshop.path(u"a.png"_s) +
             u": would hold several pictures; %d, %t or %a in --out tells them apart"_s},
        {u"Bounce"_s, out(u"a%d.png"_s) + u" --animation Bounce --to 2000000000 --fps 1000"_s,
         u"--from and --to: mean more than 100000 frames"_s},
        {u"Card"_s, out(u"a.png"_s) + u" --scale 50"_s,
         u"a picture: would be too large: 32000 by 24000 pixels"_s},
        {u"Tags"_s,
         u"--sheet "_s + m_workshop.path(u"s.png"_s) + u" --pngs --scale 4 --columns 21 --clip"_s,
         m_workshop.path(u"s.png"_s) + u": would be too large: 26880 by 1920 pixels"_s},
    };
    for (const Case& row : cases) {
        const Outcome run = render(row.package, row.options);
        EXPECT_EQ(run.code, 1) << row.options.toStdString();
        EXPECT_EQ(run.firstErrorLine(), (u"tweenc: "_s + row.error).toStdString());
    }
    const Outcome run =
        tweenc({u"render"_s, m_workshop.path(u"P.tweenery"_s), u"--out"_s, inPackage});
    EXPECT_NE(run.err.find("lies in the package"), std::string::npos) << run.err;
    EXPECT_EQ(files(), QStringList{u"there.png"_s});
}

TEST_F(Render, AnUnreadableImageIsNamed) {
    const QString package = m_workshop.copyOf(u"Bounce"_s);
    QDir images(package + u"/images/ball.png"_s);
    for (const QString& name : images.entryList(QDir::Files)) {
        replaceContents(images.filePath(name), "\x89PNG\r\n\x1a\n");
    }
    const Outcome run = tweenc({u"render"_s, package, u"--out"_s, m_workshop.path(u"a.png"_s)});
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.err.find("P.tweenery/images/ball.png/"), std::string::npos) << run.err;
    EXPECT_EQ(files(), QStringList());
}

TEST_F(Render, NumbersTimesAndNamesGoIntoTheFiles) {
    const Outcome run = render(u"Bounce"_s, out(u"%a_%03d_%t_%%.png"_s) +
                                                u" --animation Bounce --from 100 --to 1100 "
                                                u"--fps 2 --scale 0.1"_s);
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(files(), (QStringList{u"Bounce_000_100_%.png"_s, u"Bounce_001_600_%.png"_s,
                                    u"Bounce_002_1100_%.png"_s}));
    for (const QString& name : files()) {
        EXPECT_NE(run.out.find(m_workshop.path(name).toStdString() + "\n"), std::string::npos);
    }
}

TEST_F(Render, ALoopEndsBeforeItsNextPeriodAndOtherAnimationsWithTheirLastKeyframe) {
    const auto timesOf = [&](const QString& animation) {
        const Outcome run = tweenc({u"render"_s, packagePath(u"Tags"_s), u"--animation"_s,
                                    animation, u"--fps"_s, u"5"_s, u"--scale"_s, u"0.1"_s,
                                    u"--out"_s, m_workshop.path(u"%t.png"_s), u"--force"_s});
        EXPECT_EQ(run.code, 0) << run.err;
        QStringList times;
        for (const QString& line :
             QString::fromStdString(run.out).split(u'\n', Qt::SkipEmptyParts)) {
            times << QFileInfo(line).completeBaseName();
        }
        return times.join(u' ');
    };
    EXPECT_EQ(timesOf(u"walk cycle"_s), u"0 200 400 600"_s) << "800 ms, again and again";
    EXPECT_EQ(timesOf(u"walk-cycle"_s), u"0 200 400 600"_s) << "600 ms, once";
}

TEST_F(Render, ASheetHoldsThePicturesThatItsListSays) {
    const Outcome run =
        render(u"Tags"_s, u"--pngs --clip --scale 0.5 --columns 4 --sheet "_s +
                              m_workshop.path(u"s.png"_s) + u' ' + out(u"%d.png"_s));
    ASSERT_EQ(run.code, 0) << run.err;
    const QImage sheet = imageAt(m_workshop.path(u"s.png"_s));
    EXPECT_EQ(sheet.size(), QSize(4 * 160, 6 * 240));
    const QJsonObject list =
        QJsonDocument::fromJson(contentsOf(m_workshop.path(u"s.json"_s))).object();
    EXPECT_EQ(list[u"image"_s].toString(), u"s.png"_s);
    const QJsonArray frames = list[u"frames"_s].toArray();
    ASSERT_EQ(frames.size(), 21);
    for (int i = 0; i < frames.size(); ++i) {
        const QJsonObject frame = frames[i].toObject();
        EXPECT_EQ(frame[u"time"_s].toInt(), 33 * i);
        EXPECT_EQ(frame[u"animation"_s].toString(), u"flash_pngs_33"_s);
        const QRect place(frame[u"x"_s].toInt(), frame[u"y"_s].toInt(), frame[u"width"_s].toInt(),
                          frame[u"height"_s].toInt());
        EXPECT_EQ(sheet.copy(place), imageAt(m_workshop.path(u"%1.png"_s.arg(i)))) << i;
    }
}

TEST_F(Render, TheBackgroundReachesTheFreeCellsOfASheet) {
    const QString path = m_workshop.path(u"s.png"_s);
    const auto sheetWith = [&](const char* background) {
        const Outcome run =
            render(u"Card"_s,
                   u"--animation Throw --at 0,300,600 --columns 2 --scale 0.25 --force "
                   u"--background %1 --sheet %2"_s.arg(QLatin1StringView(background), path));
        EXPECT_EQ(run.code, 0) << run.err;
        return imageAt(path);
    };
    const QImage red = sheetWith("#ff0000");
    const QSize cell = red.size() / 2;
    const QRect free(QPoint(cell.width(), cell.height()), cell);
    QImage allRed(cell, red.format());
    allRed.fill(Qt::red);
    EXPECT_EQ(red.copy(free), allRed);
    const QImage chequered = sheetWith("checkerboard").copy(free);
    const QImage pattern = TweeneryStyle::canvasPattern();
    for (const QPoint pixel : {QPoint(0, 0), QPoint(1, 3), QPoint(20, 7), QPoint(31, 30)}) {
        EXPECT_EQ(chequered.pixelColor(pixel),
                  pattern.pixelColor(pixel.x() % pattern.width(), pixel.y() % pattern.height()));
    }
    QImage nothing(cell, red.format());
    nothing.fill(Qt::transparent);
    EXPECT_EQ(sheetWith("transparent").copy(free), nothing);
}

TEST_F(Render, ACutPictureIsFilledToItsLastRowAndColumn) {
    for (const char* scale : {"0.1003", "0.3", "0.3331", "0.777", "1.0007"}) {
        const Outcome run = render(u"Bounce"_s, out(u"a.png"_s) + u" --clip --force --scale "_s +
                                                    QLatin1StringView(scale));
        EXPECT_EQ(run.code, 0) << run.err;
        const QImage picture = imageAt(m_workshop.path(u"a.png"_s));
        const QPoint last(picture.width() - 1, picture.height() - 1);
        for (const QPoint pixel : {last, QPoint(last.x(), 5), QPoint(5, last.y())}) {
            EXPECT_GT(picture.pixelColor(pixel).alpha(), 0) << scale << ": " << pixel.x();
        }
    }
}

TEST_F(Render, ForceReplacesAndAFullDiskLeavesWhatWasThere) {
    replaceContents(m_workshop.path(u"a.png"_s), "old");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const Outcome full = render(u"Minimal"_s, out(u"a.png"_s) + u" --force"_s);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.firstErrorLine(), "tweenc: " + m_workshop.path(u"a.png"_s).toStdString() +
                                         ": could not be written: File too large");
    EXPECT_EQ(contentsOf(m_workshop.path(u"a.png"_s)), "old");
    EXPECT_EQ(files(), QStringList{u"a.png"_s});

    EXPECT_EQ(render(u"Minimal"_s, out(u"a.png"_s) + u" --force"_s).code, 0);
    EXPECT_EQ(imageAt(m_workshop.path(u"a.png"_s)).size(), QSize(400, 300));
}

}  // namespace
}  // namespace tweenery::test
