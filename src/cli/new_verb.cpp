// tweenc new: a project from artwork.

#include <QHash>
#include <QRegularExpression>
#include <map>

#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "storage/input_file.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kCanvasOption{"canvas", "WxH",
                                   "size of the canvas in points, such as 320x480"};

std::optional<QSizeF> canvasSizeFrom(const Invocation& invocation) {
    if (!invocation.has(kCanvasOption.name)) { return std::nullopt; }
    constexpr int longestSide = 16384;
    static const QRegularExpression pattern(u"^(\\d{1,5})x(\\d{1,5})$"_s);
    const QRegularExpressionMatch match = pattern.match(invocation.value(kCanvasOption.name));
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.isEmpty() || size.width() > longestSide || size.height() > longestSide) {
        throw UsageError{u"--canvas takes a width and a height from 1 to %1, such as 320x480"_s.arg(
            longestSide)};
    }
    return size;
}

// A file for each pixel density of one picture, the highest last.
struct Densities {
    std::map<int, QString> pathsByDensity;
};

int densityOf(const PCImage& image) {
    return image.is3X() ? 3 : image.is2X() ? 2 : 1;
}

// Makes an image set and an element for each picture.
class ArtworkImport {
 public:
    explicit ArtworkImport(PCProject& project) : m_project(project) {}

    // Files of one name but for their density belong together.
    void add(const QString& path) {
        const PCImage named(QImage(), path);
        const QString set = named.keyname();
        if (!m_artwork.contains(set)) { m_order << set; }
        const auto [other, isNew] =
            m_artwork[set].pathsByDensity.try_emplace(densityOf(named), path);
        if (!isNew) {
            throw InputError(
                path, u"is the same picture of the image set %1 as %2"_s.arg(set, other->second));
        }
    }

    void run() {
        for (const QString& set : m_order) {
            importSet(m_artwork[set]);
        }
    }

 private:
    PCProject& m_project;
    QStringList m_order;
    QHash<QString, Densities> m_artwork;  // by the name of the set

    // The densities that are not given are drawn from the highest.
    void importSet(const Densities& artwork) {
        const QString& path = artwork.pathsByDensity.rbegin()->second;
        const auto image = imageAt(path);
        try {
            const auto set = m_project.imageSetManager().addImageSetWithPCImage(image);
            for (const auto& [density, given] : artwork.pathsByDensity) {
                if (given != path) { storeRendition(*set, density, *imageAt(given)); }
            }
        } catch (const InputError& error) { throw InputError(path, error.reason()); }
        addElement(*image);
    }

    static std::shared_ptr<PCImage> imageAt(const QString& path) {
        return PCImage::pcimageWithData(readInputFile(path), path);
    }

    static void storeRendition(const PCImageSet& set, int density, const PCImage& image) {
        const QString name = density == 1 ? u"Original."_s : u"Original@%1x."_s.arg(density);
        set.fileWrapper()->pc_replaceSubFileWrapperNamed(name + image.extension(),
                                                         image.dataRepresentation());
    }

    // In front of those before it. Its name becomes unique where it enters the tree.
    void addElement(const PCImage& image) {
        const PCElement::Ptr& canvas = m_project.canvas();
        const PCElement::Ptr element = PCElement::init();
        element->setProject(m_project.shared_from_this());
        element->setName(image.basename());
        element->setImageName(image.keyname());
        element->setPosition({canvas->size().width() / 2, canvas->size().height() / 2});
        canvas->insertSubelement(element, canvas->children().size());
    }
};

ExitCode run(const Invocation& invocation, Console& console) {
    const QStringList paths = invocation.operands();
    const bool replaces = invocation.has(kForceOption.name);
    const std::optional<QSizeF> canvasSize = canvasSizeFrom(invocation);
    requirePlaceForPackage(paths.first(), replaces);
    return runOnPackage(invocation, console, [&](Report& report) {
        const PCProject::Ptr project = PCProject::init();
        const UndoRegistrationPause pause(project->undoManager());
        if (canvasSize) { project->canvas()->setSize(*canvasSize); }
        ArtworkImport import(*project);
        for (const QString& path : paths.mid(1)) {
            import.add(path);
        }
        import.run();
        writePackageCopy(*project->fileWrapper(), report.packagePath(), replaces);
    });
}

}  // namespace

const Verb& newVerb() {
    static const Verb verb{"new",
                           "DEST.tweenery [IMAGE...]",
                           1,
                           Verb::kMany,
                           "Makes a project from artwork: an image set and an element for each PNG "
                           "or JPEG file; files named "
                           "a.png, a@2x.png and a@3x.png make one.",
                           {kCanvasOption, kForceOption},
                           run};
    return verb;
}

}  // namespace tweenery
