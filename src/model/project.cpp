#include "model/project.h"

#include <mutex>
#include <new>
#include <optional>

#include "base/errors.h"
#include "storage/bitmap.h"
#include "storage/keyed_archiver.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

const FileWrapper& requireFile(const FileWrapper& root, const QString& entry) {
    const FileWrapper::Ptr file = root.child(entry);
    if (!file) { throw InputError(entry, u"is missing from the package"_s); }
    return requireRegularFile(*file, entry);
}

// Both sides cut to whole pixels; the longer one becomes `longest`.
QImage thumbnail(const QImage& image, int longest) {
    const bool isPortrait = image.width() <= image.height();
    const QSize size = isPortrait ? QSize(image.width() * longest / image.height(), longest)
                                  : QSize(longest, image.height() * longest / image.width());
    return image.scaled(size.expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio,
                        Qt::SmoothTransformation);
}

// The picture of a preview, painted once for all its files.
class Preview {
 public:
    explicit Preview(std::function<QImage()> make) : m_make(std::move(make)) {}
    const QImage& image() {
        std::call_once(m_isMade, [this] {
            try {
                m_image = m_make();
            } catch (const std::bad_alloc&) {
                throw InputError(kQuickLookEntry, u"needs more memory than there is"_s);
            }
        });
        return m_image;
    }

 private:
    std::once_flag m_isMade;
    std::function<QImage()> m_make;
    QImage m_image;
};

template <typename Archived>
void archiveIfModified(FileWrapper& root, const QString& entry, const Archived& object) {
    if (object.modified()) {
        root.pc_replaceSubFileWrapperNamed(entry,
                                           KeyedArchiver::archivedDataWithRootObject(object));
    }
}

}  // namespace

PCProject::Ptr PCProject::init() {
    Ptr project(new PCProject);
    const UndoRegistrationPause pause(project->m_undoManager);
    project->m_preferences = std::make_shared<PCProjectPreferences>();
    project->m_preferences->setModified(true);
    project->setCanvas(PCElement::makeCanvas());
    project->m_version = std::make_shared<PCProjectVersion>();
    project->m_version->setModelVersion(currentModelVersion());
    project->m_fileWrapper = FileWrapper::directory();
    project->makeAnimationsManager();
    project->m_imageSetManager = std::make_unique<PCImageSetManager>(project->m_fileWrapper);
    return project;
}

PCProject::~PCProject() = default;

void PCProject::makeAnimationsManager() {
    m_animationsManager = std::make_unique<PCAnimationsManager>(shared_from_this(), *m_fileWrapper);
    m_undoManager.setPlaceSource([this] {
        const PCAnimation::Ptr animation = m_animationsManager->selectedAnimation();
        return animation ? animation->identifier() : QString();
    });
}

PCProject::Ptr PCProject::build(FileWrapper::Ptr root) {
    Ptr project(new PCProject);
    const UndoRegistrationPause pause(project->m_undoManager);
    project->m_fileWrapper = std::move(root);
    const FileWrapper& package = *project->m_fileWrapper;
    project->m_preferences = PCProjectPreferences::decode(
        KeyedUnarchiver(requireFile(package, kPreferencesEntry).contents(), kPreferencesEntry)
            .root());
    project->m_canvas = PCElement::makeCanvas();
    project->makeAnimationsManager();
    project->m_selectionSubscription =
        project->m_animationsManager->addChangeListener(project.get());
    project->m_imageSetManager = std::make_unique<PCImageSetManager>(project->m_fileWrapper);
    const KeyedUnarchiver canvasArchive(requireFile(package, kCanvasEntry).contents(),
                                        kCanvasEntry);
    project->setCanvas(PCElement::initWithArchive(canvasArchive));
    project->m_version = std::make_shared<PCProjectVersion>();
    project->m_version->setModelVersion(modelVersionOfProjectFileWrapper(package));
    return project;
}

PCProject::Ptr PCProject::projectForReadingWithFileWrapper(FileWrapper::Ptr root) {
    return build(std::move(root));
}

PCProject::Ptr PCProject::projectWithFileWrapper(FileWrapper::Ptr root, LogPort& log,
                                                 const QString& backups) {
    const QString backupPath = backUpIfOlder(*root, log, backups);
    Ptr project = build(std::move(root));
    project->m_backupPath = backupPath;
    project->m_version->setModelVersion(currentModelVersion());
    return project;
}

void PCProject::setCanvas(const PCElement::Ptr& canvas) {
    m_canvas = canvas;
    m_index.invalidate();
    canvas->setProject(shared_from_this());
    canvas->rebuildViewLayerHeirarchy();
}

void PCProject::setViewLayerFactory(ElementViewLayerFactory* factory) {
    m_viewLayerFactory = factory;
    m_canvas->rebuildViewLayerHeirarchy();
}

FileWrapper::Ptr PCProject::fileWrapper() {
    // Undo may have changed one that is not selected.
    for (const PCAnimation::Ptr& animation : m_animationsManager->animations()) {
        animation->saveChangesToFileWrapper();
    }
    archiveIfModified(*m_fileWrapper, kCanvasEntry, *m_canvas);
    archiveIfModified(*m_fileWrapper, kPreferencesEntry, *m_preferences);
    archiveIfModified(*m_fileWrapper, kVersionEntry, *m_version);
    m_canvas->setModified(false);
    m_preferences->setModified(false);
    m_version->setModified(false);
    if (m_makePreviewImage) { writeQuickLook(); }
    return m_fileWrapper;
}

void PCProject::setPreviewImage(const QImage& image) {
    m_makePreviewImage = nullptr;
    if (!image.isNull()) {
        m_makePreviewImage = [image] { return image; };
    }
}

void PCProject::setPreviewImageMadeLater(std::function<QImage()> make) {
    m_makePreviewImage = std::move(make);
}

// Painted and encoded by whoever writes the package: it takes longer than all the rest of a small
// edit.
void PCProject::writeQuickLook() {
    constexpr int kLowestQuality = 0;
    m_fileWrapper->pc_deleteSubFileWrapperNamed(kQuickLookEntry);
    const auto directory =
        m_fileWrapper->pc_ensureSubfileWrapperDirectoryExistsWithName(kQuickLookEntry);
    const auto picture = std::make_shared<Preview>(m_makePreviewImage);
    const auto add = [&](const QString& name, std::optional<int> longestSide) {
        const auto encode = [picture, longestSide] {
            const QImage& image = picture->image();
            return encodeImage(longestSide ? thumbnail(image, *longestSide) : image,
                               ImageFormat::Jpeg, kLowestQuality);
        };
        directory->addFileWrapper(FileWrapper::regularFileMadeLater(encode, name));
    };
    add(u"Preview.jpg"_s, std::nullopt);
    add(u"Preview_Thumbnail.jpg"_s, 100);
    add(u"Preview_Thumbnail@2x.jpg"_s, 200);
}

void PCProject::setBackingScale(double scale) {
    m_backingScale = scale;
    updateContentScales();
}

void PCProject::updateContentScales() {
    for (const PCElement::Ptr& element : m_canvas->elementAndAllDescendants()) {
        element->viewLayer().syncContentsWithModel();
    }
}

void PCProject::animationManagerDidSelectAnimation(PCAnimationsManager&,
                                                   const PCAnimation::Ptr& animation) {
    // Undone and redone, the orders have steps of their own.
    if (!m_undoManager.isUndoing() && !m_undoManager.isRedoing()) {
        const UndoAmendment amendment(m_undoManager);
        updateZIndexAnimation();
    }
    updateContentScales();
    m_preferences->setSelectedAnimationIdentifier(animation ? animation->identifier() : QString());
}

bool PCProject::undo() {
    selectPlaceOfUndo();
    return m_undoManager.undo();
}

bool PCProject::redo() {
    selectPlaceOfRedo();
    return m_undoManager.redo();
}

void PCProject::selectPlaceOfUndo() {
    m_undoManager.endEvent();
    if (m_undoManager.canUndo()) { selectPlace(m_undoManager.placeOfUndo()); }
}

void PCProject::selectPlaceOfRedo() {
    m_undoManager.endEvent();
    if (m_undoManager.canRedo()) { selectPlace(m_undoManager.placeOfRedo()); }
}

void PCProject::selectPlace(const QString& animationIdentifier) {
    const PCAnimation::Ptr animation =
        m_animationsManager->animationForIdentifier(animationIdentifier);
    if (animation != m_animationsManager->selectedAnimation()) {
        m_animationsManager->setSelectedAnimation(animation);
    }
}

// Look-up.

ProjectIndex& PCProject::index() {
    if (!m_index.isValid()) { m_index.rebuild(*m_canvas); }
    return m_index;
}

bool PCProject::isInTree(const PCElement& element) const {
    const PCElement* top = &element;
    while (const PCElement* parent = top->parentElement()) {
        top = parent;
    }
    return top == m_canvas.get();
}

void PCProject::timelineDidChange(PCKeyedPropertyTimeline& timeline) {
    m_timelineListeners.tell(
        [&timeline](auto& listener) { listener.keyedPropertyTimelineDidChange(timeline); });
}

void PCProject::treeDidInsertElement(PCElement& element) {
    if (m_index.isValid() && isInTree(element)) { m_index.addTree(element); }
    attachSelectedAnimation(element);
}

// A new element's own timelines belong to no animation: what is keyed on them would be lost.
void PCProject::attachSelectedAnimation(PCElement& root) {
    const PCAnimation::Ptr animation = m_animationsManager->selectedAnimation();
    if (!animation) { return; }
    for (const PCElement::Ptr& element : root.elementAndAllDescendants()) {
        if (element->hasFreshTimelines()) { animation->applyToElement(*element); }
    }
}

void PCProject::treeWillRemoveElement(PCElement& element) {
    if (m_index.isValid() && isInTree(element)) { m_index.removeTree(element); }
}

void PCProject::nameDidChange(const PCElement& element, const QString& oldName) {
    if (m_index.isValid() && isInTree(element)) { m_index.nameDidChange(oldName, element.name()); }
}

PCElement::Ptr PCProject::elementForIdentifier(const Identifier& identifier) {
    PCElement* element = index().elementForIdentifier(identifier);
    return element ? element->shared_from_this() : nullptr;
}

QString PCProject::uniqueElementNameWithBase(const QString& base, const PCElement* ignoredElement) {
    const bool counts = ignoredElement && isInTree(*ignoredElement);
    return index().uniqueName(base, counts ? &ignoredElement->name() : nullptr);
}

QStringList PCProject::namesFromIdentifiers(const QStringList& identifiers) {
    QStringList names;
    for (const QString& identifier : identifiers) {
        const PCElement::Ptr element = elementForIdentifier(Identifier(identifier));
        assertContract(element != nullptr, u"no element has the identifier %1"_s.arg(identifier));
        names += element->name();
    }
    return names;
}

// Listings.

namespace {

void listFrontFirst(const PCElement& root, bool expandedOnly, PCElement::Elements& into) {
    const ElementList& children = root.children();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        into.push_back(*child);
        if (!expandedOnly || (*child)->expanded()) { listFrontFirst(**child, expandedOnly, into); }
    }
}

}  // namespace

PCProject::Elements PCProject::heirarchyWithRoot(const PCElement& root) const {
    Elements listing;
    listFrontFirst(root, false, listing);
    return listing;
}

PCProject::Elements PCProject::visibleHeirarchyWithRoot(const PCElement& root) const {
    Elements listing;
    listFrontFirst(root, true, listing);
    return listing;
}

QStringList PCProject::heirarchyLines() const {
    const QString stars(31, u'*');
    QStringList lines{stars, u"Heirarchy"_s, stars};
    for (const PCElement::Ptr& element : heirarchyWithRoot(*m_canvas)) {
        lines += u"- "_s + element->name();
    }
    return lines;
}

void PCProject::logHeirarchy(LogPort& log) const {
    for (const QString& line : heirarchyLines()) {
        log.writeLine(line);
    }
}

QString PCProject::debugDescription() {
    return u"\n\n* * * * * * * * * * * *"_s + u"\n<PCProject"_s +
           u"\n* * * I M A G E S * * * \n"_s + m_imageSetManager->debugDescription() +
           u"\n* * * C A N V A S * * * \n"_s + m_canvas->debugDescription() +
           u"\n* * * A N I M A T I O N S * * *\n"_s + m_animationsManager->debugDescription() +
           u"\n/PCProject>"_s + u"\n* * * * * * * * * * * * *\n\n"_s;
}

}  // namespace tweenery
