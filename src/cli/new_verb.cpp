// tweenc new: a project from artwork.

#include <QHash>
#include <QRegularExpression>

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

/// Makes an image set and an element for each file.
class ArtworkImport {
 public:
    explicit ArtworkImport(PCProject& project) : m_project(project) {}

    void add(const QString& path) {
        const auto image = PCImage::pcimageWithData(readInputFile(path), path);
        const QString name = image->keyname();
        if (m_paths.contains(name)) {
            throw InputError(path,
                             u"makes the image set %1, as %2 does; give one file for each "
                             u"picture, that of the highest density"_s.arg(name, m_paths[name]));
        }
        try {
            m_project.imageSetManager().addImageSetWithPCImage(image);
        } catch (const InputError& error) { throw InputError(path, error.reason()); }
        m_paths.insert(name, path);
        addElement(*image);
    }

 private:
    PCProject& m_project;
    QHash<QString, QString> m_paths;  // by the name of the set

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
    return runOnPackage(paths.first(), console, [&](Report& report) {
        const PCProject::Ptr project = PCProject::init();
        const UndoRegistrationPause pause(project->undoManager());
        if (canvasSize) { project->canvas()->setSize(*canvasSize); }
        ArtworkImport import(*project);
        for (const QString& path : paths.mid(1)) {
            import.add(path);
        }
        writePackageCopy(*project->fileWrapper(), report.packagePath(), replaces);
    });
}

}  // namespace

const Verb& newVerb() {
    static const Verb verb{
        "new",
        "DEST.tweenery [IMAGE...]",
        1,
        Verb::kMany,
        "Makes a project from artwork: an image set and an element for each PNG or JPEG file.",
        {kCanvasOption, kForceOption},
        run};
    return verb;
}

}  // namespace tweenery
