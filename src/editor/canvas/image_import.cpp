#include "editor/canvas/image_import.h"

#include <QFileInfo>
#include <QScopeGuard>

#include "base/errors.h"
#include "base/path_name.h"
#include "editor/canvas/setup_switch.h"
#include "model/preferences/app_preferences.h"
#include "model/project.h"
#include "storage/input_file.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

enum DensityButton { kSkip, k1x, k2x };
enum NameButton { kReplace, kRename };

Alert alertForDensity() {
    return {u"This image does not have an @2x suffix"_s,
            u"Should Tweenery treat this as a 1x or 2x artwork?"_s,
            {u"Cancel"_s, u"This is 1x Version"_s, u"This is 2x Version"_s},
            u"Don't show again."_s};
}

Alert alertForName() {
    return {u"Image Name Taken"_s,
            u"There is already an image with that name in your project. Would you like to rename "
            u"the new image or replace the old image?"_s,
            {u"Replace"_s, u"Rename"_s},
            u"Apply to all"_s};
}

// What a file's name says of the picture in it.
PCImage named(const QString& path) {
    return {QImage(), path};
}

QString densitySuffix(const PCImage& image) {
    return image.is3X() ? u"@3x"_s : image.is2X() ? u"@2x"_s : QString();
}

// Undoing it puts back the set that was there.
void putImageSet(PCProject& project, const PCImageSetManager::ImageSet& set) {
    const auto replaced = project.imageSetManager().putImageSet(set);
    if (!replaced) { return; }
    project.undoManager().registerUndo([&project, replaced] { putImageSet(project, replaced); });
    project.updateContentScales();  // shows the set that is there now
}

}  // namespace

ImageImport::ImageImport(PCProject& project, AlertPort& alerts)
    : m_project(project), m_alerts(alerts) {}

// What is to be done: no change of the project, and all questions.

std::vector<ImageImport::Artwork> ImageImport::artworkIn(const QStringList& paths) {
    std::vector<Artwork> all;
    std::set<QString> filed;
    std::map<QString, size_t> placeByKey;
    for (const QString& path : paths) {
        const PCImage name = named(path);
        const QString key = QFileInfo(path).path() + u'/' + name.keyname();
        const auto place = placeByKey.find(key);
        const bool isNewDensity = filed.insert(key + u'/' + densitySuffix(name)).second;
        if (place != placeByKey.end() && isNewDensity) {
            all[place->second].paths.append(path);
            continue;
        }
        placeByKey[key] = all.size();
        all.push_back({{path}, name.filename(), false, {}});
    }
    return all;
}

std::vector<ImageImport::Artwork> ImageImport::settle(const QStringList& paths) {
    std::vector<Artwork> settled;
    for (Artwork& artwork : artworkIn(paths)) {
        if (!settleDensity(artwork)) { continue; }
        settleName(artwork);
        settled.push_back(std::move(artwork));
    }
    return settled;
}

bool ImageImport::settleDensity(Artwork& artwork) {
    const PCImage name = named(artwork.filename);
    if (artwork.paths.size() > 1 || name.is2X() || name.is3X()) { return true; }
    int button = m_densityAnswer.value_or(k1x);
    if (!m_densityAnswer && PCAppPreferences::showsRetinaArtworkAlert()) {
        const AlertAnswer answer = m_alerts.runModal(alertForDensity());
        button = answer.button;
        if (answer.suppressed) { m_densityAnswer = button; }
        if (button != kSkip) { PCAppPreferences::setShowsRetinaArtworkAlert(!answer.suppressed); }
    }
    if (button == k2x) { artwork.filename = name.basename() + u"@2x."_s + name.extension(); }
    return button != kSkip;
}

void ImageImport::settleName(Artwork& artwork) {
    const PCImage name = named(artwork.filename);
    if (isTaken(name.keyname()) && !m_applyToAll) {
        const AlertAnswer answer = m_alerts.runModal(alertForName());
        m_applyToAll = answer.suppressed;
        m_rename = answer.button != kReplace;
    }
    artwork.basename = m_rename ? freeBasename(name.basename(), name.extension()) : name.basename();
    m_planned.insert(artwork.basename + u'.' + name.extension());
}

bool ImageImport::isTaken(const QString& keyname) const {
    return m_planned.contains(keyname) ||
           m_project.imageSetManager().imageSetExistsWithName(keyname);
}

// No element has the name, and no set; numbered as names of elements are.
QString ImageImport::freeBasename(const QString& basename, const QString& extension) const {
    QString candidate = basename.trimmed();
    const auto isFree = [&] {
        return m_project.uniqueElementNameWithBase(candidate, nullptr) == candidate &&
               !isTaken(candidate + u'.' + extension);
    };
    for (int number = 1; !isFree(); ++number) {
        candidate = u"%1 %2"_s.arg(basename).arg(number).trimmed();
    }
    return candidate;
}

// Doing it.

ImageImport::ImageSets ImageImport::makeSets(const std::vector<Artwork>& artwork) {
    ImageSets sets;
    const auto end = qScopeGuard([&] {
        if (m_progress) { m_progress(artwork.size(), artwork.size()); }
    });
    for (size_t i = 0; i < artwork.size(); ++i) {
        if (m_progress && !m_progress(i, artwork.size())) { break; }
        try {
            sets.push_back(makeSet(artwork[i]));
            putImageSet(m_project, sets.back());
        } catch (const InputError& error) {
            m_failures.append(lastPathComponent(error.entry()) + u' ' + error.reason());
        }
    }
    return sets;
}

PCImageSetManager::ImageSet ImageImport::makeSet(const Artwork& artwork) {
    Images images;
    for (const QString& path : artwork.paths) {
        const bool isFirst = images.empty();
        const auto image =
            PCImage::pcimageWithData(readInputFile(path), isFirst ? artwork.filename : path);
        image->setFilename(artwork.basename + densitySuffix(*image) + u'.' + image->extension());
        images.push_back(image);
    }
    return m_project.imageSetManager().makeImageSet(images);
}

PCElement::Elements ImageImport::addElements(const ImageSets& sets, QPointF position,
                                             const PCElement::Ptr& parent, size_t index) {
    PCElement::Elements elements;
    for (const auto& set : sets) {
        const PCElement::Ptr element = PCElement::init();
        element->setProject(m_project.shared_from_this());
        element->setImageName(set->name());
        element->setName(withoutPathExtension(set->name()));
        element->setPosition(position);
        (parent ? parent : m_project.canvas())->insertSubelement(element, index);
        elements.push_back(element);
    }
    return elements;
}

void ImageImport::tellFailures() {
    if (m_failures.isEmpty()) { return; }
    constexpr qsizetype kMostShown = 10;
    QStringList lines = std::exchange(m_failures, {});
    const qsizetype count = lines.size();
    if (count > kMostShown) {
        lines.resize(kMostShown);
        lines.append(u"and %1 more"_s.arg(count - kMostShown));
    }
    m_alerts.runModal({count == 1 ? u"An Image Could Not Be Imported"_s
                                  : u"%1 Images Could Not Be Imported"_s.arg(count),
                       lines.join(u'\n'),
                       {u"Ok"_s},
                       {}});
}

ImageImport::ImageSets ImageImport::addImagesToProject(const QStringList& paths) {
    const std::vector<Artwork> artwork = settle(paths);
    ImageSets sets;
    {
        const UndoGroup group(m_project.undoManager());
        sets = makeSets(artwork);
        m_project.undoManager().setActionName(u"Import Images"_s);
    }
    tellFailures();
    return sets;
}

PCElement::Elements ImageImport::receivedDroppedImages(const QStringList& paths, QPointF position,
                                                       PCElement::Ptr parent, size_t index) {
    switchToSetupIfNecessary(m_project, m_alerts);
    const std::vector<Artwork> artwork = settle(paths);
    PCElement::Elements elements;
    {
        const UndoGroup group(m_project.undoManager());
        elements = addElements(makeSets(artwork), position, parent, index);
        m_project.undoManager().setActionName(u"Import Images"_s);
    }
    tellFailures();
    return elements;
}

PCElement::Elements ImageImport::receivedPastedImage(const QImage& image, QPointF position,
                                                     PCElement::Ptr parent, size_t index) {
    switchToSetupIfNecessary(m_project, m_alerts);
    const UndoGroup group(m_project.undoManager());
    const QString filename = freeBasename(u"Pasted Image"_s, u"png"_s) + u".png"_s;
    const auto set = m_project.imageSetManager().makeImageSet({std::make_shared<PCImage>(
        image.convertToFormat(QImage::Format_ARGB32_Premultiplied), filename)});
    putImageSet(m_project, set);
    PCElement::Elements elements = addElements({set}, position, parent, index);
    m_project.undoManager().setActionName(u"Paste"_s);
    return elements;
}

PCElement::Elements ImageImport::importImages(OpenPanelPort& panel) {
    switchToSetupIfNecessary(m_project, m_alerts);
    const QStringList paths =
        panel.chooseFiles({u"Choose an image:"_s, {u"png"_s, u"jpg"_s, u"jpeg"_s}, true});
    if (paths.isEmpty()) { return {}; }
    const PCElement::Ptr& canvas = m_project.canvas();
    const QPointF centre(canvas->size().width() / 2, canvas->size().height() / 2);
    return receivedDroppedImages(paths, centre, canvas, canvas->children().size());
}

}  // namespace tweenery
