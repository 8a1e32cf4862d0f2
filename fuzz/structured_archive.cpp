#include "structured_archive.h"

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/raw_plist.h"

namespace tweenery::fuzz {
namespace {

using test::RawArchive;
using test::RawPlist;
using Ref = RawPlist::Ref;

enum class Kind {
    Bool,
    Int,
    Real,
    Text,
    Identifier,
    Point,
    Strings,
    Mode,
    Children,
    Object,
    Noise
};
constexpr uint32_t KindCount = static_cast<uint32_t>(Kind::Noise) + 1;

struct Key {
    std::string_view name;
    Kind kind;
};

struct Shape {
    std::string_view className;
    std::vector<Key> keys;
};

const Shape& elementShape() {
    static const Shape shape{"PCElement",
                             {{"identifier", Kind::Identifier},
                              {"name", Kind::Text},
                              {"xScale", Kind::Real},
                              {"yScale", Kind::Real},
                              {"hidden", Kind::Bool},
                              {"locked", Kind::Bool},
                              {"opacity", Kind::Real},
                              {"position", Kind::Point},
                              {"zRotation", Kind::Real},
                              {"anchorPoint", Kind::Point},
                              {"size", Kind::Point},
                              {"expanded", Kind::Bool},
                              {"scalesLocked", Kind::Bool},
                              {"group", Kind::Bool},
                              {"imageName", Kind::Text},
                              {"subelements", Kind::Children},
                              {"parentElement", Kind::Object},
                              {"scaleTimelineSplit", Kind::Bool},
                              {"translationTimelineSplit", Kind::Bool}}};
    return shape;
}

const Shape& keyframeShape() {
    static const Shape shape{"PCPropertyKeyframe",
                             {{"time", Kind::Int},
                              {"instant", Kind::Bool},
                              {"easingMode", Kind::Mode},
                              {"recorded", Kind::Bool},
                              {"recordedStart", Kind::Bool},
                              {"recordedEnd", Kind::Bool},
                              {"keyall", Kind::Bool},
                              {"identifier", Kind::Identifier},
                              {"float", Kind::Real},
                              {"point", Kind::Point},
                              {"array", Kind::Strings},
                              {"imageName", Kind::Text}}};
    return shape;
}

const Shape& timelineShape() {
    static const Shape shape{"PCKeyedPropertyTimeline",
                             {{"repeat_behavior", Kind::Mode},
                              {"property_type", Kind::Mode},
                              {"keyframes", Kind::Children}}};
    return shape;
}

const Shape& preferencesShape() {
    static const Shape shape{"PCProjectPreferences",
                             {{"timelineZoomLevel", Kind::Real},
                              {"canvasZoomLevel", Kind::Real},
                              {"canvasScrollOffset", Kind::Point},
                              {"navigatorPaneVisible", Kind::Bool},
                              {"navigatorPaneWidth", Kind::Real},
                              {"windowSize", Kind::Point},
                              {"windowPosition", Kind::Point},
                              {"timelinePlayheadPosition", Kind::Int},
                              {"selectedAnimationIdentifier", Kind::Identifier},
                              {"generatedCodeUsesSwift", Kind::Bool},
                              {"generatedCodeSwiftDialect", Kind::String},
                              {"defaultEasingMode", Kind::Mode}}};
    return shape;
}

const Shape& versionShape() {
    static const Shape shape{"PCProjectVersion", {{"modelVersion", Kind::Int}}};
    return shape;
}

class Generator {
 public:
    explicit Generator(FuzzInput& input)
        : m_input(input),
          m_archive(2 + input.below(7), 2 + input.below(7)),
          m_plist(m_archive.plist),
          m_sharesKeys(!input.chance(20)) {}

    QByteArray run(const Shape& root, const Shape& child) {
        const uint32_t rootNumber = m_archive.reserve();
        m_pending.push_back({rootNumber, &root});
        if (m_input.chance(10)) { addChain(child); }
        while (!m_pending.empty()) {
            const Pending next = m_pending.back();
            m_pending.pop_back();
            m_archive.fill(next.number, object(*next.shape, child));
        }
        return damaged(m_archive.finish(rootNumber));
    }

 private:
    struct Pending {
        uint32_t number;
        const Shape* shape;
    };

    FuzzInput& m_input;
    RawArchive m_archive;
    RawPlist& m_plist;
    bool m_sharesKeys;
    std::map<std::string_view, Ref> m_keys;
    std::map<std::string_view, uint32_t> m_classes;
    std::vector<uint32_t> m_objects;  // what references may lead to
    std::vector<Pending> m_pending;

    Ref keyRef(std::string_view name) {
        if (!m_sharesKeys) { return m_plist.ascii(name); }
        const auto [found, isNew] = m_keys.try_emplace(name, 0U);
        if (isNew) { found->second = m_plist.ascii(name); }
        return found->second;
    }

    Ref classRef(std::string_view name) {
        const auto [found, isNew] = m_classes.try_emplace(name, 0U);
        if (isNew) { found->second = m_archive.classEntry(name); }
        return m_plist.uid(found->second);
    }

    Ref object(const Shape& shape, const Shape& child) {
        std::vector<RawPlist::Pair> pairs;
        for (const Key& key : shape.keys) {
            if (m_input.chance(10)) { continue; }
            const bool isWrong = m_input.chance(5);
            const Kind kind = isWrong ? static_cast<Kind>(m_input.below(KindCount)) : key.kind;
            pairs.emplace_back(keyRef(key.name), value(kind, child));
            if (m_input.chance(2)) { pairs.push_back(pairs.front()); }
        }
        if (!m_input.chance(2)) { pairs.emplace_back(keyRef("$class"), classRef(shape.className)); }
        return m_plist.dictionary(pairs);
    }

    /// In place or behind a reference.
    Ref boxedOrNot(Ref ref, uint32_t boxedPercent) {
        if (m_input.chance(1)) { return m_plist.uid(0); }
        return m_input.chance(boxedPercent) ? m_plist.uid(m_archive.file(ref)) : ref;
    }

    Ref value(Kind kind, const Shape& child) {
        switch (kind) {
            case Kind::Bool:
                return boxedOrNot(m_plist.add(m_input.chance(50) ? "\x09" : "\x08"), 5);
            case Kind::Int:
                return boxedOrNot(integer(), 5);
            case Kind::Real:
                return boxedOrNot(real(), 10);
            case Kind::Text:
                return boxedOrNot(text(), 90);
            case Kind::Identifier:
                return boxedOrNot(identifier(), 90);
            case Kind::Point:
                return boxedOrNot(m_plist.ascii(pointText()), 90);
            case Kind::Mode:
                return boxedOrNot(m_plist.ascii(mode()), 90);
            case Kind::Strings:
                return strings();
            case Kind::Children:
                return children(child);
            case Kind::Object:
                return m_plist.uid(anyNumber());
            case Kind::Noise:
                return noise();
        }
        return 0;
    }

    Ref integer() {
        const uint32_t exponent = m_input.below(6);
        const size_t width = size_t{1} << exponent;
        std::string bytes(1, static_cast<char>(0x10 + exponent));
        for (size_t i = 0; i < width; ++i) {
            const bool isLow = i + 2 >= width;
            bytes += static_cast<char>(isLow || m_input.chance(3) ? m_input.byte() : 0);
        }
        return m_plist.add(bytes);
    }

    Ref real() {
        if (m_input.chance(3)) {
            return m_plist.add('\x23' + RawPlist::bigEndian(m_input.word(), 8));
        }
        const float number = static_cast<float>(m_input.byte()) / 16.0F - 4;
        uint32_t bits = 0;
        static_assert(sizeof bits == sizeof number);
        std::memcpy(&bits, &number, sizeof bits);
        return m_plist.add('\x22' + RawPlist::bigEndian(bits, 4));
    }

    Ref text() {
        const uint32_t length = m_input.chance(2) ? m_input.below(1000) : m_input.below(20);
        std::string bytes;
        if (m_input.chance(20)) {
            for (uint32_t i = 0; i < length * 2; ++i) {
                bytes += static_cast<char>(m_input.byte());
            }
            return m_plist.add(RawPlist::marker(6, length, m_input.chance(20) ? 4 : 0) + bytes);
        }
        for (uint32_t i = 0; i < length; ++i) {
            bytes += static_cast<char>(m_input.byte() & 0x7F);
        }
        return m_plist.ascii(bytes);
    }

    Ref identifier() {
        std::string uuid = "00000000-0000-4000-8000-000000000000";
        uuid.back() = "0123456789ABCDEFg"[m_input.below(17)];
        return m_plist.ascii(m_input.chance(10) ? uuid.substr(1) : uuid);
    }

    std::string pointText() {
        static constexpr std::string_view Numbers[] = {"0",    "1",   "-12.5", "0.1",  "1e9",
                                                       "1e-9", "nan", "inf",   "1e99", ""};
        const auto number = [this] { return Numbers[m_input.below(std::size(Numbers))]; };
        std::string text = "{";
        text += number();
        text += m_input.chance(5) ? "," : ", ";
        text += number();
        if (!m_input.chance(2)) { text += '}'; }
        return text;
    }

    std::string_view mode() {
        static constexpr std::string_view Modes[] = {
            "linear",    "easeIn",     "easeOut",   "easeInOut",       "anticipate",
            "overshoot", "anticOver",  "never",     "forever",         "position.y",
            "opacity",   "zPosition",  "zRotation", "imageContents",   "scale.x",
            "xScale",    "position.x", "keyall",    "transform.scale", "forever_autoreverse",
            "unknown"};
        return Modes[m_input.below(std::size(Modes))];
    }

    Ref arrayObject(std::string_view className, Ref items) {
        return m_plist.uid(m_archive.file(m_plist.dictionary(
            {{keyRef("NS.objects"), items}, {keyRef("$class"), classRef(className)}})));
    }

    Ref strings() {
        std::vector<Ref> items(m_input.below(6));
        for (Ref& item : items) {
            item = boxedOrNot(identifier(), 95);
        }
        return arrayObject("NSArray", m_plist.array(items));
    }

    Ref children(const Shape& child) {
        std::vector<Ref> items(m_input.isEmpty() ? 0 : m_input.below(6));
        for (Ref& item : items) {
            if (m_input.chance(15)) {
                item = m_plist.uid(anyNumber());
                continue;
            }
            const uint32_t number = m_archive.reserve();
            m_objects.push_back(number);
            m_pending.push_back({number, &child});
            item = m_plist.uid(number);
        }
        const Ref array = m_input.chance(2) ? noise() : m_plist.array(items);
        return arrayObject("NSMutableArray", array);
    }

    /// Any object so far, so that references double and go round in circles.
    uint32_t anyNumber() {
        if (m_objects.empty()) { return 1; }
        return m_objects[m_input.below(static_cast<uint32_t>(m_objects.size()))];
    }

    /// Objects each of which holds the next one once or twice.
    void addChain(const Shape& child) {
        const uint32_t length = m_input.below(300);
        const bool doubles = m_input.chance(50);
        uint32_t inner = 0;
        for (uint32_t i = 0; i < length; ++i) {
            const Ref next = m_plist.uid(inner);
            const Ref items = m_plist.array(doubles ? std::vector{next, next} : std::vector{next});
            inner = m_archive.file(m_plist.dictionary({
                {keyRef("subelements"), arrayObject("NSMutableArray", items)},
                {keyRef("$class"), classRef(child.className)},
            }));
        }
        if (length > 0) { m_objects.push_back(inner); }
    }

    /// An object of any type with a count that may lie.
    Ref noise() {
        const uint64_t count = m_input.chance(50) ? m_input.word() : m_input.byte();
        const size_t width = size_t{1} << m_input.below(4);
        std::string bytes = RawPlist::marker(m_input.below(16), count, width);
        const uint32_t length = m_input.below(30);
        for (uint32_t i = 0; i < length; ++i) {
            bytes += static_cast<char>(m_input.byte());
        }
        return m_plist.add(bytes);
    }

    QByteArray damaged(QByteArray bytes) {
        if (!m_input.chance(30)) { return bytes; }
        const uint32_t places = 1 + m_input.below(3);
        for (uint32_t i = 0; i < places; ++i) {
            const auto place = m_input.below(static_cast<uint32_t>(bytes.size()));
            bytes[place] = static_cast<char>(m_input.byte());
        }
        return bytes;
    }
};

}  // namespace

uint8_t FuzzInput::byte() {
    if (m_bytes.empty()) { return 0; }
    const uint8_t value = m_bytes.front();
    m_bytes = m_bytes.subspan(1);
    return value;
}

uint32_t FuzzInput::below(uint32_t count) {
    uint32_t value = byte();
    for (uint32_t room = 256; room < count && room <= UINT32_MAX / 256; room *= 256) {
        value = value << 8 | byte();
    }
    return value % count;
}

uint64_t FuzzInput::word() {
    uint64_t value = 0;
    for (int i = 0; i < 8; ++i) {
        value = value << 8 | byte();
    }
    return value;
}

QByteArray structuredArchive(FuzzInput& input, ArchiveShape shape) {
    Generator generator(input);
    switch (shape) {
        case ArchiveShape::Element:
            return generator.run(elementShape(), elementShape());
        case ArchiveShape::Timeline:
            return generator.run(timelineShape(), keyframeShape());
        case ArchiveShape::Preferences:
            return generator.run(preferencesShape(), elementShape());
        case ArchiveShape::Version:
            break;
    }
    return generator.run(versionShape(), elementShape());
}

}  // namespace tweenery::fuzz
