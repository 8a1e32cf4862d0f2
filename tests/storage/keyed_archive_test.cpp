#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include "base/errors.h"
#include "storage/binary_plist.h"
#include "storage/keyed_unarchiver.h"
#include "storage/record_decoder.h"
#include "support/archived.h"
#include "support/raw_plist.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QString Entry = u"animations/some.data"_s;

/// The sentence of the InputError that `action` throws; empty when it throws none.
template <typename Action>
QString reasonOf(Action action) {
    try {
        action();
    } catch (const InputError& error) {
        EXPECT_EQ(error.entry(), Entry);
        return error.reason();
    }
    return {};
}

TEST(KeyedArchive, RoundTripsEveryType) {
    const Archived object([](KeyedEncoder& coder) {
        coder.encodeBool("yes", true);
        coder.encodeBool("no", false);
        coder.encodeInt("least", std::numeric_limits<int32_t>::min());
        coder.encodeInt("most", std::numeric_limits<int32_t>::max());
        coder.encodeFloat("float", 1.1F);
        coder.encodeFloat("largest", std::numeric_limits<float>::max());
        coder.encodeDouble("double", 0.1);
        coder.encodeString("null", {});
        coder.encodeString("empty", u""_s);
        coder.encodeString("text", u"Größe 😀"_s);
        coder.encodeString("dollar", u"$null"_s);
        coder.encodeAscii("ascii", "linear");
        coder.encodePoint("point", {-12, 8.5});
        coder.encodeSize("size", {1.0 / 3, 1e-300});
        coder.encodeNumberObject("number", 2.5F);
        coder.encodeStrings("strings", {u"a"_s, u"ü"_s, u""_s, u"a"_s});
        coder.encodeObject("nothing", nullptr);
    });
    const KeyedUnarchiver archive(object.bytes(), Entry);
    const KeyedDecoder root = archive.root();
    EXPECT_EQ(root.className(), u"Thing"_s);
    EXPECT_TRUE(root.decodeBool("yes"));
    EXPECT_FALSE(root.decodeBool("no"));
    EXPECT_EQ(root.decodeInt("least"), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(root.decodeInt("most"), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(root.decodeFloat("float"), 1.1F);
    EXPECT_EQ(root.decodeDouble("float"), 1.1F);
    EXPECT_EQ(root.decodeFloat("largest"), std::numeric_limits<float>::max());
    EXPECT_EQ(root.decodeDouble("double"), 0.1);
    EXPECT_TRUE(root.decodeString("null").isNull());
    EXPECT_EQ(root.kindOfKey("null"), ArchivedKind::Null);
    EXPECT_EQ(root.kindOfKey("empty"), ArchivedKind::String);
    EXPECT_EQ(root.decodeString("text"), u"Größe 😀"_s);
    EXPECT_EQ(root.decodeString("dollar"), u"$null"_s);
    EXPECT_EQ(root.decodeAscii("ascii"), "linear");
    EXPECT_EQ(root.decodeAscii("text"), std::nullopt);
    EXPECT_EQ(root.decodePoint("point").x(), -12);
    EXPECT_EQ(root.decodePoint("point").y(), 8.5);
    EXPECT_EQ(root.decodeSize("size").width(), 1.0 / 3);
    EXPECT_EQ(root.decodeSize("size").height(), 1e-300);
    EXPECT_EQ(root.decodeFloat("number"), 2.5F);
    EXPECT_EQ(root.decodeStrings("strings"), (QStringList{u"a"_s, u"ü"_s, u""_s, u"a"_s}));
    EXPECT_EQ(root.decodeArray("strings").string(1), u"ü"_s);
    EXPECT_TRUE(root.decodeObject("nothing").isNull());
    EXPECT_GT(archive.verifyEverything(), 17U);
}

// The objects of one array, whose keys stand at different places or are not there at all.
TEST(KeyedArchive, ReadsRecordsOfAnyLayout) {
    constexpr std::array<std::string_view, 4> keys{"time", "value", "name", "missing"};
    const std::vector<std::vector<std::string_view>> layouts{{"time", "value", "name"},
                                                             {"time", "value", "name"},
                                                             {"name", "time", "value"},
                                                             {"value"},
                                                             {"other", "time"},
                                                             {"time", "value", "name"},
                                                             {}};
    const Archived root([&](KeyedEncoder& coder) {
        coder.encodeRecords("records", {"Record"}, layouts.size(), [&](size_t i, auto& item) {
            const auto number = static_cast<int32_t>(i);
            for (const std::string_view key : layouts[i]) {
                if (key == "name") {
                    item.encodeAscii(key, i % 2 == 0 ? "even" : "odd");
                } else {
                    item.encodeInt(key, key == "value" ? 10 * number : number + 1);
                }
            }
        });
    });
    const KeyedUnarchiver archive(root.bytes(), Entry);
    const ArchivedArray array = archive.root().decodeArray("records");
    RecordDecoder record(array, keys, "Record");
    for (size_t i = 0; i < layouts.size(); ++i) {
        record.open(i);
        const KeyedDecoder object = array.object(i);
        for (size_t key = 0; key < keys.size(); ++key) {
            EXPECT_EQ(record.kindOfKey(key), object.kindOfKey(keys[key])) << i << keys[key];
            EXPECT_EQ(record.containsValueForKey(key), object.containsValueForKey(keys[key]));
        }
        EXPECT_EQ(record.decodeInt(0), object.decodeInt("time")) << i;
        EXPECT_EQ(record.decodeFloat(1), object.decodeFloat("value")) << i;
        EXPECT_EQ(record.decodeString(2), object.decodeString("name")) << i;
        EXPECT_EQ(record.decodeAscii(2), object.decodeAscii("name")) << i;
    }
    RecordDecoder misread(array, keys, "Record");
    misread.open(0);
    EXPECT_THROW(misread.decodeInt(2), InputError);
    RecordDecoder stranger(array, keys, "Stranger");
    EXPECT_THROW(stranger.open(0), InputError);
}

TEST(KeyedArchive, FindsAStrangerAmongRecords) {
    Archived first("Leaf", [](KeyedEncoder&) {});
    Archived second("Leaf", [](KeyedEncoder&) {});
    Archived stranger("Stone", [](KeyedEncoder&) {});
    const Archived root([&](KeyedEncoder& coder) {
        const Archivable* items[] = {&first, &second, &stranger};
        coder.encodeObjects("items", items);
    });
    const KeyedUnarchiver archive(root.bytes(), Entry);
    RecordDecoder record(archive.root().decodeArray("items"), {}, "Leaf");
    record.open(0);
    record.open(1);
    EXPECT_THROW(record.open(2), InputError);
    record.open(1);
    EXPECT_THROW(record.open(2), InputError);
}

TEST(KeyedArchive, SharesObjectsByAddressAndFollowsCycles) {
    Archived leaf("Leaf", [](KeyedEncoder&) {});
    Archived twin("Leaf", [](KeyedEncoder&) {});
    const Archived* self = nullptr;
    const Archived root([&](KeyedEncoder& coder) {
        const Archivable* leaves[] = {&leaf, &twin, &leaf};
        coder.encodeObjects("leaves", leaves);
        coder.encodeObject("leaf", &leaf);
        coder.encodeObject("self", self);
        coder.encodeRecords("records", {"Record", "Base"}, 3, [](size_t index, KeyedEncoder& item) {
            item.encodeInt("index", static_cast<int32_t>(index));
            item.encodeRecords("inner", {"Inner"}, index, [](size_t inner, KeyedEncoder& deep) {
                deep.encodeInt("index", static_cast<int32_t>(inner) * 10);
            });
        });
    });
    self = &root;
    const auto bytes = root.bytes();
    EXPECT_EQ(bytes, root.bytes());

    const KeyedUnarchiver archive(bytes, Entry);
    const KeyedDecoder decoder = archive.root();
    const ArchivedArray leaves = decoder.decodeArray("leaves");
    ASSERT_EQ(leaves.size(), 3U);
    EXPECT_EQ(leaves.object(0).number(), leaves.object(2).number());
    EXPECT_EQ(leaves.object(0).number(), decoder.decodeObject("leaf").number());
    EXPECT_NE(leaves.object(0).number(), leaves.object(1).number());
    EXPECT_EQ(decoder.decodeObject("self").number(), decoder.number());
    const ArchivedArray records = decoder.decodeArray("records");
    ASSERT_EQ(records.size(), 3U);
    records.object(2).requireClass("Record");
    EXPECT_EQ(records.object(2).decodeInt("index"), 2);
    const ArchivedArray inner = records.object(2).decodeArray("inner");
    ASSERT_EQ(inner.size(), 2U);
    EXPECT_EQ(inner.object(1).decodeInt("index"), 10);
    for (uint32_t i = 0; i < 3; ++i) {
        EXPECT_LT(leaves.object(i).number(), archive.objectCount());
    }
}

TEST(KeyedArchive, WritesChainsOfAnyDepth) {
    constexpr size_t Depth = 100000;
    std::vector<std::unique_ptr<Archived>> chain;
    const Archivable* next = nullptr;
    for (size_t i = 0; i < Depth; ++i) {
        chain.push_back(std::make_unique<Archived>(
            [next](KeyedEncoder& coder) { coder.encodeObject("next", next); }));
        next = chain.back().get();
    }
    const KeyedUnarchiver archive(KeyedArchiver::archivedDataWithRootObject(*next), Entry);
    archive.verifyEverything();
    size_t depth = 0;
    for (auto link = archive.root(); !link.isNull(); link = link.decodeObject("next")) {
        ++depth;
    }
    EXPECT_EQ(depth, Depth);
}

TEST(KeyedArchive, RefusesToWriteWhatNoReaderWouldTake) {
    const double notFinite[] = {std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity()};
    for (const double value : notFinite) {
        const Archived::Encode encoders[] = {
            [&](KeyedEncoder& coder) { coder.encodeFloat("k", static_cast<float>(value)); },
            [&](KeyedEncoder& coder) { coder.encodeDouble("k", value); },
            [&](KeyedEncoder& coder) { coder.encodeNumberObject("k", static_cast<float>(value)); },
            [&](KeyedEncoder& coder) { coder.encodePoint("k", QPointF(0, value)); },
        };
        for (const auto& encode : encoders) {
            EXPECT_THROW(Archived(encode).bytes(), AssertionFailure);
        }
    }
    const Archived null([](KeyedEncoder& coder) {
        const Archivable* objects[] = {nullptr};
        coder.encodeObjects("k", objects);
    });
    const Archived latin([](KeyedEncoder& coder) { coder.encodeAscii("k", "\xC3\xBC"); });
    EXPECT_THROW(null.bytes(), AssertionFailure);
    EXPECT_THROW(latin.bytes(), AssertionFailure);
}

TEST(KeyedUnarchiver, ReadsPointsAsWritersPrintThem) {
    const struct {
        const char* text;
        double x;
        double y;
    } points[] = {
        {"{0, 0}", 0, 0},
        {"{-12, 8.5}", -12, 8.5},
        {"{0.333333, 1e+06}", 0.333333, 1e6},
        {"{0.10000000000000001, -2.5E-07}", 0.1, -2.5e-7},
        {"  {\t+1.5 ,\n-.25 }  ", 1.5, -0.25},
        {"{5.,3}", 5, 3},
    };
    for (const auto& [text, x, y] : points) {
        for (const bool boxed : {false, true}) {
            const auto bytes = archiveOfValue(RawPlist::asciiBytes(text), boxed);
            const QPointF point = KeyedUnarchiver(bytes, Entry).root().decodePoint("k");
            EXPECT_EQ(point.x(), x) << text;
            EXPECT_EQ(point.y(), y) << text;
        }
    }
    for (const char* text :
         {"", "{", "{}", "{1}", "{1,}", "{1, 2", "1, 2", "{1, 2, 3}", "{1 2}", "{nan, 0}",
          "{0, inf}", "{1e999, 0}", "{0x10, 0}", "{1, 2} x", "{{1, 2}}", "{+-1, 2}", "{1,,2}"}) {
        const KeyedUnarchiver archive(archiveOfValue(RawPlist::asciiBytes(text), false), Entry);
        EXPECT_EQ(reasonOf([&] { archive.root().decodePoint("k"); }),
                  u"the value of \"k\" is no point of the form {x, y}"_s)
            << text;
    }
}

TEST(KeyedUnarchiver, ReadsValuesInPlaceAndBoxed) {
    const std::string utf16 = RawPlist::marker(6, 2) + std::string("\x00{\x20\xAC", 4);
    for (const bool boxed : {false, true}) {
        const auto with = [&](const std::string& value) {
            return std::make_unique<KeyedUnarchiver>(archiveOfValue(value, boxed), Entry);
        };
        EXPECT_TRUE(with("\x09")->root().decodeBool("k"));
        EXPECT_TRUE(with("\x10\x02")->root().decodeBool("k"));
        EXPECT_FALSE(with(std::string("\x10\x00", 2))->root().decodeBool("k"));
        EXPECT_EQ(with("\x11\x01\x02")->root().decodeInt("k"), 258);
        EXPECT_EQ(with("\x11\x01\x02")->root().decodeFloat("k"), 258);
        EXPECT_EQ(with("\x22\xC0\x79\x99\x9A")->root().decodeInt("k"), -3);  // -3.9
        EXPECT_EQ(with(utf16)->root().decodeString("k"), u"{€"_s);
        EXPECT_EQ(with(std::string(1, '\0'))->root().kindOfKey("k"), ArchivedKind::Null);
        EXPECT_EQ(with("\x41!")->root().kindOfKey("k"), ArchivedKind::Data);
    }
}

TEST(KeyedUnarchiver, ReadsObjectsThatStandForValues) {
    RawArchive raw;
    auto& plist = raw.plist;
    const auto boxed = [&](std::string_view className, std::string_view key, RawPlist::Ref value) {
        return plist.uid(raw.file(raw.object(className, {{key, value}})));
    };
    const auto text = plist.uid(raw.file(plist.ascii("{1, 2}")));
    const auto items = plist.array({text, plist.ascii("inline")});
    const auto root =
        raw.object("Thing", {
                                {"string", boxed("NSMutableString", "NS.string", text)},
                                {"point", boxed("NSValue", "NS.pointval", text)},
                                {"size", boxed("NSValue", "NS.sizeval", text)},
                                {"array", boxed("NSArray", "NS.objects", items)},
                                {"mutable", boxed("NSMutableArray", "NS.objects", items)},
                                {"bare", items},
                                {"null", boxed("NSNull", "unused", text)},
                                {"loose", plist.dictionary({})},
                            });
    const KeyedUnarchiver archive(raw.finish(raw.file(root), "archive"), Entry);
    const KeyedDecoder decoder = archive.root();
    EXPECT_EQ(decoder.kindOfKey("string"), ArchivedKind::String);
    EXPECT_EQ(decoder.decodeString("string"), u"{1, 2}"_s);
    EXPECT_EQ(decoder.decodeAscii("string"), "{1, 2}");
    for (const char* key : {"string", "point", "size"}) {
        EXPECT_EQ(decoder.decodePoint(key).y(), 2) << key;
    }
    for (const char* key : {"array", "mutable", "bare"}) {
        EXPECT_EQ(decoder.kindOfKey(key), ArchivedKind::Array) << key;
        EXPECT_EQ(decoder.decodeStrings(key), (QStringList{u"{1, 2}"_s, u"inline"_s})) << key;
    }
    EXPECT_EQ(decoder.kindOfKey("null"), ArchivedKind::Null);
    EXPECT_EQ(decoder.kindOfKey("other"), ArchivedKind::Missing);
    EXPECT_EQ(decoder.kindOfKey("loose"), ArchivedKind::Data);
    EXPECT_NO_THROW(archive.verifyEverything());
}

TEST(KeyedUnarchiver, FindsKeysInAnyOrderAndStoredSeveralTimes) {
    // Objects of one class whose keys change places, are missing, or are stored anew.
    RawArchive raw;
    auto& plist = raw.plist;
    std::vector<RawPlist::Ref> items;
    const auto integer = [&](char value) { return plist.add({'\x10', value}); };
    const auto shared = plist.ascii("time");
    const auto other = plist.ascii("tame");
    for (char i = 0; i < 40; ++i) {
        const RawPlist::Pair time{i % 5 == 0 ? plist.ascii("time") : shared, integer(i)};
        const RawPlist::Pair tame{other, integer(static_cast<char>(i + 40))};
        std::vector<RawPlist::Pair> pairs{time, tame};
        if (i % 2 == 0) { pairs = {tame, time}; }
        if (i % 7 == 0) { pairs = {tame}; }
        items.push_back(plist.uid(raw.file(plist.dictionary(pairs))));
    }
    const auto root = raw.file(raw.object("Thing", {{"items", plist.array(items)}}));
    const KeyedUnarchiver archive(raw.finish(root), Entry);
    const ArchivedArray array = archive.root().decodeArray("items");
    for (int i = 0; i < 40; ++i) {
        const KeyedDecoder item = array.object(static_cast<size_t>(i));
        EXPECT_EQ(item.containsValueForKey("time"), i % 7 != 0) << i;
        EXPECT_EQ(item.decodeInt("time"), i % 7 == 0 ? 0 : i) << i;
        EXPECT_EQ(item.decodeInt("tame"), i + 40) << i;
    }
}

TEST(KeyedUnarchiver, NamesTheKeyOfAWrongValue) {
    const std::string text = RawPlist::asciiBytes("text");
    const std::string yes = "\x09";
    const std::string number = "\x10\x07";
    const auto real = [](double value) {
        return '\x23' + RawPlist::bigEndian(std::bit_cast<uint64_t>(value), 8);
    };
    const std::string array = RawPlist::marker(0xA, 0);
    const std::string data = "\x41!";
    using Read = void (*)(const KeyedDecoder&);
    const Read boolean = [](const KeyedDecoder& root) { root.decodeBool("k"); };
    const Read integer = [](const KeyedDecoder& root) { root.decodeInt("k"); };
    const Read single = [](const KeyedDecoder& root) { root.decodeFloat("k"); };
    const Read twice = [](const KeyedDecoder& root) { root.decodeDouble("k"); };
    const Read string = [](const KeyedDecoder& root) { root.decodeString("k"); };
    const Read ascii = [](const KeyedDecoder& root) { root.decodeAscii("k"); };
    const Read point = [](const KeyedDecoder& root) { root.decodePoint("k"); };
    const Read object = [](const KeyedDecoder& root) { root.decodeObject("k"); };
    const Read objects = [](const KeyedDecoder& root) { root.decodeArray("k"); };
    const Read strings = [](const KeyedDecoder& root) { root.decodeStrings("k"); };
    const double infinite = std::numeric_limits<double>::infinity();
    const struct {
        Read read;
        std::string value;
        const char* reason;
    } cases[] = {
        {boolean, text, "is no yes or no"},
        {boolean, array, "is no yes or no"},
        {boolean, real(std::nan("")), "is not finite"},
        {integer, text, "is no number"},
        {integer, yes, "is no number"},
        {integer, real(infinite), "is not finite"},
        {integer, real(2147483648.0), "does not fit into 32 bits"},
        {integer, real(-2147483649.0), "does not fit into 32 bits"},
        {integer, '\x12' + RawPlist::bigEndian(0x80000000, 4), "does not fit into 32 bits"},
        {integer, '\x14' + RawPlist::bigEndian(1, 8) + RawPlist::bigEndian(0, 8),
         "does not fit into 32 bits"},
        {single, text, "is no number"},
        {single, real(std::nan("")), "is not finite"},
        {single, real(1e39), "does not fit into a 32-bit float"},
        {twice, data, "is no number"},
        {twice, real(-infinite), "is not finite"},
        {string, number, "is no string"},
        {ascii, array, "is no string"},
        {point, number, "is no point"},
        {point, array, "is no point"},
        {object, text, "is no object"},
        {object, array, "is no object"},
        {objects, text, "is no array"},
        {strings, yes, "is no array"},
    };
    for (const auto& [readValue, value, reason] : cases) {
        const auto& read = readValue;  // a lambda may not capture a binding
        for (const bool boxed : {false, true}) {
            const KeyedUnarchiver archive(archiveOfValue(value, boxed), Entry);
            EXPECT_EQ(reasonOf([&] { read(archive.root()); }),
                      u"the value of \"k\" "_s + QLatin1String(reason));
        }
    }
    const KeyedUnarchiver chain(archiveOfValue(RawPlist::uidBytes(0), true), Entry);
    const auto leadsOn = u"a reference of the archive leads to another reference"_s;
    EXPECT_EQ(reasonOf([&] { chain.root().kindOfKey("k"); }), leadsOn);
    EXPECT_EQ(reasonOf([&] { chain.verifyEverything(); }), leadsOn);
    const KeyedUnarchiver archive(archiveOfValue(yes, false), Entry);
    EXPECT_EQ(reasonOf([&] { archive.root().requireClass("Other"); }),
              u"an object of class \"Thing\" stands where a \"Other\" is expected"_s);
}

}  // namespace
}  // namespace tweenery::test
