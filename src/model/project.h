#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "base/notification_centre.h"
#include "base/ports.h"
#include "base/undo_manager.h"
#include "model/animations_manager.h"
#include "model/edit_context.h"
#include "model/element.h"
#include "model/images/image_set_manager.h"
#include "model/preferences/app_preferences.h"
#include "model/preferences/project_preferences.h"
#include "model/preferences/project_version.h"
#include "model/project_index.h"
#include "storage/file_wrapper.h"

namespace tweenery {

/// A stored children order brought into line with the present children: new ones inserted at their
/// place in `present`, gone ones removed.
QStringList childrenOrderInLine(const QStringList& stored, const QStringList& present);

/// The root of the model: owns the package's file-wrapper tree, the element tree, the animations,
/// the image sets, the preferences, the version record and the one undo manager.
class PCProject : public PCAnimationsManagerChangeListener,
                  public EditContext,
                  public std::enable_shared_from_this<PCProject> {
 public:
    using Ptr = std::shared_ptr<PCProject>;
    using Elements = PCElement::Elements;

    /// A new empty project with a default canvas.
    static Ptr init();
    /// Builds the model from a package's root. An older package is backed up into the directory
    /// `backups` first; its version record becomes the current one. Throws InputError naming the
    /// entry that cannot be read.
    static Ptr projectWithFileWrapper(FileWrapper::Ptr root, LogPort& log,
                                      const QString& backups = backupDirectory());
    /// The same without backup and without a new version number: for tools that only read.
    static Ptr projectForReadingWithFileWrapper(FileWrapper::Ptr root);
    ~PCProject() override;

    // Model versions.

    static int32_t currentModelVersion() { return PCProjectVersion::currentModelVersion; }
    /// 0 when there is no version entry or it cannot be read.
    static int32_t modelVersionOfProjectFileWrapper(const FileWrapper& root);
    /// Backs an older package up; its version record is left to the model built from it.
    static FileWrapper::Ptr updateProjectFileWrapperToLastestModelVersion(
        FileWrapper::Ptr root, LogPort& log, const QString& backups = backupDirectory());
    /// Copies the package into the directory, under a name of its own; failures are ignored.
    /// Returns its path, null after a failure.
    static QString backupProjectFileWrapper(const FileWrapper& root,
                                            const QString& backups = backupDirectory());
    static void clearProjectBackups(const QString& backups = backupDirectory());
    /// The path of the backup that was taken when this project was opened to be updated; null when
    /// none was needed, or it failed.
    const QString& backupPath() const { return m_backupPath; }
    /// "Backups" in the user's documents directory. Null when the user has no home folder.
    static QString backupDirectory();

    // Parts.

    /// Refreshes the tree from the model and returns its root: the changed timelines, and canvas,
    /// preferences and version if modified.
    FileWrapper::Ptr fileWrapper();
    /// The tree as it stands.
    const FileWrapper::Ptr& packageRoot() const { return m_fileWrapper; }
    const PCElement::Ptr& canvas() const override { return m_canvas; }
    void setCanvas(const PCElement::Ptr& canvas);
    PCProjectVersion& version() { return *m_version; }
    PCProjectPreferences& preferences() override { return *m_preferences; }
    PCImageSetManager& imageSetManager() override { return *m_imageSetManager; }
    PCAnimationsManager& animationsManager() override { return *m_animationsManager; }
    UndoManager& undoManager() override { return m_undoManager; }
    NotificationCentre& notificationCentre() override { return m_notificationCentre; }
    const QString& projectName() const { return m_projectName; }
    void setProjectName(const QString& name) { m_projectName = name; }
    bool isSetupMode() const override {
        return m_animationsManager->selectedAnimation() == nullptr;
    }
    bool inAdditiveMode() const { return m_inAdditiveMode; }
    bool tweenOn() const override { return PCAppPreferences::tweenOn(); }
    float linkFXFactor() const override { return PCAppPreferences::linkFXFactor(); }
    double backingScale() const override { return m_backingScale; }
    /// Re-reads every element's contents at the scale.
    void setBackingScale(double scale);
    void updateContentScales();
    QPointF eventAnchorPoint() const { return m_eventAnchorPoint; }
    void setEventAnchorPoint(QPointF point) { m_eventAnchorPoint = point; }
    /// A bitmap of the canvas for the QuickLook entry; a null image writes none.
    void setPreviewImage(const QImage& image);
    /// The same, painted by the thread that writes the package. Gives an image that is not null.
    void setPreviewImageMadeLater(std::function<QImage()> make);
    /// Not owned. Null: elements are made without a screen.
    /// Gives every element a new layer.
    void setViewLayerFactory(ElementViewLayerFactory* factory);
    ElementViewLayerFactory* viewLayerFactory() const override { return m_viewLayerFactory; }

    /// UndoManager::undo() and redo(), which first select the animation, or setup, in which the
    /// edit was made.
    bool undo();
    bool redo();
    /// That selection alone; what is to be undone stays.
    void selectPlaceOfUndo();
    void selectPlaceOfRedo();

    /// Told of every change of any timeline of the project, whether it is attached or not. Not
    /// owned.
    Subscription addTimelineChangeListener(PCKeyedPropertyTimelineChangeListener* listener) {
        return m_timelineListeners.add(listener);
    }

    // Look-up and listings.

    PCElement::Ptr elementForIdentifier(const Identifier& identifier) override;
    QStringList namesFromIdentifiers(const QStringList& identifiers);
    /// Descendants of the root, front first, each followed by its own listing.
    Elements heirarchyWithRoot(const PCElement& root) const;
    /// The same, descending into expanded elements only: the rows of the navigator.
    Elements visibleHeirarchyWithRoot(const PCElement& root) const;
    /// The lines of the hierarchy listing.
    QStringList heirarchyLines() const;
    void logHeirarchy(LogPort& log) const;
    QString debugDescription();

    // Structure edits. Nothing moves on the canvas; undo restores everything. One that would nest
    // elements deeper than PCElement::kMaximumDepth throws InputError and changes nothing.

    /// `parent` null is the canvas; an index not below its count of children means the count. Items
    /// that hold the parent, or are it, stay where they are.
    void moveItems(const Elements& items, const PCElement::Ptr& parent, int32_t index);
    /// Removes all groups without children below `root`.
    void recursivelyRemoveGroup(const PCElement::Ptr& root);
    void moveElementsToBack(const Elements& elements);
    void moveElementsToFront(const Elements& elements);
    void moveElementsForward(const Elements& elements);
    void moveElementsBackward(const Elements& elements);
    void groupElements(const Elements& elements);
    /// Does nothing unless all are groups.
    void ungroupElements(const Elements& elements);
    bool elementsAreAllGroups(const Elements& elements) const;
    Elements duplicateItems(const Elements& elements, float positionOffset);
    QString uniqueElementNameWithBase(const QString& base,
                                      const PCElement* ignoredElement) override;
    void updateZIndexAnimation();
    void updateChildrenZPositionsForElement(PCElement& element);
    static QStringList sortedSubelementIdentifiers(const PCElement& element);
    /// What copy puts on the pasteboard beside the elements: one image per set in use, the set's
    /// highest artwork.
    std::vector<std::shared_ptr<PCImage>> imagesForCopyingElements(const Elements& elements);
    /// Inserts pasted elements, which stand as on the canvas and are in no tree, into `parent` from
    /// `index` on; they stay where they are on the canvas. Their timelines, and those of their
    /// descendants, go to the selected animation; in setup mode they are dropped.
    void insertPastedElements(const Elements& elements, const PCElement::Ptr& parent, size_t index);

    // Bookkeeping by the animations and the tree themselves.

    void animationFilesDidChange() override { m_animationsManager->setHasUnsavedChanges(); }
    void timelineDidChange(PCKeyedPropertyTimeline& timeline) override;
    void treeDidInsertElement(PCElement& element) override;
    void treeWillRemoveElement(PCElement& element) override;
    void treeDidMoveElement() override { m_index.treeDidMove(); }
    void nameDidChange(const PCElement& element, const QString& oldName) override;

    void animationManagerDidSelectAnimation(PCAnimationsManager& manager,
                                            const PCAnimation::Ptr& animation) override;

 private:
    PCProject() = default;

    // Declared so that what refers to others goes first.
    UndoManager m_undoManager;
    NotificationCentre m_notificationCentre;
    FileWrapper::Ptr m_fileWrapper;
    std::shared_ptr<PCProjectPreferences> m_preferences;
    std::shared_ptr<PCProjectVersion> m_version;
    std::unique_ptr<PCImageSetManager> m_imageSetManager;
    PCElement::Ptr m_canvas;
    std::unique_ptr<PCAnimationsManager> m_animationsManager;
    Subscription m_selectionSubscription;
    ListenerSet<PCKeyedPropertyTimelineChangeListener> m_timelineListeners;
    ProjectIndex m_index;
    std::function<QImage()> m_makePreviewImage;  // none: no preview
    QString m_projectName;
    QString m_backupPath;
    bool m_inAdditiveMode = false;
    double m_backingScale = 2.0;
    QPointF m_eventAnchorPoint;
    ElementViewLayerFactory* m_viewLayerFactory = nullptr;

    static Ptr build(FileWrapper::Ptr root);
    void makeAnimationsManager();
    void selectPlace(const QString& animationIdentifier);
    static QString backUpIfOlder(const FileWrapper& root, LogPort& log, const QString& backups);
    static QString writeBackup(const FileWrapper& root, const QString& backups);
    ProjectIndex& index();
    bool isInTree(const PCElement& element) const;
    void writeQuickLook();
    PCElement::Ptr makeGroupAround(const Elements& elements, const PCElement& parent);
    void attachPastedTimelines(PCElement& element, PCAnimation& animation);
    void attachSelectedAnimation(PCElement& root);
    void moveItem(const PCElement::Ptr& item, const PCElement::Ptr& parent, size_t index);
    void removeGroupsEmptiedFrom(PCElement::Ptr group);
    struct Destination {
        PCElement::Ptr parent;
        size_t index = 0;
    };
    Destination destinationForward(const PCElement::Ptr& element) const;
    Destination destinationBackward(const PCElement::Ptr& element) const;
    void moveEach(const Elements& elements,
                  Destination (PCProject::*destination)(const PCElement::Ptr& element) const);
};

}  // namespace tweenery
