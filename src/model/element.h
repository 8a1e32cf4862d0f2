#pragma once

#include <QByteArray>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QTransform>
#include <QVariant>
#include <array>
#include <memory>
#include <unordered_map>
#include <vector>

#include "base/block_list.h"
#include "base/identifier.h"
#include "base/undo_manager.h"
#include "base/weak_ref.h"
#include "model/keyed_property_timeline.h"
#include "model/properties/element_values.h"
#include "model/view_layer.h"
#include "storage/keyed_archiver.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery {

class ElementSampler;
struct ElementPlacement;
class PCElement;
class PCProject;
class PCPropertyTimelineGroup;

/// The children of an element, back to front.
using ElementList = BlockList<std::shared_ptr<PCElement>>;

/// Names of the notifications that elements post, with the element as object.
namespace ElementNotification {
inline const QString position =
    QStringLiteral("com.lumenfold.tweenery.elementpositionchangenotification");
inline const QString rotation =
    QStringLiteral("com.lumenfold.tweenery.elementrotationchangenotification");
inline const QString scale =
    QStringLiteral("com.lumenfold.tweenery.elementscalechangenotification");
inline const QString opacity =
    QStringLiteral("com.lumenfold.tweenery.elementopacitychangenotification");
inline const QString name = QStringLiteral("com.lumenfold.tweenery.namechangednotification");
inline const QString hidden =
    QStringLiteral("com.lumenfold.tweenery.elementhiddenchangenotification");
inline const QString locked =
    QStringLiteral("com.lumenfold.tweenery.elementlockedchangenotification");
inline const QString expanded =
    QStringLiteral("com.lumenfold.tweenery.elementexpandedchangenotification");
inline const QString subelements =
    QStringLiteral("com.lumenfold.tweenery.subelementschangednotification");
inline const QString contents =
    QStringLiteral("com.lumenfold.tweenery.elementcontentschangenotification");
inline const QString anchorPoint =
    QStringLiteral("com.lumenfold.tweenery.elementanchorpointchangenotification");
inline const QString size = QStringLiteral("com.lumenfold.tweenery.elementsizechangenotification");
inline const QString imageName =
    QStringLiteral("com.lumenfold.tweenery.elementimagenamechangenotification");
inline const QString scalesLocked =
    QStringLiteral("com.lumenfold.tweenery.elementscaleslockedchangenotification");
inline const QString childrenZPosition =
    QStringLiteral("com.lumenfold.tweenery.elementchildrenzpositionchangenotification");
}  // namespace ElementNotification

/// A node of the scene: a piece of artwork, or a group. Its own fields are the setup state, against
/// which all animations are expressed. The root of the tree is the canvas. Children are owned, back
/// (0) to front; the parent and the project are not.
///
/// Coordinates are points, y down; angles are radians, positive from x towards y; a point is scaled
/// first, then rotated. Setters ignore an equal value and one that is not finite; else they
/// register the old one for undo, store, mark `modified`, tell the view layer (but for name,
/// locked, expanded and scalesLocked, which do not show) and post a notification (but for anchor
/// point, size, image and scalesLocked, which have none). setGroup, setSelected, setModified and
/// the two timeline splits neither compare nor undo; only the splits mark `modified`.
class PCElement : public Archivable,
                  public TimelineOwner,
                  public std::enable_shared_from_this<PCElement> {
    struct Passkey {};

 public:
    using Ptr = std::shared_ptr<PCElement>;
    using Elements = std::vector<Ptr>;
    /// Deepest tree that is read from a package: its walks are recursive.
    static constexpr int kMaximumDepth = 1000;

    /// For the factories only: the passkey is private.
    explicit PCElement(Passkey);
    static Ptr init();
    static Ptr makeGroup();
    static Ptr makeCanvas();
    static Ptr elementByDuplicatingElement(const PCElement& source);
    /// Reads an archived tree. Throws InputError for a cycle, an element in two places, or a tree
    /// deeper than kMaximumDepth.
    static Ptr initWithArchive(const KeyedUnarchiver& archive);
    ~PCElement() override;
    PCElement(const PCElement&) = delete;
    PCElement& operator=(const PCElement&) = delete;

    ArchiveClass archiveClass() const override { return {"PCElement"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override;

    // Fields.

    const Identifier& identifier() const { return m_identifier; }
    const QString& name() const override;
    bool isGroup() const { return m_group; }
    QPointF position() const { return m_position; }
    QPointF scale() const { return m_scale; }
    double zRotation() const { return m_zRotation; }
    double opacity() const { return m_opacity; }
    QPointF anchorPoint() const { return m_anchorPoint; }
    QSizeF size() const { return m_size; }
    const QString& imageName() const { return m_imageName; }
    bool hidden() const { return m_hidden; }
    bool locked() const { return m_locked; }
    bool expanded() const { return m_expanded; }
    bool scalesLocked() const { return m_scalesLocked; }
    bool selected() const { return m_selected; }
    bool modified() const { return m_modified; }
    bool scaleTimelineSplit() const { return m_scaleTimelineSplit; }
    bool translationTimelineSplit() const { return m_translationTimelineSplit; }
    /// The product of `scale` down the chain from the topmost ancestor.
    QPointF scaleOnCanvas() const;

    void setGroup(bool group) { m_group = group; }
    void setPosition(QPointF position);
    /// Brought into 0 up to 359.5 degrees: less than half a degree below a full turn is none.
    void setZRotation(double radians);
    /// Rotation, scale and position at once, to the bit as they show: a rotation less than half a
    /// degree below a full turn becomes the equal negative angle.
    void setPlacement(const ElementPlacement& placement);
    void setScale(QPointF scale);
    /// Unit coordinates of the bounds. Moves `position`, so that the element stays where it is.
    void setAnchorPoint(QPointF anchorPoint);
    /// Clamped to 0..1.
    void setOpacity(double opacity);
    /// On the canvas a negative width or height becomes 0.
    void setSize(QSizeF size);
    void setName(const QString& name);
    /// Also takes the size of the image set of that name; the zero size if there is none.
    void setImageName(const QString& imageName);
    void setHidden(bool hidden);
    void setLocked(bool locked);
    void setExpanded(bool expanded);
    void setScalesLocked(bool scalesLocked);
    void setSelected(bool selected);  // no undo, not modified
    void setScaleTimelineSplit(bool split);
    void setTranslationTimelineSplit(bool split);
    /// Stores the flag here and in every ancestor.
    void setModified(bool modified);
    /// Visible again with all groups above, below the canvas.
    void unHideRecursivelyUp();
    /// Clears `locked` here and above, below the canvas: no cascade, no notification.
    void unlockRecursivelyUp();

    // Tree.

    /// A copy of the list of children.
    Elements subelements() const { return {m_subelements.begin(), m_subelements.end()}; }
    /// The list itself: changes with the next structure edit.
    const ElementList& children() const { return m_subelements; }
    /// Null for the canvas.
    PCElement* parentElement() const;
    /// The place in the parent's subelements. Throws AssertionFailure without a parent.
    int32_t index() const;
    EditContext* project() const override { return m_project.get(); }
    PCElement* element() override { return this; }
    /// Passed on to all children when it changes.
    void setProject(const std::shared_ptr<EditContext>& project);
    bool isCanvas() const;
    /// An index above the count is replaced by the count. `child` must be in no tree
    /// (AssertionFailure). Throws InputError, and changes nothing, where the tree of a project
    /// would become deeper than kMaximumDepth; so does moveToParentElement().
    void insertSubelement(const Ptr& child, size_t index);
    void removeSubelementAtIndex(size_t index);
    void removeFromParentElement();
    /// Out of its parent and in at `index` of what the new one holds then, cut to their count. One
    /// step of undo. Both are of one project, and the parent does not lie within the element.
    void moveToParentElement(const Ptr& parent, size_t index);
    /// The element, then each child's own list: back to front.
    Elements elementAndAllDescendants();
    /// The element, then each child's reversed list, last child first.
    Elements reversedElementAndAllDescendants();
    std::unordered_map<Identifier, Ptr> EXPORT_elementAndDescendantsByIdentifier();
    bool isAncestorOf(const PCElement& other) const;
    int maxHierarchyDepth() const;
    /// 1 for an element without a parent.
    int depth() const;
    /// Throws InputError when `item` and its descendants would lie below kMaximumDepth as children
    /// of an element at depth `parentDepth`.
    static void requireRoomFor(const PCElement& item, int parentDepth);
    Elements subLayerDataSources() const { return subelements(); }
    ElementViewLayer& viewLayer() const;
    /// New layers for the element and its descendants from the project's factory; without one, the
    /// layer that does nothing.
    void rebuildViewLayerHeirarchy();

    // Geometry.

    QPointF anchorPointInPts() const;
    QPointF origin() const;
    QPointF translationXY() const { return {}; }
    /// The bounding rectangle in the parent's coordinates.
    QRectF frame() const;
    QTransform elementToParentTransform() const;
    QTransform parentToElementTransform() const;
    QTransform elementToCanvasTransform() const;
    QTransform canvasToElementTransform() const;
    QPointF convertToCanvas(QPointF point) const;
    QPointF convertToElement(QPointF point) const;
    QPointF canvasPosition() const;
    /// The sum of `zRotation` up the chain, below the canvas, rounded to 32 bits at each level.
    double canvasRotation() const;
    /// The same sum without rounding, for what must not move by it.
    double unroundedCanvasRotation() const;

    // Timelines of the selected animation; null in setup mode.

    PCKeyedPropertyTimeline::Ptr timeline(PCPropertyType type) const;
    /// Into the slot of its property type; AssertionFailure "type not supported: %@" without one.
    void setTimeline(const PCKeyedPropertyTimeline::Ptr& timeline);
    /// Into the slot of `slotType`, whatever its own type (old files hold others).
    void setTimeline(const PCKeyedPropertyTimeline::Ptr& timeline, PCPropertyType slotType);
    void clearTimelines();
    /// True until timelines are attached or cleared: it has the empty ones that it was made with.
    bool hasFreshTimelines() const { return m_timelinesAreFresh; }
    PCKeyedPropertyTimeline::Ptr imageContentsTimeline() const {
        return timeline(PCPropertyTypeImageContents);
    }
    PCKeyedPropertyTimeline::Ptr childrenZPositionsTimeline() const {
        return timeline(PCPropertyTypeChildrenZPositions);
    }
    PCKeyedPropertyTimeline::Ptr zRotationTimeline() const {
        return timeline(PCPropertyTypeZRotation);
    }
    PCKeyedPropertyTimeline::Ptr opacityTimeline() const { return timeline(PCPropertyTypeOpacity); }
    PCKeyedPropertyTimeline::Ptr translationXTimeline() const {
        return timeline(PCPropertyTypeTranslationX);
    }
    PCKeyedPropertyTimeline::Ptr translationYTimeline() const {
        return timeline(PCPropertyTypeTranslationY);
    }
    PCKeyedPropertyTimeline::Ptr scaleXTimeline() const { return timeline(PCPropertyTypeScaleX); }
    PCKeyedPropertyTimeline::Ptr scaleYTimeline() const { return timeline(PCPropertyTypeScaleY); }
    /// Rows of the timeline display only; always null.
    PCKeyedPropertyTimeline::Ptr calculatedScaleTimeline() const { return {}; }
    PCKeyedPropertyTimeline::Ptr calculatedTranslationTimeline() const { return {}; }

    // State at a time in milliseconds, through the attached timelines; zero or null without them.

    PropertyValue setupValueForPropertyType(PCPropertyType type) const override;
    /// Of a float property; 0 for others.
    float setupNumberForPropertyType(PCPropertyType type) const override;
    PCRepeatBehavior repeatBehaviorOfSiblingsOrder() const override;
    /// All of them at once, which is faster than one after the other.
    ElementValues valuesAtTimeInMS(int32_t timeInMS) const;
    float zRotationAtTimeInMS(int32_t timeInMS) const;
    float opacityAtTimeInMS(int32_t timeInMS) const;
    QPointF scaleAtTimeInMS(int32_t timeInMS) const;
    QPointF translationAtTimeInMS(int32_t timeInMS) const;
    QPointF positionAtTimeInMS(int32_t timeInMS) const;
    QString imageContentsAtTimeInMS(int32_t timeInMS) const;
    QStringList childrenZPositionsAtTimeInMS(int32_t timeInMS) const;
    float canvasRotationAtTimeInMS(int32_t timeInMS) const;
    double canvasXScaleAtTimeInMS(int32_t timeInMS) const;
    double canvasYScaleAtTimeInMS(int32_t timeInMS) const;
    QPointF canvasTranslationAtTimeInMS(int32_t timeInMS) const;

    /// Keys one float property and pins it at the neighbouring master keyframes. Returns the
    /// keyframe; null in setup mode and for a value that is not finite, which is ignored. So do
    /// the setters that follow.
    PCKeyedPropertyTimeline::KeyframePtr setFloatValue(
        float value, int32_t timeInMS, const PCKeyedPropertyTimeline::Ptr& timeline);
    PCKeyedPropertyTimeline::KeyframePtr setXScale(float value, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setYScale(float value, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setXTranslation(float value, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setYTranslation(float value, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setZRotation(float radians, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setOpacity(float opacity, int32_t timeInMS);
    void setScale(QPointF scale, int32_t timeInMS);
    void setTranslation(QPointF translation, int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setImageContents(const QString& imageName,
                                                          int32_t timeInMS);
    PCKeyedPropertyTimeline::KeyframePtr setChildrenZPositions(const QStringList& identifiers,
                                                               int32_t timeInMS);
    void setAnchorPoint(QPointF anchorPoint, int32_t timeInMS);
    void removeAllTimelines();

    // Pasteboard form.

    static const QString& pasteboardType();
    /// One dictionary for the element with its canvas values, its descendants nested.
    QVariantList pasteboardPropertyList() const;
    QVariantMap copyablePlistRepresentation() const;
    /// Throws InputError when the dictionary has no such form.
    static Ptr elementWithPasteablePlist(const QVariantMap& plist,
                                         const std::shared_ptr<EditContext>& project);
    static Ptr initWithPasteboardPropertyList(const QVariantList& plist);

    QString description() const { return name(); }
    QString debugDescription() const;
    QString debugDescriptionWithTimelines() const;
    QString debugDescriptionWithIndent(const QString& indent, bool includeTimelines) const;
    /// The keys that the canvas observes.
    static QStringList observableKeys();

 private:
    friend class PCProject;
    friend BlockHook& blockHook(const PCElement& element) { return element.m_blockHook; }
    using Timelines = std::array<PCKeyedPropertyTimeline::Ptr, kElementTimelineCount>;

    bool m_hidden = false;
    bool m_scalesLocked = false;
    bool m_locked = false;
    bool m_expanded = false;
    bool m_group = false;
    bool m_scaleTimelineSplit = false;
    bool m_translationTimelineSplit = false;
    bool m_modified = false;
    bool m_selected = false;
    bool m_timelinesAreFresh = true;  // the eight empty timelines of init, made when asked for
    ElementList m_subelements;
    mutable BlockHook m_blockHook;  // of the parent's list
    QString m_name;
    Identifier m_identifier;
    double m_zRotation = 0;
    double m_opacity = 1;
    QString m_imageName;
    WeakRef<EditContext> m_project;
    std::unique_ptr<ElementViewLayer> m_viewLayer;  // null: the layer that does nothing
    mutable std::unique_ptr<Timelines> m_timelines;
    mutable std::unique_ptr<ElementSampler> m_sampler;  // of the timelines, once asked for a value
    PCElement* m_parent = nullptr;                      // cleared when the parent goes
    QPointF m_position;
    QPointF m_scale{1, 1};
    QPointF m_anchorPoint{0.5, 0.5};
    QSizeF m_size{0, 0};

    static Ptr make();
    PCKeyedPropertyTimeline* attachedTimeline(PCPropertyType type) const;
    std::array<const PCKeyedPropertyTimeline*, kElementTimelineCount> attachedTimelines() const;
    ElementSampler& sampler() const;
    void forgetSamples() const;
    void forgetSamplesOf(const PCKeyedPropertyTimeline& timeline) const override;
    PCKeyedPropertyTimeline* makeFreshTimeline(PCPropertyType type) const;
    static Ptr decodeTree(const KeyedUnarchiver& archive, const KeyedDecoder& coder, int depth,
                          std::vector<bool>& seen);
    static Ptr pasteTree(const QVariantMap& plist, const std::shared_ptr<EditContext>& project,
                         int depth);

    /// What an inverse stores and nothing else; see UndoManager::needsInverse().
    enum class Field {
        Position,
        Rotation,
        Scale,
        AnchorPoint,
        Opacity,
        Size,
        Name,
        ImageName,
        Hidden,
        Locked,
        Expanded,
        ScalesLocked
    };
    /// Into 0 up to, but without, a full turn.
    static double withoutFullTurns(double radians);
    /// The same angle, less than half a degree below a full turn as the equal negative one.
    static double storableRotation(double radians);
    /// Null without a project, and while registration is off.
    UndoManager* recordingUndoManager() const;
    template <typename Inverse>
    void registerUndo(Inverse inverse) {
        if (UndoManager* undo = recordingUndoManager()) {
            undo->registerUndo(
                [self = shared_from_this(), inverse = std::move(inverse)] { inverse(*self); });
        }
    }
    template <typename Inverse>
    void registerUndoOf(Field field, Inverse inverse) {
        UndoManager* undo = recordingUndoManager();
        if (undo && undo->needsInverse({this, static_cast<int>(field)})) {
            registerUndo(std::move(inverse));
        }
    }
    void storeRotation(double radians);
    void storeAnchorPoint(QPointF anchorPoint, QPointF position);
    void storeLocked(bool locked);
    void storeName(const QString& newName);
    void post(const QString& notification);
    bool isPlayedBack() const;
    void setFromArchive(const KeyedDecoder& coder);
    void setFromPlist(const QVariantMap& plist);
    void setTimelinesFromPlist(const QVariantMap& plist);
    void updateNameToBeUnique();
    void describe(const QString& indent, bool includeTimelines, QString& into) const;
    void collect(Elements& into);
    void collectReversed(Elements& into);
    QTransform scaleThenRotate() const;
    PCKeyedPropertyTimeline::KeyframePtr keyInstantly(const PropertyValue& value, int32_t timeInMS,
                                                      PCPropertyType type);
    PCKeyedPropertyTimeline::KeyframePtr setSyncedFloat(float value, int32_t timeInMS,
                                                        PCPropertyType type,
                                                        const QString& notification);
    PCKeyedPropertyTimeline::Ptr editableTimeline(PCPropertyType type) const;
    template <typename Read, typename Write>
    void pinNeighbours(int32_t timeInMS, Read read, Write write);
};

}  // namespace tweenery
