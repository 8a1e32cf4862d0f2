#include "structured_package.h"

#include <array>

#include "model/property_timeline_group.h"

using namespace Qt::StringLiterals;

namespace tweenery::fuzz {
namespace {

QByteArray rawBytes(FuzzInput& input, uint32_t longest) {
    QByteArray bytes;
    for (uint32_t left = input.below(longest); left > 0; --left) {
        bytes += static_cast<char>(input.byte());
    }
    return bytes;
}

QByteArray entryBytes(FuzzInput& input, ArchiveShape shape) {
    return input.chance(10) ? rawBytes(input, 200) : structuredArchive(input, shape);
}

// Now and then something else than a file stands under the name, or nothing at all.
void addEntry(FuzzInput& input, FileWrapper& directory, const QString& name,
              const QByteArray& bytes) {
    if (directory.child(name)) { return; }
    switch (input.below(24)) {
        case 23:
            directory.addFileWrapper(FileWrapper::directory(name));
            break;
        case 22:
            directory.addFileWrapper(FileWrapper::symbolicLink("/nowhere", name));
            break;
        case 21:
            break;
        default:
            directory.addFileWrapper(FileWrapper::regularFile(bytes, name));
            break;
    }
}

QString identifierText(FuzzInput& input) {
    // Few, so that elements and directories meet; the archives draw theirs likewise.
    return u"00000000-0000-4000-8000-00000000000%1"_s.arg(input.below(8));
}

FileWrapper::Ptr animationDirectory(FuzzInput& input, const QString& name) {
    const auto directory = FileWrapper::directory(name);
    addEntry(input, *directory, u"name.data"_s, structuredName(input, 24).toUtf8());
    if (input.chance(30)) {
        addEntry(input, *directory, u"keyall.data"_s, entryBytes(input, ArchiveShape::Timeline));
    }
    for (uint32_t left = input.below(4); left > 0; --left) {
        const auto element =
            directory->pc_ensureSubfileWrapperDirectoryExistsWithName(identifierText(input));
        for (uint32_t files = input.below(5); files > 0; --files) {
            const PCPropertyType type = elementTimelineTypes()[input.below(kElementTimelineCount)];
            addEntry(input, *element, filenameOfTimelineType(type),
                     entryBytes(input, ArchiveShape::Timeline));
        }
    }
    return directory;
}

}  // namespace

QString structuredName(FuzzInput& input, uint32_t longest) {
    static const std::array kPieces{u"_layer"_s,  u"_button"_s, u"<recordable>"_s, u"_sliced_"_s,
                                    u"_speed_"_s, u"_pngs_"_s,  u"_ignore_"_s,     u"default"_s,
                                    u"walk"_s,    u"\""_s,      u"\\"_s,           u"\n"_s,
                                    u"*/"_s,      u"//"_s,      u"\\("_s,          u"%@"_s,
                                    u"2"_s,       u" "_s,       u"Grüße"_s,        u"?\?/"_s};
    QString name;
    while (!input.isEmpty() && name.size() < longest && input.chance(80)) {
        if (input.chance(70)) {
            name += kPieces[input.below(kPieces.size())];
        } else {
            name += QChar(static_cast<char16_t>(input.below(0x10000)));
        }
    }
    return name;
}

FileWrapper::Ptr structuredPackage(FuzzInput& input) {
    const auto root = FileWrapper::directory(u"Fuzz.tweenery"_s);
    addEntry(input, *root, u"version"_s, entryBytes(input, ArchiveShape::Version));
    addEntry(input, *root, u"preferences"_s, entryBytes(input, ArchiveShape::Preferences));
    addEntry(input, *root, u"canvas"_s, entryBytes(input, ArchiveShape::Element));
    if (input.chance(90)) {
        const auto animations =
            root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"animations"_s);
        for (uint32_t number = input.below(4); number > 0; --number) {
            animations->addFileWrapper(animationDirectory(input, u"ANIMATION-%1"_s.arg(number)));
        }
    }
    if (input.chance(50)) {
        const auto images = root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"images"_s);
        const auto set = images->pc_ensureSubfileWrapperDirectoryExistsWithName(u"a.png"_s);
        addEntry(input, *set, u"Original.png"_s, rawBytes(input, 400));
    }
    if (input.chance(20)) { addEntry(input, *root, u"unknown"_s, rawBytes(input, 50)); }
    return root;
}

}  // namespace tweenery::fuzz
