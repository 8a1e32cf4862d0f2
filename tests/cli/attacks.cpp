#include "attacks.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

#include "support/archived.h"
#include "support/raw_plist.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using Encode = std::function<void(KeyedEncoder&)>;

const QString kElement = u"E0"_s;

// Archives.

struct Part : Archivable {
    const char* name = "PCElement";
    Encode encode;
    std::vector<const Archivable*> children;

    ArchiveClass archiveClass() const override { return {name}; }
    void encodeWithCoder(KeyedEncoder& coder) const override {
        encode(coder);
        if (!children.empty()) { coder.encodeObjects("subelements", children); }
    }
};

void encodeElement(KeyedEncoder& coder, const QString& identifier, const QString& name,
                   const QString& image = {}, QSizeF size = {20, 20}) {
    coder.encodeString("identifier", identifier);
    coder.encodeString("name", name);
    for (const char* key : {"xScale", "yScale", "opacity"}) {
        coder.encodeFloat(key, 1);
    }
    coder.encodePoint("position", {10, 10});
    coder.encodePoint("anchorPoint", {0.5, 0.5});
    coder.encodeSize("size", size);
    if (image.isNull()) {
        coder.encodeBool("group", true);
    } else {
        coder.encodeString("imageName", image);
    }
}

void storeElements(const QString& package, int count, const std::function<Encode(int)>& element,
                   QSizeF canvasSize = {20, 20}) {
    std::vector<Part> parts(static_cast<size_t>(count));
    Part canvas;
    canvas.encode = [&](KeyedEncoder& coder) {
        encodeElement(coder, u"C"_s, u"Canvas"_s, {}, canvasSize);
    };
    for (int i = 0; i < count; ++i) {
        parts[static_cast<size_t>(i)].encode = element(i);
        canvas.children.push_back(&parts[static_cast<size_t>(i)]);
    }
    replaceContents(package + u"/canvas"_s, KeyedArchiver::archivedDataWithRootObject(canvas));
}

/// A chain of elements that hold one another.
void storeNested(const QString& package, size_t depth) {
    std::vector<Part> parts(depth);
    for (size_t i = 0; i < depth; ++i) {
        parts[i].encode = [i](KeyedEncoder& coder) {
            encodeElement(coder, QString::number(i), u"E"_s);
        };
        if (i > 0) { parts[i - 1].children.push_back(&parts[i]); }
    }
    replaceContents(package + u"/canvas"_s,
                    KeyedArchiver::archivedDataWithRootObject(parts.front()));
}

/// Elements whose names would lead elsewhere, end a literal, or are no text.
void storeOddNames(const QString& package) {
    const QStringList names{u"../../../tmp/evil"_s, u".."_s, u"a/b\\\"\n*/"_s,
                            QString(u"nul \0 nul"_s), QString(QChar(0xd800))};
    storeElements(package, static_cast<int>(names.size()), [&](int i) {
        return [name = names[i]](KeyedEncoder& coder) { encodeElement(coder, name, name, name); };
    });
}

Encode elementNamed(int number, const QString& name, const QString& image = {}) {
    return [=](KeyedEncoder& coder) { encodeElement(coder, u"E%1"_s.arg(number), name, image); };
}

QByteArray timelineOf(const QString& type, size_t count,
                      const std::function<void(size_t, KeyedEncoder&)>& keyframe) {
    const auto encode = [&](KeyedEncoder& coder) {
        coder.encodeString("property_type", type);
        coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, count, keyframe);
    };
    return Archived("PCKeyedPropertyTimeline", encode).bytes();
}

QByteArray loopOf(int32_t durationInMS) {
    const auto encodeKeyframe = [&](size_t i, KeyedEncoder& keyframe) {
        keyframe.encodeInt("time", static_cast<int32_t>(i) * durationInMS);
        keyframe.encodeFloat("float", 1);
    };
    const auto encode = [&](KeyedEncoder& coder) {
        coder.encodeString("property_type", u"opacity"_s);
        coder.encodeString("repeat_behavior", u"forever"_s);
        coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, 2, encodeKeyframe);
    };
    return Archived("PCKeyedPropertyTimeline", encode).bytes();
}

/// A timeline of orders with keyframes that all refer to one list, which no archiver of ours
/// writes.
QByteArray sharedOrderTimeline(uint32_t keyframes, uint32_t length) {
    using Ref = RawPlist::Ref;
    RawPlist raw(4, 4);
    std::vector<Ref> objects{raw.ascii("$null")};
    const auto add = [&](Ref object) {
        objects.push_back(object);
        return raw.uid(objects.size() - 1);
    };
    const auto classNamed = [&](const char* name) {
        return add(raw.dictionary({{raw.ascii("$classname"), raw.ascii(name)}}));
    };
    const Ref classKey = raw.ascii("$class");
    const Ref itemsKey = raw.ascii("NS.objects");
    const Ref arrayKey = raw.ascii("array");
    const Ref timeKey = raw.ascii("time");
    const Ref arrayClass = classNamed("NSArray");
    const Ref keyframeClass = classNamed("PCPropertyKeyframe");
    const auto list = [&](const std::vector<Ref>& items) {
        return add(raw.dictionary({{classKey, arrayClass}, {itemsKey, raw.array(items)}}));
    };
    std::vector<Ref> names, records;
    for (uint32_t i = 0; i < length; ++i) {
        names.push_back(add(raw.ascii("E" + std::to_string(i))));
    }
    const Ref order = list(names);
    for (uint32_t i = 0; i < keyframes; ++i) {
        const Ref time = raw.add('\x12' + RawPlist::bigEndian(i, 4));
        records.push_back(
            add(raw.dictionary({{classKey, keyframeClass}, {arrayKey, order}, {timeKey, time}})));
    }
    const Ref root =
        add(raw.dictionary({{classKey, classNamed("PCKeyedPropertyTimeline")},
                            {raw.ascii("keyframes"), list(records)},
                            {raw.ascii("property_type"), add(raw.ascii("zPosition"))}}));
    const Ref top = raw.dictionary({{raw.ascii("root"), root}});
    return raw.finish(raw.dictionary({{raw.ascii("$archiver"), raw.ascii("NSKeyedArchiver")},
                                      {raw.ascii("$objects"), raw.array(objects)},
                                      {raw.ascii("$top"), top}}));
}

void storeAnimation(const QString& package, int number, const QString& name,
                    const QString& element = {}, const QString& file = {},
                    const QByteArray& timeline = {}) {
    const QString folder =
        package + u"/animations/00000000-0000-4000-8000-%1"_s.arg(number, 12, 10, QChar(u'0'));
    QDir().mkpath(folder + u'/' + element);
    replaceContents(folder + u"/name.data"_s, name.toUtf8());
    if (!file.isNull()) { replaceContents(folder + u'/' + element + u'/' + file, timeline); }
}

// Pictures.

QByteArray pictureOf(QSize size, const char* format) {
    QImage image(size, format == QByteArray("png") ? QImage::Format_Mono : QImage::Format_RGB32);
    image.fill(0);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(true);
    writer.write(image);
    return data;
}

/// The sum that PNG has behind each chunk, without which decoders pass it over.
uint32_t checksumOf(const QByteArray& bytes) {
    uint32_t sum = ~uint32_t{0};
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320U : 0);
        }
    }
    return ~sum;
}

QByteArray bigEndian(uint32_t number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray pngWithTexts(int count, const char* type) {
    constexpr qsizetype unpacked = 8'000'000;
    const QByteArray packed = qCompress(QByteArray(unpacked, 'x'), 9).sliced(4);  // zlib's own
    QByteArray body("k\0", 2);
    if (type == QByteArray("zTXt")) {
        body.append('\0').append(packed);
    } else {
        body.append(QByteArray("\1\0\0\0", 4)).append(packed);
    }
    const QByteArray chunk = bigEndian(static_cast<uint32_t>(body.size())) + type + body +
                             bigEndian(checksumOf(type + body));
    QByteArray png = pictureOf({4, 4}, "png");
    constexpr qsizetype behindHeader = 33;
    return png.insert(behindHeader, chunk.repeated(count));
}

QByteArray jpegWithScans(int count) {
    QByteArray jpeg = pictureOf({1000, 1000}, "jpeg");
    const qsizetype last = jpeg.lastIndexOf("\xff\xda");
    const QByteArray scan = jpeg.sliced(last, jpeg.size() - last - 2);
    return jpeg.insert(jpeg.size() - 2, scan.repeated(count));
}

void storeImageSet(const QString& package, const QString& name, const QByteArray& picture) {
    const QString folder = package + u"/images/"_s + name;
    QDir().mkpath(folder);
    replaceContents(folder + u"/Original."_s + name.section(u'.', -1), picture);
}

void storeShownPictures(const QString& package, int count, const QByteArray& picture,
                        const QString& extension) {
    const auto name = [&](int i) { return u"p%1.%2"_s.arg(QString::number(i), extension); };
    for (int i = 0; i < count; ++i) {
        storeImageSet(package, name(i), picture);
    }
    storeElements(package, count, [&](int i) { return elementNamed(i, u"e"_s, name(i)); });
}

const std::vector<QStringList> kReading = {{u"check"_s}, {u"info"_s},   {u"describe"_s},
                                           {u"dump"_s},  {u"export"_s}, {u"values"_s},
                                           {u"copy"_s},  {u"render"_s}};
const std::vector<QStringList> kDecoding = {{u"check"_s}, {u"render"_s}};

}  // namespace

const std::vector<Attack>& attacks() {
    static const std::vector<Attack> all = {
        {"nested", [](const QString& p) { storeNested(p, 1'000); }, kReading, nullptr},
        {"nested-too-deep", [](const QString& p) { storeNested(p, 10'000); }, kReading,
         "levels deep"},
        {"odd-names", storeOddNames, kReading, nullptr},
        {"keyframes-at-one-time",
         [](const QString& p) {
             storeElements(p, 1, [](int i) { return elementNamed(i, u"e"_s); });
             storeAnimation(p, 1, u"walk"_s, kElement, u"opacity.data"_s,
                            timelineOf(u"opacity"_s, 200'000, [](size_t i, KeyedEncoder& c) {
                                c.encodeInt("time", static_cast<int32_t>(i / 2) % 90'000 - 5);
                                c.encodeString("imageName", u"of another kind"_s);
                            }));
         },
         kReading, nullptr},
        {"compressed-texts",
         [](const QString& p) { storeShownPictures(p, 1, pngWithTexts(900, "zTXt"), u"png"_s); },
         kDecoding, nullptr},
        {"international-texts",
         [](const QString& p) { storeShownPictures(p, 1, pngWithTexts(900, "iTXt"), u"png"_s); },
         kDecoding, nullptr},
        {"wide-pictures",
         [](const QString& p) {
             storeShownPictures(p, 24, pictureOf({16000, 4000}, "png"), u"png"_s);
         },
         kDecoding, "the pictures have too many pixels"},
        {"scans",
         [](const QString& p) { storeShownPictures(p, 1, jpegWithScans(10'000), u"jpg"_s); },
         kDecoding, "scans of a JPEG image: 10010, more than the 120 that are allowed"},
        {"holes",
         [](const QString& p) {
             for (int i = 0; i < 6; ++i) {
                 QFile file(p + u"/hole%1"_s.arg(i));
                 if (file.open(QIODevice::WriteOnly)) { file.resize(qint64{1} << 30); }
             }
         },
         kReading, "bytes of the package that are nowhere stored"},
        {"one-name-of-elements",
         [](const QString& p) {
             storeElements(p, 30'000, [](int i) { return elementNamed(i, u"hero"_s); });
         },
         {{u"check"_s}, {u"export"_s}, {u"render"_s}},
         nullptr},
        {"one-name-of-animations",
         [](const QString& p) {
             for (int i = 0; i < 10'000; ++i) {
                 storeAnimation(p, i, u"walk"_s);
             }
         },
         {{u"check"_s}, {u"export"_s}},
         nullptr},
        {"long-name",
         [](const QString& p) {
             const QString name(1'000'000, u'n');
             storeElements(p, 2'000, [&](int i) { return elementNamed(i, name); });
         },
         kReading, "characters of a name: 1000000, more than the 500 that are allowed"},
        {"long-name-of-an-image",
         [](const QString& p) {
             const QString name(1'000'000, u'n');
             storeElements(p, 1, [&](int i) { return elementNamed(i, u"e"_s); });
             storeAnimation(p, 1, u"walk"_s, kElement, u"imageContents.data"_s,
                            timelineOf(u"imageContents"_s, 300, [&](size_t i, KeyedEncoder& c) {
                                c.encodeInt("time", static_cast<int32_t>(i));
                                c.encodeString("imageName", name);
                            }));
         },
         {{u"check"_s}, {u"export"_s}, {u"dump"_s}},
         "characters of a name: 1000000, more than the 500 that are allowed"},
        {"one-order-for-all",
         [](const QString& p) {
             storeElements(p, 20'000, [](int i) { return elementNamed(i, u"e%1"_s.arg(i)); });
             storeAnimation(p, 1, u"walk"_s, u"C"_s, u"zPosition.data"_s,
                            sharedOrderTimeline(20'000, 20'000));
         },
         {{u"check"_s}, {u"export"_s}, {u"dump"_s}},
         "names in the archive's lists"},
        {"slices",
         [](const QString& p) {
             storeElements(p, 200, [](int i) { return elementNamed(i, u"e%1"_s.arg(i)); });
             for (int i = 0; i < 200; ++i) {
                 storeAnimation(p, 1, u"walk_sliced_1000000"_s, u"E%1"_s.arg(i), u"opacity.data"_s,
                                timelineOf(u"opacity"_s, 2, [](size_t k, KeyedEncoder& c) {
                                    c.encodeInt("time", static_cast<int32_t>(k) * 1000);
                                    c.encodeFloat("float", static_cast<float>(k));
                                }));
             }
         },
         {{u"check"_s, u"--lang"_s, u"objc"_s}, {u"export"_s, u"--lang"_s, u"objc"_s}},
         "values of frame sliced animations"},
        {"pictures-over-one-another",
         [](const QString& p) {
             constexpr QSize size{4'000, 4'000};
             storeImageSet(p, u"p.png"_s, pictureOf(size, "png"));
             const auto element = [&](int i) {
                 return [=](KeyedEncoder& coder) {
                     encodeElement(coder, u"E%1"_s.arg(i), u"e"_s, u"p.png"_s, size);
                 };
             };
             storeElements(p, 20'000, element, size);
         },
         {{u"render"_s}},
         "pixels to paint for the picture"},
        {"long-period",
         [](const QString& p) {
             storeElements(p, 1, [](int i) { return elementNamed(i, u"e"_s); }, {4'000, 4'000});
             storeAnimation(p, 1, u"walk"_s, kElement, u"opacity.data"_s, loopOf(599'000));
         },
         {{u"render"_s, u"--animation"_s, u"walk"_s}},
         "pixels to paint for 35940 pictures"},
        {"elements-for-long",
         [](const QString& p) {
             storeElements(p, 20'000, [](int i) { return elementNamed(i, u"e%1"_s.arg(i)); });
             storeAnimation(p, 1, u"walk"_s, kElement, u"opacity.data"_s, loopOf(599'000));
         },
         {{u"render"_s, u"--animation"_s, u"walk"_s}},
         "pixels to paint for 35940 pictures"},
        {"pictures-without-end",
         [](const QString& p) {
             storeElements(p, 1, [](int i) { return elementNamed(i, u"e"_s); });
             const QByteArray long_ = timelineOf(u"opacity"_s, 1, [](size_t, KeyedEncoder& c) {
                 c.encodeInt("time", 2'147'483'647);
             });
             for (int i = 0; i < 1'000; ++i) {
                 storeAnimation(p, i, u"walk%1_pngs_1"_s.arg(i), kElement, u"opacity.data"_s,
                                long_);
             }
         },
         {{u"check"_s}, {u"export"_s}},
         nullptr},
    };
    return all;
}

}  // namespace tweenery::test
