// Animated pictures: read back frame by frame, and compared with the single pictures of a render.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QImageReader>
#include <QtEndian>
#include <csignal>

#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

uint32_t numberAt(const QByteArray& bytes, qsizetype position) {
    return qFromBigEndian<uint32_t>(bytes.constData() + position);
}

uint16_t shortAt(const QByteArray& bytes, qsizetype position) {
    return qFromBigEndian<uint16_t>(bytes.constData() + position);
}

// Bit by bit: no table to share a fault with.
uint32_t crcOf(const QByteArray& bytes) {
    uint32_t crc = ~0U;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0);
        }
    }
    return ~crc;
}

QByteArray chunk(const QByteArray& type, const QByteArray& data) {
    QByteArray ends(8, '\0');
    qToBigEndian(static_cast<uint32_t>(data.size()), ends.data());
    qToBigEndian(crcOf(type + data), ends.data() + 4);
    return ends.left(4) + type + data + ends.right(4);
}

struct Apng {
    uint32_t claimedFrames = 0;
    uint32_t plays = 99;
    QStringList delays;
    std::vector<QByteArray> pngs;  // each frame as a picture of its own
};

// Takes an animated PNG apart and checks what holds for each of them.
Apng parsed(const QByteArray& file) {
    Apng apng;
    const QByteArray signature = file.left(8);
    QByteArray header;
    uint32_t sequence = 0;
    for (qsizetype at = 8; at < file.size();) {
        const auto length = static_cast<qsizetype>(numberAt(file, at));
        const QByteArray type = file.mid(at + 4, 4);
        const QByteArray data = file.mid(at + 8, length);
        EXPECT_EQ(file.mid(at, length + 12), chunk(type, data)) << type.constData();
        at += length + 12;
        if (type == "IHDR") { header = chunk(type, data); }
        if (type == "acTL") {
            EXPECT_TRUE(apng.pngs.empty());
            apng.claimedFrames = numberAt(data, 0);
            apng.plays = numberAt(data, 4);
        }
        if (type == "fcTL" || type == "fdAT") { EXPECT_EQ(numberAt(data, 0), sequence++); }
        if (type == "fcTL") {
            EXPECT_EQ(data.mid(4, 8), header.mid(8, 8)) << "the size of the whole picture";
            apng.delays << u"%1/%2"_s.arg(shortAt(data, 20)).arg(shortAt(data, 22));
            apng.pngs.push_back(signature + header);
        }
        if (type == "IDAT") { EXPECT_EQ(apng.pngs.size(), 1U); }
        if (type == "IDAT") { apng.pngs.back() += chunk("IDAT", data); }
        if (type == "fdAT") { apng.pngs.back() += chunk("IDAT", data.mid(4)); }
    }
    EXPECT_TRUE(file.endsWith(chunk("IEND", {})));
    for (QByteArray& png : apng.pngs) {
        png += chunk("IEND", {});
    }
    return apng;
}

class Movie : public testing::Test {
 protected:
    void SetUp() override { QDir::setCurrent(sourcePath(u"tests/packages"_s)); }

    // '+' stands for a blank in an option.
    Outcome render(const char* options, const QString& out) {
        QStringList arguments =
            u"render --scale 0.2 --force "_s.append(QLatin1StringView(options)).split(u' ');
        arguments.replaceInStrings(u"+"_s, u" "_s);
        return tweenc(arguments << u"--out"_s << m_workshop.path(out));
    }
    QStringList files() const {
        return QDir(m_workshop.path(u"."_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QImage picture(size_t number) const { return QImage(m_workshop.path(u"%1.png"_s.arg(number))); }

    Workshop m_workshop;
};

TEST_F(Movie, AnAnimatedPngHoldsTheFramesWithExactDelaysAndLoops) {
    struct Case {
        const char* options;
        const char* delays;
        uint32_t plays;
    };
    const Case cases[] = {
        {"--animation walk+cycle --fps 5", "1/5 1/5 1/5 1/5", 0},  // 800 ms, again and again
        {"--animation walk+cycle --fps 3", "1/3 1/3 2/15", 0},     // the period stays 800 ms
        {"--animation walk+cycle --fps 2.5 --to 900", "2/5 2/5 2/5", 0},
        {"--animation walk-cycle --fps 4", "1/4 1/4 1/4", 1},  // 600 ms, once
        {"--animation walk-cycle --fps 29.97 --to 50", "100/2997 100/2997", 1},
        {"--animation walk-cycle --at 0,50,300", "1/20 1/4 1/4", 1},
        {"--animation walk-cycle --at 300", "1/1", 1},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.options);
        const std::string options = std::string("Tags.tweenery ") + row.options;
        const Outcome movie = render(options.c_str(), u"%a.apng"_s);
        ASSERT_EQ(movie.code, 0) << movie.err;
        EXPECT_EQ(movie.err, "");
        ASSERT_EQ(render(options.c_str(), u"%d.png"_s).code, 0);
        const Apng apng = parsed(contentsOf(QString::fromStdString(movie.out).trimmed()));
        EXPECT_EQ(apng.delays.join(u' '), QLatin1StringView(row.delays));
        EXPECT_EQ(apng.plays, row.plays);
        EXPECT_EQ(apng.claimedFrames, apng.pngs.size());
        for (size_t i = 0; i < apng.pngs.size(); ++i) {
            EXPECT_EQ(QImage::fromData(apng.pngs[i], "PNG"), picture(i)) << i;
        }
    }
}

TEST_F(Movie, AGifHasItsDelaysInStepsAndTellsWhenTheyAreRounded) {
    struct Case {
        const char* options;
        QList<int> delays;  // in ms
        int loops;          // -1: forever
        bool isRounded;
    };
    const Case cases[] = {
        {"--animation walk-cycle --fps 4", {250, 250, 250}, 0, false},
        {"--animation walk-cycle --fps 7 --to 500", {140, 150, 140, 140}, 0, true},
        {"--animation walk-cycle --to 50", {20, 20, 20}, 0, false},
        {"--animation walk-cycle --at 0,50,300", {50, 250, 250}, 0, false},
        {"--animation walk+cycle --fps 3", {330, 340, 130}, -1, true},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.options);
        const Outcome run =
            render((std::string("Tags.tweenery ") + row.options).c_str(), u"a.gif"_s);
        ASSERT_EQ(run.code, 0) << run.err;
        EXPECT_EQ(run.err.find("rounded to steps of 10 ms") != std::string::npos, row.isRounded);
        QImageReader reader(m_workshop.path(u"a.gif"_s));
        EXPECT_EQ(reader.imageCount(), row.delays.size());
        for (const int delay : row.delays) {
            ASSERT_FALSE(reader.read().isNull());
            EXPECT_EQ(reader.nextImageDelay(), delay);
        }
        EXPECT_EQ(reader.loopCount(), row.loops);
    }
}

// The mean over what shows and its three colours; what shows must be the same.
double differenceOf(const QImage& found, const QImage& expected) {
    double difference = 0;
    double values = 1;
    for (int y = 0; y < found.height(); ++y) {
        for (int x = 0; x < found.width(); ++x) {
            const QColor pixel = found.pixelColor(x, y);
            const QColor wanted = expected.pixelColor(x, y);
            EXPECT_EQ(pixel.alpha() > 0, wanted.alpha() >= 128) << x << ' ' << y;
            if (pixel.alpha() == 0) { continue; }
            difference += std::abs(pixel.red() - wanted.red()) +
                          std::abs(pixel.green() - wanted.green()) +
                          std::abs(pixel.blue() - wanted.blue());
            values += 3;
        }
    }
    return difference / values;
}

TEST_F(Movie, AGifHasTheColoursOfItsFramesAndNothingOfTheOnesBefore) {
    for (const char* options :
         {"Bounce.tweenery --animation Bounce --at 0,400,800",
          "Bounce.tweenery --animation Bounce --at 0,400,800 --background #ffeecc",
          "Card.tweenery --animation Throw --at 0,300,600"}) {
        ASSERT_EQ(render(options, u"a.gif"_s).code, 0);
        ASSERT_EQ(render(options, u"%d.png"_s).code, 0);
        QImageReader reader(m_workshop.path(u"a.gif"_s));
        for (size_t i = 0; i < 3; ++i) {
            SCOPED_TRACE(std::string(options) + ", frame " + std::to_string(i));
            const QImage found = reader.read();
            ASSERT_EQ(found.size(), picture(i).size());
            EXPECT_LT(differenceOf(found, picture(i)), 3);
        }
    }
}

TEST_F(Movie, WhatMakesNoSenseIsRefusedAndLeavesNoFile) {
    struct Case {
        const char* options;
        const char* out;
        int code;
        const char* reason;
    };
    const Case cases[] = {
        {"--animation walk --sheet s.png", "a.gif", 2, "takes --out or --sheet, not both"},
        {"--pngs", "a.apng", 2, "takes --out or --pngs, not both"},
        {"--animation walk", "a%d.apng", 2, "%d and %t have no meaning there"},
        {"--clip", "a.gif", 2, "an animated picture needs --animation"},
        {"--animation walk --at 5,5", "a.gif", 1, "--at: has to ascend for an animated picture"},
        {"--animation walk --fps 1000", "a.gif", 1, "frames too short for the 10 ms"},
        {"--animation walk --at 0,655360", "a.gif", 1, "longer than the 655350 ms"},
        {"--animation walk --at 0,65537", "a.apng", 1, "a frame of 65537/1000 s"},
    };
    for (const Case& row : cases) {
        const Outcome run = render((std::string("Tags.tweenery ") + row.options).c_str(),
                                   QLatin1StringView(row.out));
        EXPECT_EQ(run.code, row.code) << row.options;
        EXPECT_NE(run.err.find(row.reason), std::string::npos) << run.err;
    }
    EXPECT_EQ(files(), QStringList());
}

TEST_F(Movie, AFullDiskLeavesWhatWasThere) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    for (const QString& name : {u"a.apng"_s, u"a.gif"_s}) {
        replaceContents(m_workshop.path(name), "old");
        ::setrlimit(RLIMIT_FSIZE, &small);
        const Outcome full = render("Tags.tweenery --animation walk --fps 10", name);
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(full.code, 1);
        EXPECT_NE(full.err.find("could not be written: File too large"), std::string::npos);
        EXPECT_EQ(contentsOf(m_workshop.path(name)), "old");
    }
    EXPECT_EQ(files(), (QStringList{u"a.apng"_s, u"a.gif"_s}));
}

}  // namespace
}  // namespace tweenery::test
